#include "rules_bindings.h"

#include "keys.h"
#include "refusal.h"

#include <algorithm>

using namespace vellix::gesture;

namespace analysis {

static QString quoted(const QString &name)
{
    return QLatin1Char('\'') + name + QLatin1Char('\'');
}

static QStringList idsOf(const Subject &subject)
{
    QStringList ids;
    for (const Entry &entry : subject.entries)
        ids.append(entry.gesture->id());
    return ids;
}

static void tellBinding(const Subject &subject, const Entry &entry, const QString &path, const Place &place,
                        Findings *findings)
{
    const QString gesture = QStringLiteral("gesture ") + quoted(entry.gesture->id());
    const auto action = std::find_if(subject.actions.crbegin(), subject.actions.crend(),
                                     [&path](const Action *candidate) { return candidate->path() == path; });
    if (action == subject.actions.crend()) {
        QObject owner;
        findings->add(rules::undefinedBinding, place,
                      wordsOf(Action::fromVariant(path, nullptr, QMap<QString, Action *>(), &owner)));
        return;
    }
    if (entry.map.contains(QStringLiteral("currentAction"))) {
        findings->add(rules::hiddenBinding, place,
                      gesture + QStringLiteral(" always does ") + quoted(entry.gesture->currentAction()->path()));
        return;
    }
    if (!(*action)->supported())
        findings->add(rules::unsupportedBinding, place,
                      QStringLiteral("the device does not support the action ") + quoted(path));
    const QStringList offered = subject.offeredPaths(entry);
    if (!offered.isEmpty() && !offered.contains(path))
        findings->add(rules::notAvailable, place,
                      gesture + QStringLiteral(" does not offer the action ") + quoted(path));
    if (entry.gesture->defaultAction() && entry.gesture->defaultAction()->path() == path)
        findings->add(rules::repeatedDefault, place,
                      quoted(path) + QStringLiteral(" is what ") + gesture + QStringLiteral(" does by default"));
}

void tellBindings(const Subject &subject, const QMap<QString, QVariant> &choices, const Place &place,
                  Findings *findings)
{
    const QStringList ids = idsOf(subject);
    for (auto choice = choices.cbegin(); choice != choices.cend(); ++choice) {
        if (choice->userType() != QMetaType::QString)
            continue;
        const int index = ids.indexOf(choice.key());
        if (index < 0) {
            const QString meant = nearestTo(choice.key(), ids);
            findings->add(rules::unknownGesture, place[choice.key()].name(),
                          QStringLiteral("there is no gesture ") + quoted(choice.key()),
                          meant.isEmpty() ? QString()
                                          : QStringLiteral("Did you mean '") + meant + QStringLiteral("'?"));
            continue;
        }
        tellBinding(subject, subject.entries.at(index), choice->toString(), place[choice.key()], findings);
    }
}

}
