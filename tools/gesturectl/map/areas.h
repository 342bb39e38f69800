#pragma once

#include "panel.h"

#include <QPainter>
#include <QPen>
#include <QRectF>
#include <QRegion>
#include <QSizeF>
#include <QVector>

// The zones of a panel and where they overlap, in the page's units.

namespace gesturectl {

/// The screen of a panel.
constexpr QSizeF screen(420, 560);

/// A part of the screen in the page's units.
QRectF onPanel(const QRectF &area);

QPen dashedPen(double width, const QVector<qreal> &pattern);

/// The areas where no gesture matches.
void drawUnmatched(QPainter *painter, const QVector<QRectF> &areas);

/// The areas where zones overlap.
QRegion contestedRegion(const Panel &panel);
void drawContested(QPainter *painter, const QRegion &region);

/// The outlines of the zones: solid where they get their touches, otherwise dashed.
void drawOutlines(QPainter *painter, const Panel &panel);

}
