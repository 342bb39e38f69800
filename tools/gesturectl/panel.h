#pragma once

#include <analysis/reach.h>

#include <QRectF>
#include <QString>
#include <QStringList>
#include <QVector>

// What a map shows of an application's zones, however it is drawn.

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
    analysis::Touch touch;  // at any position
    QVector<Entry> entries; // in the order of the lookup
    QVector<QRectF> dead;   // disjoint: where no gesture matches
};

/// A text of a configuration as a label shows it: never empty, never long.
QString shortened(const QString &text);

/// The path of the current action.
QString actionPath(const Panel::Entry &entry);

/// The same, with a mark unless the device has what the gesture needs.
QString actionText(const Panel::Entry &entry);

/// What earlier gestures take from an entry; `nameOf` tells what the reader knows an entry by.
QStringList remarks(const Panel &panel, const Panel::Entry &entry, QString (*nameOf)(int index));

/// How much of the screen no gesture matches; empty when there is none.
QString deadText(const Panel &panel);

}
