#pragma once

#include <gesture_api/gesture.h>

#include <QPointF>
#include <QString>

#include <optional>

// The library's lookup as tests of a single gesture: the first gesture that passes all of them wins.

namespace analysis {

/// A mode of the application; null stands for every mode that no gesture names.
using Mode = std::optional<QString>;

struct Touch
{
    Mode mode;
    vellix::gesture::Gesture::Kind kind;
    vellix::gesture::Gesture::Direction direction;
    std::optional<QPointF> position; // null stands for any position
};

enum class Test { Modes, Kind, Direction, Zone };

/// "mode", "kind", "direction" or "zone".
QString nameOf(Test test);

/// Whether the lookup considers a gesture in a mode.
bool applies(const vellix::gesture::Gesture *gesture, const Mode &mode);

/// The first test that a gesture fails; null if it matches the touch.
std::optional<Test> firstFailed(const vellix::gesture::Gesture *gesture, const Touch &touch);

}
