#include <gesture_api/zones.h>

namespace vellix {
namespace gesture {

static Left<Error> fail(int line, const char *message)
{
    return Left(Error({"../../../gesture_api/src/zones", line}, message));
}

QMap<QString, QRectF> Zones::wholeZone()
{
    return {{QStringLiteral("whole"), QRectF(0, 0, 1, 1)}};
}

Either<Error, QMap<QString, QRectF>> Zones::generate3x3Model(const QPointF &divider)
{
    const double X = divider.x();
    const double Y = divider.y();
    if (qFuzzyCompare(X, 0.0))
        return fail(__LINE__, "divider.x is 0");
    if (qFuzzyCompare(Y, 0.0))
        return fail(__LINE__, "divider.y is 0");

    return Right(QMap<QString, QRectF>{
            {QStringLiteral("center"), {1 / X, 1 / Y, (X - 2) / X, (Y - 2) / Y}},
            {QStringLiteral("left"), {0, 1 / Y, 1 / X, (Y - 2) / Y}},
            {QStringLiteral("right"), {(X - 1) / X, 1 / Y, 1 / X, (Y - 2) / Y}},
            {QStringLiteral("top"), {1 / X, 0, (X - 2) / X, 1 / Y}},
            {QStringLiteral("bottom"), {1 / X, (Y - 1) / Y, (X - 2) / X, 1 / Y}},
            {QStringLiteral("leftTop"), {0, 0, 1 / X, 1 / Y}},
            {QStringLiteral("rightTop"), {(X - 1) / X, 0, 1 / X, 1 / Y}},
            {QStringLiteral("leftBottom"), {0, (Y - 1) / Y, 1 / X, 1 / Y}},
            {QStringLiteral("rightBottom"), {(X - 1) / X, (Y - 1) / Y, 1 / X, 1 / Y}},
    });
}

Either<Error, QMap<QString, QRectF>> Zones::generateV3Model(const double &divider)
{
    const double D = divider;
    if (qFuzzyCompare(D, 0.0))
        return fail(__LINE__, "divider.x is 0");

    return Right(QMap<QString, QRectF>{
            {QStringLiteral("centerVerticalLine"), {1 / D, 0, (D - 2) / D, 1}},
            {QStringLiteral("leftVerticalLine"), {0, 0, 1 / D, 1}},
            {QStringLiteral("rightVerticalLine"), {(D - 1) / D, 0, 1 / D, 1}},
    });
}

bool Zones::contains(const QRectF &outer, const QRectF &inner)
{
    return inner.x() >= outer.x() && inner.y() >= outer.y() && inner.x() + inner.width() <= outer.x() + outer.width()
            && inner.y() + inner.height() <= outer.y() + outer.height();
}

}
}
