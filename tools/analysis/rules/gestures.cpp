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

// Whether every device supports an alternative; not known of one that is refused.
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

// The loader stops at the first alternative that the device supports, and does not see those behind it.
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
            if (value.isName() && !subject.isDefined(value.path())) // which is reported elsewhere
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
                          QStringLiteral("gesture %1 always does this: what a user chooses never shows")
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
                      QStringLiteral("a %1 goes in no direction: gesture %2 never fires")
                              .arg(Gesture::kindToVariant(kind).toString(), quoted(entry.gesture->id())));
    }
}

static void findUndirectedSwipes(const Subject &subject, Findings *findings)
{
    for (const Entry &entry : subject.entries) {
        const bool isUndirected = entry.gesture->direction() == Gesture::NoDirection;
        if (entry.hasTouches() && entry.gesture->kind() == Gesture::Swipe && isUndirected)
            findings->add("undirected-swipe",
                          entry.place[entry.map.contains(QStringLiteral("direction")) ? QStringLiteral("direction")
                                                                                      : QStringLiteral("kind")],
                          QStringLiteral("a swipe goes in a direction: gesture %1 has none")
                                  .arg(quoted(entry.gesture->id())));
    }
}

static void findModesCase(const Subject &subject, Findings *findings)
{
    QMap<QString, QPair<QString, int>> known; // by what they have in common: the first spelling, and its line
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
                              QStringLiteral("mode %1 is not %2 of line %3: they differ in case")
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

// What loses touches to a gesture that the device does not support, for each such one.
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
             "A device that supports none of them loads nothing of the file: end the list with an action without "
             "features.",
             findFallbacks},
            {28, "undefined-fallback", warning, "A fallback list names an action that is not defined.",
             "A device that supports no earlier alternative loads nothing of the file.", findFallbacks},
            {29, "unreachable-fallback", warning, "An alternative stands behind one that always works.",
             "The first supported action is taken: move it forward, or drop it.", findFallbacks},
            {30, "not-available", warning, "An action that a gesture does is not among those that it offers.",
             "The menu cannot show it, and who chooses another cannot return to it: offer it, too.", findNotAvailable},
            {31, "fixed-action", warning, "\"currentAction\" hides what a user chooses.",
             "Use \"defaultAction\", unless the gesture is to be fixed.", findFixedActions},
            {32, "directed-tap", warning, "A tap or hold has a direction.",
             "Only swipes and drags have one: drop the direction.", findDirectedTaps},
            {33, "undirected-swipe", warning, "A swipe has no direction.",
             "It matches no movement but an exact diagonal: set its direction, once for each.", findUndirectedSwipes},
            {34, "modes-case", warning, "Modes differ only in case.", "The lookup tells them apart.", findModesCase},
            {35, "no-action", warning, "A gesture has no action that the device supports.",
             "Use a \"defaultAction\" with a fallback list, or name the features among the gesture's own.",
             findNoAction, true},
            {36, "dead-touches", warning, "A gesture that the device does not support takes touches from others.",
             "The lookup finds it all the same: in place of its \"features\", end its \"defaultAction\" list with what "
             "the others do.",
             findDeadTouches, true},
    };
}

}
