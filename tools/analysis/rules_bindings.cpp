#include "rules_bindings.h"

#include "keys.h"
#include "refusal.h"

#include <algorithm>
#include <iterator>

using namespace vellix::gesture;

namespace analysis {

// The gestures of this id: mostly one.
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
        findings->add(rules::unsupportedBinding, place,
                      QStringLiteral("the device does not support the action ") + quoted(path));
    const QStringList offered = subject.offeredPaths(entry);
    if (!offered.isEmpty() && !offered.contains(path))
        findings->add(rules::notAvailable, place,
                      gesture + QStringLiteral(" does not offer the action ") + quoted(path));
    // Of a fallback list it depends on the device what repeats it.
    const bool isList = entry.map.value(QStringLiteral("defaultAction")).userType() == QMetaType::QVariantList;
    if (entry.hasActions() && !isList && entry.gesture->defaultAction()->path() == path)
        findings->add(rules::repeatedDefault, place,
                      quoted(path) + QStringLiteral(" is what ") + gesture + QStringLiteral(" does by default"));
}

static void reportUnknown(const Subject &subject, const QString &id, const Place &place, Findings *findings)
{
    QStringList ids;
    for (const Entry &entry : subject.entries) {
        if (!entry.hasId()) // it may be this one
            return;
        ids.append(entry.gesture->id());
    }
    const QString meant = nearestTo(id, ids);
    findings->add(rules::unknownGesture, place[id].name(), QStringLiteral("there is no gesture ") + quoted(id),
                  meant.isEmpty() ? QString() : QStringLiteral("Did you mean '") + meant + QStringLiteral("'?"));
}

static void reportChoice(const Subject &subject, const QString &id, const QString &path, const Place &place,
                         Findings *findings)
{
    const QVector<Entry> entries = entriesOf(subject, id);
    if (entries.isEmpty()) {
        reportUnknown(subject, id, place, findings);
        return;
    }
    const auto action = std::find_if(subject.actions.crbegin(), subject.actions.crend(),
                                     [&path](const Action *candidate) { return candidate->path() == path; });
    if (action == subject.actions.crend()) {
        QObject owner;
        findings->add(rules::undefinedBinding, place[id],
                      wordsOf(Action::fromVariant(path, nullptr, QMap<QString, Action *>(), &owner)));
        return;
    }
    for (const Entry &entry : entries) {
        if (!isFixed(entry))
            reportBinding(subject, entry, *action, place[id], findings);
    }
    // A save writes what a fixed gesture does, too.
    const Gesture *fixed = entries.first().gesture;
    if (std::all_of(entries.cbegin(), entries.cend(), isFixed) && fixed->currentAction()->path() != path)
        findings->add(rules::hiddenBinding, place[id],
                      QStringLiteral("gesture ") + quoted(id) + QStringLiteral(" always does ")
                              + quoted(fixed->currentAction()->path()));
}

void reportBindings(const Subject &subject, const QMap<QString, QVariant> &choices, const Place &place,
                    Findings *findings)
{
    for (auto choice = choices.cbegin(); choice != choices.cend(); ++choice) {
        if (choice->userType() == QMetaType::QString)
            reportChoice(subject, choice.key(), choice->toString(), place, findings);
    }
}

}
