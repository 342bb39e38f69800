#pragma once

#include <gesture_api/gesture.h>
#include <gesture_api/gestureservice.h>

#include <QObject>
#include <QPointF>
#include <QRectF>
#include <QString>

namespace vellix {
namespace gesture {

/// The singleton `Gestures`: functions of the library that QML cannot call otherwise, and the names of gestures in the
/// language of the program.
class Gestures : public QObject
{
    Q_OBJECT

public:
    using QObject::QObject;

    /// The Gesture.Direction of a movement along its longer axis, y down; see Gesture::directionFromVec().
    Q_INVOKABLE int directionFromVec(double dx, double dy) const;
    /// The first gesture of a service with this id, or null.
    Q_INVOKABLE vellix::gesture::Gesture *gestureById(vellix::gesture::GestureService *service,
                                                      const QString &id) const;
    /// "Tap, on the right".
    Q_INVOKABLE QString gestureTitle(vellix::gesture::Gesture *gesture) const;
    /// "Reading: tap", the heading of a gesture's section.
    Q_INVOKABLE QString sectionTitle(vellix::gesture::Gesture *gesture) const;
    /// "Tap", for a Gesture.Kind.
    Q_INVOKABLE QString kindTitle(int kind) const;
    /// "Swipe to the left", for a Gesture.Kind and a Gesture.Direction.
    Q_INVOKABLE QString touchTitle(int kind, int direction) const;
    /// "on the right", for a zone in relative screen coordinates. Empty for the whole screen.
    Q_INVOKABLE QString zoneTitle(const QRectF &zone) const;
    /// "Reading", for a mode of the configuration.
    Q_INVOKABLE QString modeTitle(const QString &mode) const;
    /// The last title of an action, else its path, or "Nothing" for null.
    Q_INVOKABLE QString actionTitle(vellix::gesture::Action *action) const;
    /// Reports the accessible name of an item to screen readers, as an alert.
    Q_INVOKABLE void announce(QObject *item) const;
};

}
}
