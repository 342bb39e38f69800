#include "update.h"

#include <gesturectl/output.h>

#include <gesture_api/gestureservice.h>

#include <analysis/reach.h>

#include <algorithm>

using namespace vellix;
using namespace vellix::gesture;
using analysis::Mode;
using analysis::Reach;

namespace gesturectl {

static QString nameOf(const Action *action)
{
    return action ? quoted(action->path()) : QStringLiteral("none");
}

static bool isSameTouch(const Gesture *a, const Gesture *b)
{
    return a->kind() == b->kind() && a->direction() == b->direction() && a->zone() == b->zone()
            && a->modes() == b->modes();
}

// A gesture of the new configuration for the touches of a removed one, preferably a new one.
static const Gesture *successorOf(const Gesture *removed, const Update &update)
{
    const Gesture *successor = nullptr;
    for (const Gesture *gesture : update.after) {
        if (!isSameTouch(gesture, removed))
            continue;
        if (!gestureById(update.before, gesture->id()))
            return gesture;
        if (!successor)
            successor = gesture;
    }
    return successor;
}

static QString unknownNote(const Gesture *was, const Update &update)
{
    if (!was)
        return QStringLiteral("unknown gesture, also in the old configuration");
    const Gesture *successor = successorOf(was, update);
    return QStringLiteral("the gesture no longer exists")
            + (successor ? QStringLiteral(", perhaps now ") + quoted(successor->id()) : QString());
}

static QString defaultNote(const Gesture *was, const Gesture *is, const QString &choice)
{
    const bool changed = was && nameOf(was->defaultAction()) != nameOf(is->defaultAction());
    if (is->defaultAction() && is->defaultAction()->path() == choice) {
        return changed ? QStringLiteral("only repeats the new default; the old one was ") + nameOf(was->defaultAction())
                       : QStringLiteral("only repeats the default");
    }
    if (!changed)
        return {};
    return QStringLiteral("the default changed from %1 to %2, the choice stays")
            .arg(nameOf(was->defaultAction()), nameOf(is->defaultAction()));
}

static QString offerNote(const Gesture *was, const Gesture *is, const QString &choice)
{
    if (offers(is, choice))
        return {};
    return (was && offers(was, choice) ? QStringLiteral("no longer offered") : QStringLiteral("not offered"))
            + QStringLiteral(" but defined: the menu cannot show it");
}

// For a gesture with its binding applied.
static QStringList effectNotes(const Gesture *bound)
{
    QStringList notes;
    const Action *choice = bound->defaultAction();
    if (bound->currentAction()->path() != choice->path())
        notes.append(QStringLiteral("hidden by the fixed 'currentAction' ") + nameOf(bound->currentAction()));
    if (!choice->supported())
        notes.append(QStringLiteral("not supported on this device"));
    return notes;
}

static QVector<Mode> modesOf(const Gesture *gesture, const Gestures &all)
{
    return analysis::modesOf(gesture, analysis::modesOf(all));
}

static bool isOutOfReach(const Gesture *gesture, const Gestures &all)
{
    const QVector<Mode> modes = modesOf(gesture, all);
    return std::all_of(modes.cbegin(), modes.cend(),
                       [&](const Mode &mode) { return analysis::reachOf(gesture, all, mode).none; });
}

static QString shadowNote(const Gesture *gesture, const Gestures &all)
{
    QStringList takers;
    const QVector<Mode> modes = modesOf(gesture, all);
    for (const Mode &mode : modes) {
        const analysis::Reach reach = analysis::reachOf(gesture, all, mode);
        for (const analysis::Loss &loss : reach.losses) {
            const QString taker = quoted(loss.to->id());
            if (!takers.contains(taker))
                takers.append(taker);
        }
    }
    // Without takers, no part of its zone is on the screen.
    return QStringLiteral("no touch reaches it any more: ")
            + (takers.isEmpty() ? QStringLiteral("its zone is not on the screen")
                                : QStringLiteral("all of its zone goes to ") + takers.join(QStringLiteral(", ")));
}

static double commonArea(const QVector<QRectF> &a, const QVector<QRectF> &b)
{
    double area = 0;
    for (const QRectF &one : a) {
        for (const QRectF &other : b) {
            const QRectF common = one & other;
            area += common.width() * common.height();
        }
    }
    return area;
}

// Such as "30 % to 'X'", only for gestures that take touches which this one had before.
static QString newLosses(const Reach &before, const Reach &after, const QRectF &zone)
{
    const double negligible = 1e-9 * zone.width() * zone.height();
    QStringList losses;
    for (const analysis::Loss &loss : after.losses) {
        if (commonArea(loss.area, before.left) > negligible)
            losses.append(percent(loss.share) + QStringLiteral(" to ") + quoted(loss.to->id()));
    }
    return losses.join(QStringLiteral(", "));
}

// One note for all modes with the same losses.
static QStringList lossNotes(const Gesture *was, const Gesture *is, const Update &update)
{
    const QVector<Mode> modes = modesOf(is, update.after);
    QStringList losses; // in the order of discovery
    QMap<QString, QStringList> modesOfLoss;
    for (const Mode &mode : modes) {
        if (!analysis::applies(was, mode))
            continue;
        const Reach before = analysis::reachOf(was, update.before, mode);
        const Reach after = analysis::reachOf(is, update.after, mode);
        const QString loss = newLosses(before, after, analysis::onScreen(is->zone()));
        if (loss.isEmpty())
            continue;
        if (!losses.contains(loss))
            losses.append(loss);
        modesOfLoss[loss].append(mode ? QStringLiteral("mode ") + quoted(*mode) : QStringLiteral("any other mode"));
    }
    QStringList notes;
    for (const QString &loss : qAsConst(losses)) {
        const QStringList in = modesOfLoss.value(loss);
        const QString where = QStringLiteral(" in ") + in.join(QStringLiteral(", "));
        notes.append(QStringLiteral("now loses ") + loss + (in.size() == modes.size() ? QString() : where));
    }
    return notes;
}

Outcome outcomeOf(const QString &id, const QString &choice, const Update &update)
{
    const Gesture *was = gestureById(update.before, id);
    const Gesture *is = gestureById(update.after, id);
    if (!is)
        return {State::Unknown, id, choice, {unknownNote(was, update)}};
    if (update.refusals.contains(id)) {
        const QString effect = QStringLiteral(": rejected, and the application would have NO gestures");
        return {State::Stale, id, choice, {update.refusals.value(id) + effect}};
    }

    QStringList notes;
    const bool isLost = was && isOutOfReach(is, update.after) && !isOutOfReach(was, update.before);
    if (isLost)
        notes.append(shadowNote(is, update.after));
    else if (was)
        notes += lossNotes(was, is, update);
    else
        notes.append(QStringLiteral("the gesture is new"));
    notes += effectNotes(gestureById(update.bound, id));
    notes += defaultNote(was, is, choice);
    notes += offerNote(was, is, choice);
    notes.removeAll(QString());
    return {isLost ? State::Shadowed : State::Kept, id, choice, notes};
}

bool isDropped(const Outcome &outcome)
{
    return outcome.state == State::Stale || outcome.state == State::Unknown;
}

// Halves the bindings down to single ones: bindings load or fail independently of each other.
static Bindings refusalsOf(const QString &file, const FeaturesProvider *features, const Bindings &bindings)
{
    QObject owner;
    const auto loaded = Configuration::loadJson(file, features, GestureService::predefinedZones, bindings, &owner);
    if (bindings.isEmpty() || loaded.isRight())
        return {};
    if (bindings.size() == 1)
        return {{bindings.firstKey(), messageOf(loaded.left())}};

    Bindings halves[2];
    int index = 0;
    for (auto binding = bindings.cbegin(); binding != bindings.cend(); ++binding)
        halves[index++ % 2].insert(binding.key(), *binding);
    Bindings refusals = refusalsOf(file, features, halves[0]);
    refusals.insert(refusalsOf(file, features, halves[1]));
    return refusals;
}

Result<Update> updateOf(const ApplicationPaths &before, const ApplicationPaths &after, const Bindings &bindings,
                        const FeaturesProvider *features, QObject *parent)
{
    const auto oldGestures = gesturesOf(before, features, Bindings(), parent);
    if (oldGestures.isLeft())
        return Left(oldGestures.left());
    const auto newGestures = gesturesOf(after, features, Bindings(), parent);
    if (newGestures.isLeft())
        return Left(newGestures.left());

    const Bindings refusals = refusalsOf(after.defaultPath(), features, bindings);
    Bindings taken = bindings;
    for (auto refused = refusals.cbegin(); refused != refusals.cend(); ++refused)
        taken.remove(refused.key());
    return gesturesOf(after, features, taken, parent).map([&](const Gestures &bound) {
        return Update{oldGestures.right(), newGestures.right(), bound, refusals};
    });
}

}
