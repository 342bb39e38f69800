#pragma once

#include <analysis/reach.h>

#include <QRectF>
#include <QString>
#include <QStringList>
#include <QVector>

// The content of a map, for a picture and for the terminal.

namespace gesturectl {

/// One screen: the gestures among which the lookup chooses for a mode, a kind and a direction.
struct Panel
{
    struct Entry
    {
        const vellix::gesture::Gesture *gesture;
        QString zone; // by name, or its numbers
        analysis::Reach reach;
    };

    QString title;
    analysis::Touch touch;     // at any position
    QVector<Entry> entries;    // in the order of the lookup
    QVector<QRectF> unmatched; // disjoint: where no gesture matches
};

/// A string of a configuration as a label shows it: never empty, never long.
QString shortened(const QString &text);

/// The path of the current action.
QString actionPath(const Panel::Entry &entry);

/// The same, with a mark unless the device supports the gesture.
QString actionText(const Panel::Entry &entry);

/// The losses of an entry to earlier gestures; `nameOf` returns the name of an entry in the map.
QStringList remarks(const Panel &panel, const Panel::Entry &entry, QString (*nameOf)(int index));

/// The share of the screen where no gesture matches; empty if every touch matches.
QString unmatchedText(const Panel &panel);

/// The name of an entry in a picture.
QString numberOf(int index);

}
