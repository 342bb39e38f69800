#pragma once

#include <gesture_api/action.h>
#include <gesture_api/gesture.h>

#include <QJsonObject>
#include <QString>

// The properties of a gesture in the output of the verbs.

namespace gesturectl {

QString kindText(vellix::gesture::Gesture::Kind kind);
QString directionText(vellix::gesture::Gesture::Direction direction);

/// "-" without an action.
QString pathOf(const vellix::gesture::Action *action);
/// null without an action.
QJsonValue jsonPathOf(const vellix::gesture::Action *action);

/// "(x, y, width, height)"
QString numbersOf(const QRectF &zone, int precision = 4);
QJsonObject toJson(const QRectF &zone);

}
