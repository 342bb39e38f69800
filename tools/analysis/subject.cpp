#include "subject.h"

#include "values.h"

#include <algorithm>

using namespace vellix::gesture;

namespace analysis {

QString ActionValue::path() const
{
    return isName() ? value.toString() : value.toMap().value(QStringLiteral("path")).toString();
}

static bool hasAny(const QStringList &members, std::initializer_list<const char *> wanted)
{
    return std::any_of(wanted.begin(), wanted.end(),
                       [&members](const char *name) { return members.contains(QLatin1String(name)); });
}

bool Entry::hasTouches() const
{
    return !hasAny(refused, {"", "kind", "zone", "direction", "modes"});
}

bool Entry::hasId() const
{
    return map.contains(QStringLiteral("id")) || hasTouches();
}

bool Entry::hasActions() const
{
    return !hasAny(refused, {"", "availableActions", "defaultAction", "currentAction"});
}

QStringList Subject::offeredPaths(const Entry &entry) const
{
    const QVariant available = entry.map.value(QStringLiteral("availableActions"));
    const bool isGroup = isString(available);
    QStringList paths;
    for (const ActionValue &value : actionValues) {
        const bool isOffered = isGroup ? value.role == Role::InGroup && value.group == available.toString()
                                       : value.role == Role::Available && value.entry == entry.index;
        if (isOffered)
            paths.append(value.path());
    }
    return paths;
}

QList<Gesture *> Subject::matchableGestures() const
{
    QList<Gesture *> gestures;
    for (const Entry &entry : entries) {
        if (entry.hasTouches())
            gestures.append(entry.gesture);
    }
    return gestures;
}

void Subject::forEachRectangle(const std::function<void(const QVariantMap &, const Place &)> &function) const
{
    const QVariantMap written = root.value(QStringLiteral("zones")).toMap();
    for (auto zone = written.cbegin(); zone != written.cend(); ++zone) {
        if (isObject(*zone))
            function(zone->toMap(), place()[QStringLiteral("zones")][zone.key()]);
    }
    for (const WrittenEntry &entry : writtenEntries) {
        const QVariant zone = entry.map.value(QStringLiteral("zone"));
        if (isObject(zone))
            function(zone.toMap(), entry.place[QStringLiteral("zone")]);
    }
}

}
