#include "families.h"

#include <analysis/reach.h>
#include <analysis/subject.h>
#include <analysis/values.h>

#include <QHash>
#include <QSet>

#include <algorithm>
#include <optional>

using namespace vellix::gesture;

namespace analysis {

// Whether every device supports an alternative; null (unknown) for a refused one.
static std::optional<bool> isAlwaysSupported(const Subject &subject, const QVariant &alternative)
{
    if (isObject(alternative))
        return alternative.toMap().value(QStringLiteral("features")).toList().isEmpty();
    const auto action = std::find_if(subject.actions.crbegin(), subject.actions.crend(), [&](const Action *candidate) {
        return isString(alternative) && candidate->path() == alternative.toString();
    });
    if (action == subject.actions.crend() || subject.refusedActions.contains(*action))
        return std::nullopt;
    return (*action)->featureList().isEmpty();
}

// The loader stops at the first alternative that the device supports, and does not see later ones.
static void reportAlternatives(const Subject &subject, const QVariantList &alternatives, const Place &place,
                               Findings *findings)
{
    bool isCertain = !alternatives.isEmpty();
    bool isEnded = false;
    for (int i = 0; i < alternatives.size(); ++i) {
        const QVariant &alternative = alternatives.at(i);
        if (isEnded)
            findings->add("unreachable-fallback", place[i],
                          QStringLiteral("this alternative is never reached: every device supports an earlier one"));
        else if (isString(alternative) && !subject.isDefined(alternative.toString()) && !findings->hasErrorAt(place[i]))
            findings->add("undefined-fallback", place[i],
                          QStringLiteral("action %1 is not defined").arg(quoted(alternative.toString())));
        const std::optional<bool> always = isAlwaysSupported(subject, alternative);
        isCertain = isCertain && always;
        isEnded = isEnded || always.value_or(false);
    }
    if (isCertain && !isEnded)
        findings->add("fallback-end", place,
                      QStringLiteral("every action of the fallback list needs a feature that a device may lack"));
}

static void findFallbacks(const Subject &subject, Findings *findings)
{
    for (const WrittenEntry &entry : subject.writtenEntries)
        reportAlternatives(subject, entry.map.value(QStringLiteral("defaultAction")).toList(),
                           entry.place[QStringLiteral("defaultAction")], findings);
}

static void findNotAvailable(const Subject &subject, Findings *findings)
{
    for (const Entry &entry : subject.entries) {
        const QStringList offered = subject.offeredPaths(entry);
        if (offered.isEmpty())
            continue;
        for (const ActionValue &value : subject.actionValues) {
            if (value.entry != entry.index || value.role == Role::Available || offered.contains(value.path()))
                continue;
            if (value.isName() && !subject.isDefined(value.path())) // reported elsewhere
                continue;
            findings->add("not-available", value.place,
                          QStringLiteral("gesture %1 does not offer its own action %2")
                                  .arg(quoted(entry.gesture->id()), quoted(value.path())));
        }
    }
}

static void findFixedActions(const Subject &subject, Findings *findings)
{
    for (const Entry &entry : subject.entries) {
        if (entry.hasId() && entry.map.contains(QStringLiteral("currentAction")))
            findings->add("fixed-action", entry.place[QStringLiteral("currentAction")].name(),
                          QStringLiteral("gesture %1 always performs this action: a user's choice has no effect")
                                  .arg(quoted(entry.gesture->id())));
    }
}

static void findDirectedTaps(const Subject &subject, Findings *findings)
{
    for (const Entry &entry : subject.entries) {
        const Gesture::Kind kind = entry.gesture->kind();
        if (!entry.hasTouches())
            continue;
        if ((kind != Gesture::Tap && kind != Gesture::Hold) || entry.gesture->direction() == Gesture::NoDirection)
            continue;
        findings->add("directed-tap", entry.place[QStringLiteral("direction")],
                      QStringLiteral("a %1 has no direction: gesture %2 never fires")
                              .arg(Gesture::kindToVariant(kind).toString(), quoted(entry.gesture->id())));
    }
}

static void findUndirectedSwipes(const Subject &subject, Findings *findings)
{
    for (const Entry &entry : subject.entries) {
        const bool isUndirected = entry.gesture->direction() == Gesture::NoDirection;
        if (entry.hasTouches() && entry.gesture->kind() == Gesture::Swipe && isUndirected)
            findings->add(
                    "undirected-swipe",
                    entry.place[entry.map.contains(QStringLiteral("direction")) ? QStringLiteral("direction")
                                                                                : QStringLiteral("kind")],
                    QStringLiteral("a swipe needs a direction: gesture %1 has none").arg(quoted(entry.gesture->id())));
    }
}

static void findModesCase(const Subject &subject, Findings *findings)
{
    QMap<QString, QPair<QString, int>> known; // by the case-folded mode: the first spelling, and its line
    QSet<QString> reported;
    for (const WrittenEntry &entry : subject.writtenEntries) {
        const QVariantList modes = entry.map.value(QStringLiteral("modes")).toList();
        for (int i = 0; i < modes.size(); ++i) {
            const QString mode = modes.at(i).toString();
            const Place place = entry.place[QStringLiteral("modes")][i];
            const auto first = known.constFind(mode.toCaseFolded());
            if (first == known.constEnd()) {
                known.insert(mode.toCaseFolded(), {mode, place.position().line});
            } else if (first->first != mode && !reported.contains(mode)) {
                reported.insert(mode);
                findings->add("modes-case", place,
                              QStringLiteral("mode %1 and mode %2 of line %3 differ only in case")
                                      .arg(quoted(mode), quoted(first->first), QString::number(first->second)));
            }
        }
    }
}

static void findNoAction(const Subject &subject, Findings *findings)
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
        findings->add("no-action",
                      entry.place[isFixed ? QStringLiteral("currentAction") : QStringLiteral("defaultAction")],
                      QStringLiteral("gesture %1 has no action: %2 needs %3")
                              .arg(quoted(entry.gesture->id()), quoted(action->path()), listed(missing)));
    }
}

// The gestures that lose touches to an unsupported one, by that one.
static QHash<const Gesture *, QStringList> victimsOf(const Subject &subject)
{
    const QList<Gesture *> gestures = subject.matchableGestures();
    const QVector<Mode> modes = modesOf(gestures);
    QHash<const Gesture *, QStringList> victims;
    for (const Entry &entry : subject.entries) {
        if (!entry.hasTouches() || !entry.gesture->supported())
            continue;
        const QString id = quoted(entry.gesture->id());
        const QVector<Mode> own = modesOf(entry.gesture, modes);
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

static void findDeadTouches(const Subject &subject, Findings *findings)
{
    const QHash<const Gesture *, QStringList> victims = victimsOf(subject);
    for (const Entry &entry : subject.entries) {
        if (victims.contains(entry.gesture))
            findings->add("dead-touches", entry.place[QStringLiteral("features")],
                          QStringLiteral("the device does not support gesture %1, which still takes touches from %2")
                                  .arg(quoted(entry.gesture->id()), listed(victims.value(entry.gesture))));
    }
}

Rules gestureRules()
{
    const Severity warning = Severity::Warning;
    return {
            {27, "fallback-end", warning, "A fallback list has no action that every device supports.",
             "End the list with an action without features. On a device that supports none of them the library rejects "
             "the whole file.",
             findFallbacks},
            {28, "undefined-fallback", warning, "A fallback list names an action that is not defined.",
             "Define the action, or remove its name. On a device that supports no earlier alternative the library "
             "rejects the whole file.",
             findFallbacks},
            {29, "unreachable-fallback", warning, "An alternative follows one that every device supports.",
             "Move it forward, or remove it. The first supported action is used.", findFallbacks},
            {30, "not-available", warning, "A gesture performs an action that it does not offer.",
             "The menu cannot show it, so a user who picks another action cannot go back. Add it to "
             "\"availableActions\".",
             findNotAvailable},
            {31, "fixed-action", warning, "\"currentAction\" hides the user's choice.",
             "Use \"defaultAction\", unless the gesture is meant to be fixed.", findFixedActions},
            {32, "directed-tap", warning, "A tap or hold has a direction.",
             "Remove the direction. Only swipes and drags have one.", findDirectedTaps},
            {33, "undirected-swipe", warning, "A swipe has no direction.",
             "Set a direction, and write one gesture for each. Without a direction it only matches an exact diagonal.",
             findUndirectedSwipes},
            {34, "modes-case", warning, "Two modes differ only in case.",
             "Spell them alike. The lookup distinguishes case.", findModesCase},
            {35, "no-action", warning, "A gesture has no action that the device supports.",
             "Use a fallback list as \"defaultAction\", or add the features to those of the gesture.", findNoAction,
             true},
            {36, "dead-touches", warning, "A gesture that the device does not support takes touches from others.",
             "Remove its \"features\", and end its \"defaultAction\" list with the action of the others. The lookup "
             "also finds unsupported gestures.",
             findDeadTouches, true},
    };
}

}
