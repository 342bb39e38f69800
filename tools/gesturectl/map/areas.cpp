#include "areas.h"

#include <QPainterPath>

#include <algorithm>
#include <cmath>

namespace gesturectl {

QRectF onPanel(const QRectF &area)
{
    const auto x = [](double relative) { return std::round(relative * screen.width()); };
    const auto y = [](double relative) { return std::round(relative * screen.height()); };
    return QRectF(QPointF(x(area.left()), y(area.top())), QPointF(x(area.right()), y(area.bottom())));
}

// Lines across an area, aligned with those of its neighbours; Qt's own patterns are lost in an SVG.
static void addHatching(QPainterPath *path, const QRectF &area, double step, bool isRising)
{
    const double low = isRising ? area.left() + area.top() : area.left() - area.bottom();
    const double high = isRising ? area.right() + area.bottom() : area.right() - area.top();
    for (double line = std::ceil(low / step) * step; line <= high; line += step) {
        const double from = std::max(area.left(), isRising ? line - area.bottom() : line + area.top());
        const double to = std::min(area.right(), isRising ? line - area.top() : line + area.bottom());
        if (from >= to)
            continue;
        path->moveTo(from, isRising ? line - from : from - line);
        path->lineTo(to, isRising ? line - to : to - line);
    }
}

void drawUnmatched(QPainter *painter, const QVector<QRectF> &areas)
{
    QPainterPath path;
    for (const QRectF &area : areas)
        addHatching(&path, area, 12, true);
    painter->setPen(QPen(Qt::black, 1));
    painter->drawPath(path);
}

QPen dashedPen(double width, const QVector<qreal> &pattern)
{
    QPen pen(Qt::black, width, Qt::SolidLine, Qt::FlatCap);
    pen.setDashPattern(pattern);
    return pen;
}

void drawContested(QPainter *painter, const QRegion &region)
{
    QPainterPath path;
    for (const QRect &area : region)
        addHatching(&path, QRectF(area), 8, false);
    painter->setPen(dashedPen(1, {2, 5}));
    painter->drawPath(path);
}

// The sides that a piece of a zone shares with the zone.
static void addSides(QPainterPath *path, const QRectF &piece, const QRectF &zone)
{
    const auto side = [path](const QPointF &from, const QPointF &to) {
        path->moveTo(from);
        path->lineTo(to);
    };
    if (piece.left() == zone.left())
        side(piece.topLeft(), piece.bottomLeft());
    if (piece.right() == zone.right())
        side(piece.topRight(), piece.bottomRight());
    if (piece.top() == zone.top())
        side(piece.topLeft(), piece.topRight());
    if (piece.bottom() == zone.bottom())
        side(piece.bottomLeft(), piece.bottomRight());
}

void drawOutlines(QPainter *painter, const Panel &panel)
{
    QPainterPath lost;
    QPainterPath left;
    for (const Panel::Entry &entry : panel.entries) {
        const QRectF zone = onPanel(analysis::onScreen(entry.gesture->zone()));
        for (const analysis::Loss &loss : entry.reach.losses) {
            for (const QRectF &piece : loss.area)
                addSides(&lost, onPanel(piece), zone);
        }
        for (const QRectF &piece : entry.reach.left)
            addSides(&left, onPanel(piece), zone);
    }
    painter->setPen(dashedPen(2, {4, 3}));
    painter->drawPath(lost);
    painter->setPen(QPen(Qt::black, 2));
    painter->drawPath(left);
}

QRegion contestedRegion(const Panel &panel)
{
    QRegion region;
    for (const Panel::Entry &entry : panel.entries) {
        for (const analysis::Loss &loss : entry.reach.losses) {
            for (const QRectF &piece : loss.area)
                region += onPanel(piece).toRect();
        }
    }
    return region;
}

}
