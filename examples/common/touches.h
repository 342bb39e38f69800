#pragma once

#include <QObject>
#include <QPointF>
#include <QVariantMap>

/// Functions of the library that QML cannot call.
class Touches : public QObject
{
    Q_OBJECT

public:
    using QObject::QObject;

    /// The Gesture.Direction of a movement, y down.
    Q_INVOKABLE int directionOf(double dx, double dy) const;
    /// Looks up the gesture of a touch. Returns an object with "gesture" (null if nothing matches) and "microseconds",
    /// the time of the lookup. `position` is relative to the screen, 0 to 1.
    Q_INVOKABLE QVariantMap find(QObject *service, const QString &mode, int kind, int direction,
                                 const QPointF &position) const;
};
