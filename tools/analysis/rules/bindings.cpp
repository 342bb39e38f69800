#include "families.h"

#include <analysis/hint.h>
#include <analysis/refusal.h>
#include <analysis/subject.h>
#include <analysis/values.h>

#include <algorithm>
#include <iterator>

using namespace vellix::gesture;

namespace analysis {

// The gestures of this id: usually one.
static QVector<Entry> entriesOf(const Subject &subject, const QString &id)
{
    QVector<Entry> entries;
    std::copy_if(subject.entries.cbegin(), subject.entries.cend(), std::back_inserter(entries),
                 [&id](const Entry &entry) { return entry.hasId() && entry.gesture->id() == id; });
    return entries;
}

static bool isFixed(const Entry &entry)
{
    return entry.map.contains(QStringLiteral("currentAction"));
}

static void reportBinding(const Subject &subject, const Entry &entry, const Action *action, const Place &place,
                          Findings *findings)
{
    const QString gesture = QStringLiteral("gesture ") + quoted(entry.gesture->id());
    const QString path = action->path();
    if (entry.gesture->supported() && !action->supported())
        findings->add("unsupported-binding", place,
                      QStringLiteral("the device does not support the action ") + quoted(path));
    const QStringList offered = subject.offeredPaths(entry);
    if (!offered.isEmpty() && !offered.contains(path))
        findings->add("not-available", place, gesture + QStringLiteral(" does not offer the action ") + quoted(path));
    // The default of a fallback list depends on the device.
    const bool isFallbacks = isList(entry.map.value(QStringLiteral("defaultAction")));
    if (entry.hasActions() && !isFallbacks && entry.gesture->defaultAction()->path() == path)
        findings->add("repeated-default", place,
                      quoted(path) + QStringLiteral(" is already the default of ") + gesture);
}

static void reportUnknownGesture(const Subject &subject, const QString &id, const Place &place, Findings *findings)
{
    QStringList ids;
    for (const Entry &entry : subject.entries) {
        if (!entry.hasId()) // the binding may be for this gesture
            return;
        ids.append(entry.gesture->id());
    }
    findings->add("unknown-gesture", place[id].name(), QStringLiteral("unknown gesture ") + quoted(id),
                  nearestHint(id, ids));
}

static void reportChoice(const Subject &subject, const QString &id, const QString &path, const Place &place,
                         Findings *findings)
{
    const QVector<Entry> entries = entriesOf(subject, id);
    if (entries.isEmpty()) {
        reportUnknownGesture(subject, id, place, findings);
        return;
    }
    const auto action = std::find_if(subject.actions.crbegin(), subject.actions.crend(),
                                     [&path](const Action *candidate) { return candidate->path() == path; });
    if (action == subject.actions.crend()) {
        QObject owner;
        findings->add("undefined-binding", place[id],
                      wordsOf(Action::fromVariant(path, nullptr, QMap<QString, Action *>(), &owner)));
        return;
    }
    for (const Entry &entry : entries) {
        if (!isFixed(entry))
            reportBinding(subject, entry, *action, place[id], findings);
    }
    // A save also writes the action of a fixed gesture.
    const Gesture *fixed = entries.first().gesture;
    const bool isKnown = entries.first().hasActions() && std::all_of(entries.cbegin(), entries.cend(), isFixed);
    if (isKnown && fixed->currentAction()->path() != path)
        findings->add("hidden-binding", place[id],
                      QStringLiteral("gesture ") + quoted(id) + QStringLiteral(" always performs ")
                              + quoted(fixed->currentAction()->path()));
}

static void findBindings(const Subject &subject, Findings *findings)
{
    if (!subject.choices)
        return;
    const QVariantMap &byGesture = subject.choices->byGesture;
    for (auto choice = byGesture.cbegin(); choice != byGesture.cend(); ++choice) {
        if (isString(*choice))
            reportChoice(subject, choice.key(), choice->toString(), subject.choices->place, findings);
    }
}

Rules bindingRules()
{
    const Severity warning = Severity::Warning;
    return {
            {8, "undefined-binding", Severity::Error, "A binding names an action that is not defined.",
             "Remove the binding, or define the action. With this binding the library loads no gestures.",
             findBindings},
            {37, "unknown-gesture", warning, "A binding refers to an unknown gesture.",
             "Remove the binding. It has no effect, and the next save drops it.", findBindings},
            {38, "unsupported-binding", warning, "The device does not support a bound action.",
             "Bind another action. The gesture is loaded, but this action does nothing.", findBindings},
            {39, "hidden-binding", warning, "A binding has no effect: its gesture has a \"currentAction\".",
             "Remove the binding, or change the gesture to a \"defaultAction\".", findBindings},
            {40, "repeated-default", warning, "A binding only repeats the default.",
             "Remove the binding. It hides every later change of the default.", findBindings},
    };
}

}
