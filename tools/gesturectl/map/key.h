#pragma once

#include <QPainter>
#include <QPointF>

// The key of a page: the meaning of its lines.

namespace gesturectl {

/// For a page of this width.
double heightOfKey(double width);

void drawKey(QPainter *painter, const QPointF &corner, double width);

}
