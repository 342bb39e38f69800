#include "gesturetext.h"

using namespace vellix::gesture;

namespace gesturectl {

QString kindText(Gesture::Kind kind)
{
    return Gesture::kindToVariant(kind).toString();
}

QString directionText(Gesture::Direction direction)
{
    return Gesture::directionToVariant(direction).toString();
}

QString pathOf(const Action *action)
{
    return action ? action->path() : QStringLiteral("-");
}

QJsonValue jsonPathOf(const Action *action)
{
    return action ? QJsonValue(action->path()) : QJsonValue();
}

QString numbersOf(const QRectF &zone, int precision)
{
    const auto number = [precision](double value) { return QString::number(value, 'g', precision); };
    return QStringLiteral("(%1, %2, %3, %4)")
            .arg(number(zone.x()), number(zone.y()), number(zone.width()), number(zone.height()));
}

QJsonObject toJson(const QRectF &zone)
{
    return QJsonObject::fromVariantMap(Gesture::rectfToVariant(zone).toMap());
}

}
