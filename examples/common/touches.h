#pragma once

#include <QObject>
#include <QPointF>
#include <QVariantMap>

/// What a touch screen's program needs of the library and QML does not see.
class Touches : public QObject
{
    Q_OBJECT

public:
    using QObject::QObject;

    /// The Gesture.Direction of a movement, y growing downwards.
    Q_INVOKABLE int directionOf(double dx, double dy) const;
    /// Asks a service for the gesture of a touch: a map of "gesture" (null when nothing matches) and "microseconds",
    /// the time that the answer took. `position` is relative to the screen, 0 to 1.
    Q_INVOKABLE QVariantMap find(QObject *service, const QString &mode, int kind, int direction,
                                 const QPointF &position) const;
};
