#include "touches.h"

#include <gesture_api/gestureservice.h>

#include <QElapsedTimer>

using namespace vellix::gesture;

int Touches::directionOf(double dx, double dy) const
{
    return Gesture::directionFromVec(dx, dy);
}

QVariantMap Touches::find(QObject *service, const QString &mode, int kind, int direction, const QPointF &position) const
{
    const auto *gestures = qobject_cast<GestureService *>(service);
    QElapsedTimer timer;
    timer.start();
    QObject *found = gestures ? gestures->findGesture(mode, static_cast<Gesture::Kind>(kind),
                                                      static_cast<Gesture::Direction>(direction), position)
                              : nullptr;
    const double microseconds = static_cast<double>(timer.nsecsElapsed()) / 1000;
    return {{"gesture", QVariant::fromValue(found)}, {"microseconds", microseconds}};
}
