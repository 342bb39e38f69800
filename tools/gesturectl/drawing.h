#pragma once

#include "application.h"

#include <analysis/reach.h>

#include <QByteArray>
#include <QRectF>
#include <QString>
#include <QStringList>
#include <QVector>

// The map of an application's zones as a picture in black and white.

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
    QVector<Entry> entries; // in the order of the lookup
    QVector<QRectF> dead;   // disjoint: where no gesture matches
};

struct Page
{
    QString application;
    QString file;
    QVector<Panel> panels;
};

/// A text of a configuration on one line, without what would disturb a terminal or a drawing.
QString shown(const QString &text);

/// The path of the current action, and whether the device has what the gesture needs.
QString actionText(const Panel::Entry &entry);

/// What earlier gestures take from an entry; `nameOf` tells what the reader knows an entry by.
QStringList remarks(const Panel &panel, const Panel::Entry &entry, QString (*nameOf)(int index));

/// How much of the screen no gesture matches; empty when there is none.
QString deadText(const Panel &panel);

QByteArray svg(const Page &page);
/// Fails when the picture would be too large.
Result<QByteArray> png(const Page &page);

}
