#pragma once

#include <vellix/either.h>
#include <vellix/export.h>

#include <QMap>
#include <QPointF>
#include <QRectF>
#include <QString>

namespace vellix {
namespace gesture {

/// Named rectangles of the screen, in relative coordinates: the whole screen is (0, 0, 1, 1), x to the right, y down.
class GESTURE_API_EXPORT Zones
{
public:
    /// The zone "whole".
    static QMap<QString, QRectF> wholeZone();

    /// Nine zones of a 3 by 3 grid, "leftTop", "top", "rightTop", "left", "center" and so on: the border columns are
    /// 1/divider.x of the width, the border rows 1/divider.y of the height. Fails with "divider.x is 0" or "divider.y
    /// is 0".
    static Either<Error, QMap<QString, QRectF>> generate3x3Model(const QPointF &divider);

    /// Three stripes of full height, "leftVerticalLine", "centerVerticalLine" and "rightVerticalLine", the outer two
    /// 1/divider of the width. Fails with "divider.x is 0".
    static Either<Error, QMap<QString, QRectF>> generateV3Model(const double &divider);

    /// Whether `inner` is completely inside `outer`. Shared edges count as inside; there is no tolerance.
    static bool contains(const QRectF &outer, const QRectF &inner);
};

}
}
