#include "hint.h"

#include "devices.h"
#include "values.h"

#include <gesture_api/gestureservice.h>

#include <QRegularExpression>

using vellix::gesture::GestureService;

namespace analysis {

QString nearestHint(const QString &name, const QStringList &known)
{
    const QString meant = nearestTo(name, known);
    return meant.isEmpty() ? QString() : QStringLiteral("Did you mean ") + quoted(meant) + QLatin1Char('?');
}

// The names of all zones, actions, action groups or features; `kind` is the word for them in the library's messages.
static QStringList knownNames(const QString &kind, const Subject &subject)
{
    if (kind == QLatin1String("zone"))
        return subject.zones.keys() + GestureService::predefinedZones.keys();
    if (kind == QLatin1String("action"))
        return subject.definedPaths.values();
    if (kind == QLatin1String("action group"))
        return subject.groupNames();
    return knownFeatures();
}

// The library's messages name the refused value, but not always the accepted ones. As an example, this file:
//
//   {"actions": [{"path": "page/next", "title": "Next"}],
//    "actionGroups": {"reading": ["page/next"]},
//    "gestures": [{"kind": "tap", "zone": "Right", "defaultAction": "reading"}]}
//
// 1. At "Right" the message is "zone 'Right' not defined". The nearest of the zones in force is `right`, which only
//    differs in case (up to two letters may differ). The hint is "Did you mean 'right'?"
// 2. At "reading" the message is "action 'reading' not defined". A group has this name, so the name is right but stands
//    in the wrong place. The hint says where a group can be named.
// 3. If the kind were "tip", the message would be "kind can be only ...", and the hint would list the kinds.
// 4. Other messages, and names without a near one, have no hint of their own: the finding gets that of its rule.
QString hintFor(const QString &words, const Subject &subject)
{
    static const QRegularExpression undefined(
            QStringLiteral("^(zone|action group|action) '(.*)' not defined$|^unknown (feature): `(.*)`$"));
    if (words.startsWith(QLatin1String("kind can be only")))
        return QStringLiteral("Use tap, hold, swipe or drag.");
    const auto match = undefined.match(words);
    if (!match.hasMatch())
        return {};
    const QString kind = match.captured(1) + match.captured(3);
    const QString name = match.captured(2) + match.captured(4);
    if (kind == QLatin1String("action") && subject.groupNames().contains(name))
        return QStringLiteral("This is a group. Only \"availableActions\" can name a group, and not in a list.");
    return nearestHint(name, knownNames(kind, subject));
}

}
