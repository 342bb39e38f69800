#include "reach.h"

#include <algorithm>
#include <cmath>
#include <iterator>
#include <numeric>
#include <set>

using namespace vellix::gesture;

namespace analysis {

static const double negligible = 1e-9;

QRectF onScreen(const QRectF &zone)
{
    const QRectF normal = zone.normalized();
    for (double edge : {normal.left(), normal.top(), normal.right(), normal.bottom()}) {
        if (std::isnan(edge)) // no touch is at such an edge
            return {};
    }
    const QPointF topLeft(std::max(normal.left(), 0.0), std::max(normal.top(), 0.0));
    const QPointF bottomRight(std::min(normal.right(), 1.0), std::min(normal.bottom(), 1.0));
    const QRectF cut(topLeft, bottomRight);
    return cut.width() > sliver && cut.height() > sliver ? cut : QRectF();
}

static double areaOf(const QRectF &rectangle)
{
    return rectangle.width() * rectangle.height();
}

static double areaOf(const QVector<QRectF> &rectangles)
{
    return std::accumulate(rectangles.cbegin(), rectangles.cend(), 0.0,
                           [](double sum, const QRectF &rectangle) { return sum + areaOf(rectangle); });
}

// By its edges: a width that is computed and added again would not meet the neighbour's edge.
static QRectF between(double left, double top, double right, double bottom)
{
    return QRectF(QPointF(left, top), QPointF(right, bottom));
}

static void appendUnlessSliver(QVector<QRectF> *list, const QRectF &rectangle)
{
    if (rectangle.width() > sliver && rectangle.height() > sliver)
        list->append(rectangle);
}

// Cuts `taken` out of `from`: `cut` gets the common part, `rest` the up to four pieces around it.
static void subtract(const QRectF &from, const QRectF &taken, QVector<QRectF> *rest, QVector<QRectF> *cut)
{
    const QRectF common = from & taken;
    if (common.isEmpty()) { // without an area they only touch
        rest->append(from);
        return;
    }
    cut->append(common);
    const double above = std::max(from.top(), taken.top());
    const double below = std::min(from.bottom(), taken.bottom());
    appendUnlessSliver(rest, between(from.left(), from.top(), from.right(), above));
    appendUnlessSliver(rest, between(from.left(), below, from.right(), from.bottom()));
    appendUnlessSliver(rest, between(from.left(), above, std::max(from.left(), taken.left()), below));
    appendUnlessSliver(rest, between(std::min(from.right(), taken.right()), above, from.right(), below));
}

double Reach::lostShare() const
{
    return std::accumulate(losses.cbegin(), losses.cend(), 0.0,
                           [](double sum, const Loss &loss) { return sum + loss.share; });
}

Reach reachOf(const Gesture *gesture, const QList<Gesture *> &gestures, const Mode &mode)
{
    const QRectF zone = onScreen(gesture->zone());
    const Touch touch{mode, gesture->kind(), gesture->direction(), std::nullopt};
    Reach reach;
    appendUnlessSliver(&reach.left, zone);
    for (const Gesture *earlier : gestures) {
        if (earlier == gesture || reach.left.isEmpty())
            break;
        if (firstFailed(earlier, touch))
            continue;
        const QRectF taken = onScreen(earlier->zone());
        QVector<QRectF> rest;
        QVector<QRectF> cut;
        for (const QRectF &piece : qAsConst(reach.left))
            subtract(piece, taken, &rest, &cut);
        reach.left = rest;
        const double share = areaOf(cut) / areaOf(zone);
        if (share > negligible)
            reach.losses.append({earlier, cut, share});
    }
    reach.none = areaOf(reach.left) <= negligible * areaOf(zone);
    return reach;
}

QVector<Mode> modesOf(const QList<Gesture *> &gestures)
{
    std::set<QString> named;
    bool isAnyOpen = false;
    for (const Gesture *gesture : gestures) {
        isAnyOpen = isAnyOpen || gesture->modes().isEmpty();
        named.insert(gesture->modes().cbegin(), gesture->modes().cend());
    }
    QVector<Mode> modes;
    for (const QString &mode : named)
        modes.append(mode);
    if (isAnyOpen)
        modes.append(std::nullopt);
    return modes;
}

QVector<Mode> modesOf(const Gesture *gesture, const QVector<Mode> &modes)
{
    QVector<Mode> own;
    std::copy_if(modes.cbegin(), modes.cend(), std::back_inserter(own),
                 [gesture](const Mode &mode) { return applies(gesture, mode); });
    return own;
}

}
