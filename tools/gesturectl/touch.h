#pragma once

#include "options.h"

#include <gesture_api/gesture.h>

#include <QPointF>
#include <QString>

namespace gesturectl {

/// A touch as a program asks the lookup for it.
struct Touch
{
    QString mode;
    vellix::gesture::Gesture::Kind kind = vellix::gesture::Gesture::Tap;
    vellix::gesture::Gesture::Direction direction = vellix::gesture::Gesture::NoDirection;
    QPointF position;
};

void declareTouch(Options *options, Touch *touch);

}
