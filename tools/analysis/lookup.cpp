#include "lookup.h"

using namespace vellix::gesture;

namespace analysis {

QString nameOf(Test test)
{
    switch (test) {
    case Test::Modes: return QStringLiteral("mode");
    case Test::Kind: return QStringLiteral("kind");
    case Test::Direction: return QStringLiteral("direction");
    case Test::Zone: break;
    }
    return QStringLiteral("zone");
}

bool applies(const Gesture *gesture, const Mode &mode)
{
    return gesture->modes().isEmpty() || (mode && gesture->modes().contains(*mode));
}

std::optional<Test> firstFailed(const Gesture *gesture, const Touch &touch)
{
    if (!applies(gesture, touch.mode))
        return Test::Modes;
    if (gesture->kind() != touch.kind)
        return Test::Kind;
    if (gesture->direction() != touch.direction)
        return Test::Direction;
    if (touch.position && !gesture->zone().contains(*touch.position))
        return Test::Zone;
    return std::nullopt;
}

}
