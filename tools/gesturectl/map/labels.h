#pragma once

#include "panel.h"

#include <QPainter>
#include <QRectF>
#include <QString>

// The labels of a panel: number, id and action of each gesture in its zone.

namespace gesturectl {

/// `painter` is at the upper left corner of the screen.
void drawLabels(QPainter *painter, const Panel &panel);

/// The mark of a gesture that never fires: a frame around a cross and a number.
void drawNever(QPainter *painter, const QRectF &box, const QString &number);

}
