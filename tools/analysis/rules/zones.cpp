#include "families.h"

#include <analysis/reach.h>
#include <analysis/subject.h>

#include <gesture_api/gestureservice.h>

#include <QSet>

using namespace vellix::gesture;

namespace analysis {

static void findOverriddenZones(const Subject &subject, Findings *findings)
{
    const QVariantMap zones = subject.root.value(QStringLiteral("zones")).toMap();
    for (auto zone = zones.cbegin(); zone != zones.cend(); ++zone) {
        if (GestureService::predefinedZones.contains(zone.key()))
            findings->add("overridden-zone", subject.place()[QStringLiteral("zones")][zone.key()].name(),
                          QStringLiteral("the predefined zone ") + quoted(zone.key())
                                  + QStringLiteral(" is used instead of this one"));
    }
}

static void reportOddZone(const QRectF &zone, const Place &place, Findings *findings)
{
    // Edges such as 0.7 + 0.3 may be beyond the screen by a rounding.
    const double rounding = 1e-9;
    const QRectF normal = zone.normalized();
    if (!(normal.width() > sliver) || !(normal.height() > sliver)) { // also if one is NaN
        findings->add("zone-empty", place, QStringLiteral("the zone has no area: no touch can hit it"));
        return;
    }
    if (zone.width() < 0 || zone.height() < 0)
        findings->add("zone-negative", place,
                      QStringLiteral("the zone has a negative side and goes from (%1, %2) to (%3, %4)")
                              .arg(normal.left())
                              .arg(normal.top())
                              .arg(normal.right())
                              .arg(normal.bottom()));
    if (onScreen(zone).isNull())
        findings->add("zone-outside", place, QStringLiteral("the zone is outside the screen"));
    else if (normal.left() < -rounding || normal.top() < -rounding || normal.right() > 1 + rounding
             || normal.bottom() > 1 + rounding)
        findings->add("zone-outside", place, QStringLiteral("the zone reaches beyond the screen"));
}

static void findOddZones(const Subject &subject, Findings *findings)
{
    subject.forEachRectangle([findings](const QVariantMap &map, const Place &place) {
        const auto zone = Gesture::rectfFromVariant(map);
        if (zone.isRight())
            reportOddZone(zone.right(), place, findings);
    });
}

static void findUnusedZones(const Subject &subject, Findings *findings)
{
    QSet<QString> used;
    for (const WrittenEntry &entry : subject.writtenEntries)
        used.insert(entry.map.value(QStringLiteral("zone")).toString());
    const QVariantMap zones = subject.root.value(QStringLiteral("zones")).toMap();
    for (auto zone = zones.cbegin(); zone != zones.cend(); ++zone) {
        if (!used.contains(zone.key()))
            findings->add("unused-zone", subject.place()[QStringLiteral("zones")][zone.key()].name(),
                          QStringLiteral("zone %1 is not used by any gesture").arg(quoted(zone.key())));
    }
}

Rules zoneRules()
{
    const Severity warning = Severity::Warning;
    return {
            {17, "overridden-zone", warning, "A zone has the name of a predefined zone.",
             "Give it another name. The predefined zone wins.", findOverriddenZones},
            {18, "zone-outside", warning, "A zone is outside the screen or reaches beyond it.",
             "Use coordinates from 0 to 1, x to the right and y down.", findOddZones},
            {19, "zone-empty", warning, "A zone has no width or no height.",
             "Set its width \"w\" and its height \"h\".", findOddZones},
            {20, "zone-negative", warning, "A zone has a negative side.",
             "Write the top left corner and positive sides. A negative side extends to the left or upwards.",
             findOddZones},
            {21, "unused-zone", warning, "No gesture uses a zone.", "Use the zone, or remove it.", findUnusedZones},
    };
}

}
