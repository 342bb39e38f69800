#include "rules_configuration.h"

#include "keys.h"
#include "reach.h"

#include <gesture_api/gestureservice.h>

#include <QHash>
#include <QSet>

#include <algorithm>
#include <functional>
#include <iterator>
#include <optional>

using namespace vellix::gesture;

namespace analysis {

static int lineOf(const Place &place)
{
    return place.text().positionOf(place.span().begin).line;
}

static bool isMap(const QVariant &value)
{
    return value.userType() == QMetaType::QVariantMap;
}

static bool isString(const QVariant &value)
{
    return value.userType() == QMetaType::QString;
}

namespace {
/// The entry of a gesture as the file has it, whether the library takes it or not.
struct RawEntry
{
    QVariantMap map;
    Place place;
};
}

static QVector<RawEntry> rawEntries(const Subject &subject)
{
    QVector<RawEntry> entries;
    const QVariantList values = subject.root.value(QStringLiteral("gestures")).toList();
    const Place place = subject.place()[QStringLiteral("gestures")];
    for (int i = 0; i < values.size(); ++i) {
        if (isMap(values.at(i)))
            entries.append({values.at(i).toMap(), place[i]});
    }
    return entries;
}

static void reportDuplicateKeys(const JsonText &text, const JsonText::Node &node, Findings *findings)
{
    QSet<QString> known;
    for (const JsonText::Node &child : node.children) {
        if (child.nameSpan.end > 0) {
            if (known.contains(child.name))
                findings->add(rules::duplicateKey, Place(&text, &child, child.nameSpan),
                              quoted(child.name) + QStringLiteral(" was set before: that value is lost"));
            known.insert(child.name);
        }
        reportDuplicateKeys(text, child, findings);
    }
}

void reportDuplicateKeys(const JsonText &text, Findings *findings)
{
    reportDuplicateKeys(text, text.root(), findings);
}

/// Every rectangle of the file, by itself or in a gesture.
static void forEachRectangle(const Subject &subject,
                             const std::function<void(const QVariantMap &, const Place &)> &function)
{
    const QVariantMap zones = subject.root.value(QStringLiteral("zones")).toMap();
    for (auto zone = zones.cbegin(); zone != zones.cend(); ++zone) {
        if (isMap(*zone))
            function(zone->toMap(), subject.place()[QStringLiteral("zones")][zone.key()]);
    }
    const QVector<RawEntry> entries = rawEntries(subject);
    for (const RawEntry &entry : entries) {
        const QVariant zone = entry.map.value(QStringLiteral("zone"));
        if (isMap(zone))
            function(zone.toMap(), entry.place[QStringLiteral("zone")]);
    }
}

void reportUnknownKeys(const Subject &subject, Findings *findings)
{
    reportUnknownKeys(subject.root, subject.place(),
                      {QStringLiteral("zones"), QStringLiteral("actions"), QStringLiteral("actionGroups"),
                       QStringLiteral("gestures"), QStringLiteral("$schema")},
                      findings);
    forEachRectangle(subject, [findings](const QVariantMap &map, const Place &place) {
        reportUnknownKeys(map, place,
                          {QStringLiteral("x"), QStringLiteral("y"), QStringLiteral("w"), QStringLiteral("h")},
                          findings);
    });
    for (const ActionValue &value : subject.actionValues)
        reportUnknownKeys(
                value.value.toMap(), value.place,
                {QStringLiteral("path"), QStringLiteral("title"), QStringLiteral("titles"), QStringLiteral("features")},
                findings);
    const QVector<RawEntry> entries = rawEntries(subject);
    for (const RawEntry &entry : entries)
        reportUnknownKeys(entry.map, entry.place,
                          {QStringLiteral("id"), QStringLiteral("modes"), QStringLiteral("kind"),
                           QStringLiteral("zone"), QStringLiteral("direction"), QStringLiteral("availableActions"),
                           QStringLiteral("defaultAction"), QStringLiteral("currentAction"),
                           QStringLiteral("features")},
                          findings);
}

static void reportConvertedText(const QVariantMap &map, const Place &place, const QString &key, Findings *findings)
{
    const auto value = map.constFind(key);
    if (value != map.constEnd() && !isString(*value))
        reportConverted(*value, place[key], QLatin1Char('"') + value->toString() + QLatin1Char('"'), findings);
}

void reportConvertedValues(const Subject &subject, Findings *findings)
{
    forEachRectangle(subject, [findings](const QVariantMap &map, const Place &place) {
        for (const char *side : {"x", "y", "w", "h"}) {
            const auto value = map.constFind(QLatin1String(side));
            if (value != map.constEnd() && typeNameOf(*value) != QLatin1String("a number"))
                reportConverted(*value, place[QLatin1String(side)], QString::number(value->toDouble()), findings);
        }
    });
    for (const ActionValue &value : subject.actionValues) {
        const QVariantMap map = value.value.toMap();
        reportConvertedText(map, value.place, QStringLiteral("path"), findings);
        for (const QString &key : {QStringLiteral("titles"), QStringLiteral("features")})
            reportConvertedElements(map.value(key), value.place[key], findings);
    }
    const QVector<RawEntry> entries = rawEntries(subject);
    for (const RawEntry &entry : entries) {
        reportConvertedText(entry.map, entry.place, QStringLiteral("id"), findings);
        for (const QString &key : {QStringLiteral("modes"), QStringLiteral("features")})
            reportConvertedElements(entry.map.value(key), entry.place[key], findings);
    }
}

void reportOverriddenZones(const Subject &subject, Findings *findings)
{
    const QVariantMap zones = subject.root.value(QStringLiteral("zones")).toMap();
    for (auto zone = zones.cbegin(); zone != zones.cend(); ++zone) {
        if (GestureService::predefinedZones.contains(zone.key()))
            findings->add(rules::overriddenZone, subject.place()[QStringLiteral("zones")][zone.key()].name(),
                          QStringLiteral("the predefined zone ") + quoted(zone.key())
                                  + QStringLiteral(" is used in place of this one"));
    }
}

static void reportOddZone(const QRectF &zone, const Place &place, Findings *findings)
{
    // Edges such as 0.7 + 0.3 may be a rounding beyond the screen.
    const double rounding = 1e-9;
    const QRectF normal = zone.normalized();
    if (!(normal.width() > sliver) || !(normal.height() > sliver)) { // or no number
        findings->add(rules::zoneEmpty, place, QStringLiteral("the zone has no area: no touch is in it"));
        return;
    }
    if (zone.width() < 0 || zone.height() < 0)
        findings->add(rules::zoneNegative, place,
                      QStringLiteral("the zone has a negative side and goes from (%1, %2) to (%3, %4)")
                              .arg(normal.left())
                              .arg(normal.top())
                              .arg(normal.right())
                              .arg(normal.bottom()));
    if (onScreen(zone).isNull())
        findings->add(rules::zoneOutside, place, QStringLiteral("the zone is outside the screen"));
    else if (normal.left() < -rounding || normal.top() < -rounding || normal.right() > 1 + rounding
             || normal.bottom() > 1 + rounding)
        findings->add(rules::zoneOutside, place, QStringLiteral("the zone reaches beyond the screen"));
}

void reportOddZones(const Subject &subject, Findings *findings)
{
    forEachRectangle(subject, [findings](const QVariantMap &map, const Place &place) {
        const auto zone = Gesture::rectfFromVariant(map);
        if (zone.isRight())
            reportOddZone(zone.right(), place, findings);
    });
}

void reportUnusedZones(const Subject &subject, Findings *findings)
{
    QSet<QString> used;
    const QVector<RawEntry> entries = rawEntries(subject);
    for (const RawEntry &entry : entries)
        used.insert(entry.map.value(QStringLiteral("zone")).toString());
    const QVariantMap zones = subject.root.value(QStringLiteral("zones")).toMap();
    for (auto zone = zones.cbegin(); zone != zones.cend(); ++zone) {
        if (!used.contains(zone.key()))
            findings->add(rules::unusedZone, subject.place()[QStringLiteral("zones")][zone.key()].name(),
                          QStringLiteral("no gesture is in the zone ") + quoted(zone.key()));
    }
}

void reportDuplicateActions(const Subject &subject, Findings *findings)
{
    QMap<QString, int> lines;
    for (const ActionValue &value : subject.actionValues) {
        if (value.role != Role::Defined)
            continue;
        const auto known = lines.constFind(value.path());
        if (known != lines.constEnd())
            findings->add(rules::duplicateAction, value.place[QStringLiteral("path")],
                          QStringLiteral("action %1 was defined before, in line %2: that one is lost")
                                  .arg(quoted(value.path()), QString::number(*known)));
        lines.insert(value.path(), lineOf(value.place));
    }
}

void reportUnusedActions(const Subject &subject, Findings *findings)
{
    QSet<QString> used;
    for (const ActionValue &value : subject.actionValues) {
        if (value.role != Role::Defined)
            used.insert(value.path());
    }
    for (const ActionValue &value : subject.actionValues) {
        const bool hasPath = value.value.toMap().contains(QStringLiteral("path")); // or it is refused
        if (value.role == Role::Defined && hasPath && !used.contains(value.path()))
            findings->add(rules::unusedAction, value.place[QStringLiteral("path")],
                          QStringLiteral("no gesture or group names the action ") + quoted(value.path()));
    }
}

static QSet<QString> usedGroups(const Subject &subject)
{
    QSet<QString> used;
    const QVector<RawEntry> entries = rawEntries(subject);
    for (const RawEntry &entry : entries) {
        const QVariant available = entry.map.value(QStringLiteral("availableActions"));
        if (isString(available))
            used.insert(available.toString());
    }
    return used;
}

void reportUnusedGroups(const Subject &subject, Findings *findings)
{
    const QSet<QString> used = usedGroups(subject);
    const QVariantMap groups = subject.root.value(QStringLiteral("actionGroups")).toMap();
    for (auto group = groups.cbegin(); group != groups.cend(); ++group) {
        if (!used.contains(group.key()))
            findings->add(rules::unusedGroup, subject.place()[QStringLiteral("actionGroups")][group.key()].name(),
                          QStringLiteral("no gesture offers the group ") + quoted(group.key()));
    }
}

void reportDeepPaths(const Subject &subject, Findings *findings)
{
    for (const ActionValue &value : subject.actionValues) {
        const int segments = value.path().count(QLatin1Char('/')) + 1;
        if (segments > 64 && value.value.toMap().contains(QStringLiteral("path"))) // of its own, not a name
            findings->add(rules::deepPath, value.place[QStringLiteral("path")],
                          QStringLiteral("the path has %1 segments").arg(segments));
    }
}

void reportShortTitles(const Subject &subject, Findings *findings)
{
    for (const ActionValue &value : subject.actionValues) {
        const QVariantMap map = value.value.toMap();
        const bool isMany = map.contains(QStringLiteral("titles"));
        const QVariant titles = map.value(isMany ? QStringLiteral("titles") : QStringLiteral("title"));
        const int count = isMany ? titles.toList().size() : 1;
        const int segments = value.path().split(QLatin1Char('/')).size();
        if (!titles.isValid() || !map.contains(QStringLiteral("path")) || count >= segments)
            continue;
        findings->add(
                rules::shortTitles, value.place[isMany ? QStringLiteral("titles") : QStringLiteral("title")],
                QStringLiteral("the path %1 has %2 segments, and there %3")
                        .arg(quoted(value.path()), QString::number(segments),
                             count == 1 ? QStringLiteral("is one title") : QStringLiteral("are %1 titles").arg(count)));
    }
}

void reportUnsaveableActions(const Subject &subject, Findings *findings)
{
    const QSet<QString> groups = usedGroups(subject);
    for (const ActionValue &value : subject.actionValues) {
        const bool isChoosable =
                value.role != Role::Defined && (value.role != Role::InGroup || groups.contains(value.group));
        const bool hasPath = value.value.toMap().contains(QStringLiteral("path")); // or it is refused
        if (!isChoosable || !hasPath || subject.isDefined(value.path()))
            continue;
        findings->add(rules::unsaveableAction, value.place,
                      QStringLiteral("once %1 is saved, the next load is refused: action %1 not defined")
                              .arg(quoted(value.path())));
    }
}

// Where an entry says which touches are its own.
static Place placeOfZone(const Entry &entry)
{
    return entry
            .place[entry.map.contains(QStringLiteral("zone")) ? QStringLiteral("zone") : QStringLiteral("direction")];
}

static QString list(const QStringList &texts)
{
    if (texts.size() < 2)
        return texts.join(QString());
    return texts.mid(0, texts.size() - 1).join(QStringLiteral(", ")) + QStringLiteral(" and ") + texts.last();
}

static Position positionOf(const Place &place)
{
    return place.text().positionOf(place.span().begin);
}

// Where something is, said at another place: the line says nothing in a file that is all one line.
static QString placeText(const Position &position, const Position &from)
{
    if (position.line != from.line)
        return QStringLiteral("line %1").arg(position.line);
    return QStringLiteral("column %1").arg(position.column);
}

namespace {
/// What a gesture loses to the same others in some modes.
struct Loser
{
    Reach reach;
    QVector<Mode> modes;
    QString takers;
};
}

static QString takersOf(const Reach &reach, const Position &from, const QHash<const Gesture *, Position> &places)
{
    QStringList takers;
    for (const Loss &loss : reach.losses) {
        const QString share = reach.losses.size() > 1 ? QStringLiteral(", ") + percent(loss.share) : QString();
        takers.append(
                QStringLiteral("%1 (%2%3)").arg(quoted(loss.to->id()), placeText(places.value(loss.to), from), share));
    }
    return QStringLiteral("the earlier ") + list(takers);
}

static QString modesText(const QVector<Mode> &modes)
{
    QStringList names;
    for (const Mode &mode : modes)
        names.append(mode ? quoted(*mode) : QStringLiteral("all others"));
    if (names.size() > 1)
        return QStringLiteral(" in modes ") + list(names);
    return modes.first() ? QStringLiteral(" in mode ") + names.first() : QStringLiteral(" in all other modes");
}

static QString takenText(const Loser &loser, const QString &modes)
{
    return loser.takers + (loser.reach.losses.size() > 1 ? QStringLiteral(" take") : QStringLiteral(" takes"))
            + QStringLiteral(" 100 % of its zone") + modes;
}

// One for all modes in which the same gestures take the same.
static QVector<Loser> losersOf(const Entry &entry, const QVector<Mode> &modes, const QList<Gesture *> &gestures,
                               const QHash<const Gesture *, Position> &places)
{
    QVector<Loser> losers;
    for (const Mode &mode : modes) {
        const Reach reach = reachOf(entry.gesture, gestures, mode);
        const QString takers = takersOf(reach, places.value(entry.gesture), places);
        const auto known = std::find_if(losers.begin(), losers.end(), [&](const Loser &one) {
            return one.takers == takers && one.reach.none == reach.none;
        });
        if (known != losers.end())
            known->modes.append(mode);
        else
            losers.append({reach, {mode}, takers});
    }
    return losers;
}

static void reportLosers(const Entry &entry, const QVector<Loser> &losers, Findings *findings)
{
    const QString gesture = QStringLiteral("gesture ") + quoted(entry.gesture->id());
    const QString never = gesture + QStringLiteral(" never fires");
    const bool isDead = std::all_of(losers.cbegin(), losers.cend(), [](const Loser &one) { return one.reach.none; });
    if (isDead) {
        QStringList taken;
        for (const Loser &loser : losers)
            taken.append(takenText(loser, losers.size() > 1 ? modesText(loser.modes) : QString()));
        findings->add(rules::shadowed, placeOfZone(entry),
                      never + QStringLiteral(": ") + taken.join(QStringLiteral("; ")));
        return;
    }
    for (const Loser &loser : losers) {
        if (loser.reach.losses.isEmpty())
            continue;
        const QString modes = losers.size() > 1 ? modesText(loser.modes) : QString();
        if (loser.reach.none)
            findings->add(rules::shadowed, placeOfZone(entry),
                          never + modes + QStringLiteral(": ") + takenText(loser, QString()));
        else
            findings->add(rules::partlyShadowed, placeOfZone(entry),
                          gesture + QStringLiteral(" loses ") + percent(loser.reach.lostShare())
                                  + QStringLiteral(" of its zone") + modes + QStringLiteral(" to ") + loser.takers);
    }
}

static QVector<Mode> ownModes(const Entry &entry, const QVector<Mode> &modes)
{
    QVector<Mode> own;
    std::copy_if(modes.cbegin(), modes.cend(), std::back_inserter(own),
                 [&entry](const Mode &mode) { return applies(entry.gesture, mode); });
    return own;
}

static QList<Gesture *> gesturesOf(const Subject &subject)
{
    QList<Gesture *> gestures;
    for (const Entry &entry : subject.entries) {
        if (entry.hasTouches())
            gestures.append(entry.gesture);
    }
    return gestures;
}

void reportShadowed(const Subject &subject, Findings *findings)
{
    const QList<Gesture *> gestures = gesturesOf(subject);
    const QVector<Mode> modes = modesOf(gestures);
    QHash<const Gesture *, Position> places;
    for (const Entry &entry : subject.entries)
        places.insert(entry.gesture, positionOf(entry.place));
    for (const Entry &entry : subject.entries) {
        if (entry.hasTouches() && !onScreen(entry.gesture->zone()).isNull())
            reportLosers(entry, losersOf(entry, ownModes(entry, modes), gestures, places), findings);
    }
}

void reportDuplicateIds(const Subject &subject, Findings *findings)
{
    QMap<QString, Entry> known;
    for (const Entry &entry : subject.entries) {
        if (!entry.hasId())
            continue;
        const auto before = known.constFind(entry.gesture->id());
        // Neighbours are refused.
        if (before != known.constEnd() && before->index + 1 != entry.index)
            findings->add(rules::duplicateId, entry.place[QStringLiteral("id")],
                          QStringLiteral("the id %1 was used before, in %2")
                                  .arg(quoted(entry.gesture->id()),
                                       placeText(positionOf(before->place), positionOf(entry.place))));
        known.insert(entry.gesture->id(), entry);
    }
}

// Whether every device supports an alternative; not known of one that is refused.
static std::optional<bool> isAlwaysSupported(const Subject &subject, const QVariant &alternative)
{
    if (isMap(alternative))
        return alternative.toMap().value(QStringLiteral("features")).toList().isEmpty();
    const auto action = std::find_if(subject.actions.crbegin(), subject.actions.crend(), [&](const Action *candidate) {
        return isString(alternative) && candidate->path() == alternative.toString();
    });
    if (action == subject.actions.crend() || subject.refusedActions.contains(*action))
        return std::nullopt;
    return (*action)->featureList().isEmpty();
}

// The loader stops at the first alternative that the device supports, and does not see those behind it.
static void reportAlternatives(const Subject &subject, const QVariantList &alternatives, const Place &place,
                               Findings *findings)
{
    bool isCertain = !alternatives.isEmpty();
    bool isEnded = false;
    for (int i = 0; i < alternatives.size(); ++i) {
        const QVariant &alternative = alternatives.at(i);
        if (isEnded)
            findings->add(rules::unreachableFallback, place[i],
                          QStringLiteral("this alternative is never reached: every device supports an earlier one"));
        else if (isString(alternative) && !subject.isDefined(alternative.toString()) && !findings->hasErrorAt(place[i]))
            findings->add(rules::undefinedFallback, place[i],
                          QStringLiteral("action %1 is not defined").arg(quoted(alternative.toString())));
        const std::optional<bool> always = isAlwaysSupported(subject, alternative);
        isCertain = isCertain && always;
        isEnded = isEnded || always.value_or(false);
    }
    if (isCertain && !isEnded)
        findings->add(rules::fallbackEnd, place,
                      QStringLiteral("every action of the fallback list needs a feature that a device may lack"));
}

void reportFallbacks(const Subject &subject, Findings *findings)
{
    const QVector<RawEntry> entries = rawEntries(subject);
    for (const RawEntry &entry : entries)
        reportAlternatives(subject, entry.map.value(QStringLiteral("defaultAction")).toList(),
                           entry.place[QStringLiteral("defaultAction")], findings);
}

void reportNotAvailable(const Subject &subject, Findings *findings)
{
    for (const Entry &entry : subject.entries) {
        const QStringList offered = subject.offeredPaths(entry);
        if (offered.isEmpty())
            continue;
        for (const ActionValue &value : subject.actionValues) {
            if (value.entry != entry.index || value.role == Role::Available || offered.contains(value.path()))
                continue;
            if (value.isName() && !subject.isDefined(value.path())) // which is reported elsewhere
                continue;
            findings->add(rules::notAvailable, value.place,
                          QStringLiteral("gesture %1 does not offer its own action %2")
                                  .arg(quoted(entry.gesture->id()), quoted(value.path())));
        }
    }
}

void reportFixedActions(const Subject &subject, Findings *findings)
{
    for (const Entry &entry : subject.entries) {
        if (entry.hasId() && entry.map.contains(QStringLiteral("currentAction")))
            findings->add(rules::fixedAction, entry.place[QStringLiteral("currentAction")].name(),
                          QStringLiteral("gesture %1 always does this: what a user chooses never shows")
                                  .arg(quoted(entry.gesture->id())));
    }
}

void reportDirectedTaps(const Subject &subject, Findings *findings)
{
    for (const Entry &entry : subject.entries) {
        const Gesture::Kind kind = entry.gesture->kind();
        if (!entry.hasTouches())
            continue;
        if ((kind != Gesture::Tap && kind != Gesture::Hold) || entry.gesture->direction() == Gesture::NoDirection)
            continue;
        findings->add(rules::directedTap, entry.place[QStringLiteral("direction")],
                      QStringLiteral("a %1 goes in no direction: gesture %2 never fires")
                              .arg(Gesture::kindToVariant(kind).toString(), quoted(entry.gesture->id())));
    }
}

void reportUndirectedSwipes(const Subject &subject, Findings *findings)
{
    for (const Entry &entry : subject.entries) {
        const bool isUndirected = entry.gesture->direction() == Gesture::NoDirection;
        if (entry.hasTouches() && entry.gesture->kind() == Gesture::Swipe && isUndirected)
            findings->add(rules::undirectedSwipe,
                          entry.place[entry.map.contains(QStringLiteral("direction")) ? QStringLiteral("direction")
                                                                                      : QStringLiteral("kind")],
                          QStringLiteral("a swipe goes in a direction: gesture %1 has none")
                                  .arg(quoted(entry.gesture->id())));
    }
}

void reportModesCase(const Subject &subject, Findings *findings)
{
    QMap<QString, QPair<QString, int>> known; // by what they have in common: the first spelling, and its line
    QSet<QString> reported;
    const QVector<RawEntry> entries = rawEntries(subject);
    for (const RawEntry &entry : entries) {
        const QVariantList modes = entry.map.value(QStringLiteral("modes")).toList();
        for (int i = 0; i < modes.size(); ++i) {
            const QString mode = modes.at(i).toString();
            const Place place = entry.place[QStringLiteral("modes")][i];
            const auto first = known.constFind(mode.toCaseFolded());
            if (first == known.constEnd()) {
                known.insert(mode.toCaseFolded(), {mode, lineOf(place)});
            } else if (first->first != mode && !reported.contains(mode)) {
                reported.insert(mode);
                findings->add(rules::modesCase, place,
                              QStringLiteral("mode %1 is not %2 of line %3: they differ in case")
                                      .arg(quoted(mode), quoted(first->first), QString::number(first->second)));
            }
        }
    }
}

void reportNoAction(const Subject &subject, Findings *findings)
{
    for (const Entry &entry : subject.entries) {
        const Action *action = entry.gesture->currentAction();
        if (!entry.hasActions() || !entry.gesture->supported() || !action || action->supported())
            continue;
        QStringList missing;
        for (const Feature *feature : action->featureList()) {
            if (!feature->supported())
                missing.append(feature->name());
        }
        missing.sort();
        const bool isFixed = entry.map.contains(QStringLiteral("currentAction"));
        findings->add(rules::noAction,
                      entry.place[isFixed ? QStringLiteral("currentAction") : QStringLiteral("defaultAction")],
                      QStringLiteral("gesture %1 has no action: %2 needs %3")
                              .arg(quoted(entry.gesture->id()), quoted(action->path()), list(missing)));
    }
}

// What loses touches to a gesture that the device does not support, for each such one.
static QHash<const Gesture *, QStringList> victimsOf(const Subject &subject)
{
    const QList<Gesture *> gestures = gesturesOf(subject);
    const QVector<Mode> modes = modesOf(gestures);
    QHash<const Gesture *, QStringList> victims;
    for (const Entry &entry : subject.entries) {
        if (!entry.hasTouches() || !entry.gesture->supported())
            continue;
        const QString id = quoted(entry.gesture->id());
        const QVector<Mode> own = ownModes(entry, modes);
        for (const Mode &mode : own) {
            const Reach reach = reachOf(entry.gesture, gestures, mode);
            for (const Loss &loss : reach.losses) {
                if (!loss.to->supported() && !victims[loss.to].contains(id))
                    victims[loss.to].append(id);
            }
        }
    }
    return victims;
}

void reportDeadTouches(const Subject &subject, Findings *findings)
{
    const QHash<const Gesture *, QStringList> victims = victimsOf(subject);
    for (const Entry &entry : subject.entries) {
        if (victims.contains(entry.gesture))
            findings->add(rules::deadTouches, entry.place[QStringLiteral("features")],
                          QStringLiteral("the device does not support gesture %1, which still takes touches from %2")
                                  .arg(quoted(entry.gesture->id()), list(victims.value(entry.gesture))));
    }
}

}
