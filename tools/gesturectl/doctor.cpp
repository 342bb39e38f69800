#include "verbs.h"

#include "bindingsfile.h"
#include "output.h"

#include <gesture_api/gestureservice.h>
#include <gesture_api/src/atomicfile.h>
#include <gesture_api/src/descriptor.h>

#include <analysis/reach.h>

#include <QFile>
#include <QJsonArray>
#include <QJsonObject>

#include <algorithm>
#include <optional>

using namespace vellix;
using namespace vellix::gesture;
using analysis::Mode;
using analysis::Reach;

namespace gesturectl {

namespace {
enum class State { Kept, Stale, Unknown, Shadowed };

// What becomes of one binding.
struct Finding
{
    State state;
    QString gesture;
    QString action;
    QStringList notes;
};

// Two default configurations without bindings, and the new one with those that it takes.
struct Update
{
    Gestures before;
    Gestures after;
    Gestures bound;
    Bindings refusals; // gesture id to the library's reason
};

// What a repair did.
struct Repair
{
    QStringList dropped;
    QString keptAs;
};
}

static QString nameOf(const Action *action)
{
    return action ? quoted(action->path()) : QStringLiteral("none");
}

static bool isSameTouch(const Gesture *a, const Gesture *b)
{
    return a->kind() == b->kind() && a->direction() == b->direction() && a->zone() == b->zone()
            && a->modes() == b->modes();
}

// The gesture that now stands where one that is gone stood: a new one before one that was there already.
static const Gesture *successorOf(const Gesture *gone, const Update &update)
{
    const Gesture *successor = nullptr;
    for (const Gesture *gesture : update.after) {
        if (!isSameTouch(gesture, gone))
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
        return QStringLiteral("no such gesture, unknown to the old configuration already");
    const Gesture *successor = successorOf(was, update);
    return QStringLiteral("no such gesture any more")
            + (successor ? QStringLiteral(", perhaps now ") + quoted(successor->id()) : QString());
}

static QString defaultNote(const Gesture *was, const Gesture *is, const QString &choice)
{
    const bool changed = was && nameOf(was->defaultAction()) != nameOf(is->defaultAction());
    if (is->defaultAction() && is->defaultAction()->path() == choice) {
        return changed ? QStringLiteral("only repeats the new default, which was ") + nameOf(was->defaultAction())
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
            + QStringLiteral(", though defined: the menu cannot show it");
}

// Of a gesture with its binding.
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
    QVector<Mode> modes = analysis::modesOf(all);
    modes.erase(std::remove_if(modes.begin(), modes.end(),
                               [gesture](const Mode &mode) { return !analysis::applies(gesture, mode); }),
                modes.end());
    return modes;
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
    // Without any, its zone has no part on the screen.
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

// Such as "30 % to 'X'"; of those only that take touches which the gesture had before.
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

// One note for all modes that lose the same.
static QStringList lossNotes(const Gesture *was, const Gesture *is, const Update &update)
{
    const QVector<Mode> modes = modesOf(is, update.after);
    QStringList losses; // in the order met
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

static Finding findingOf(const QString &id, const QString &choice, const Update &update)
{
    const Gesture *was = gestureById(update.before, id);
    const Gesture *is = gestureById(update.after, id);
    if (!is)
        return {State::Unknown, id, choice, {unknownNote(was, update)}};
    if (update.refusals.contains(id)) {
        const QString outcome = QStringLiteral(": refused, and ALL gestures of the application would be gone");
        return {State::Stale, id, choice, {update.refusals.value(id) + outcome}};
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

static bool isDropped(const Finding &finding)
{
    return finding.state == State::Stale || finding.state == State::Unknown;
}

// Halved until each stands alone: one binding does not change whether another loads.
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

static Result<Update> updateOf(const ApplicationPaths &before, const ApplicationPaths &after, const Bindings &bindings,
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

static QString nameOf(State state)
{
    switch (state) {
    case State::Kept: return QStringLiteral("kept");
    case State::Stale: return QStringLiteral("stale");
    case State::Unknown: return QStringLiteral("unknown");
    case State::Shadowed: return QStringLiteral("newly shadowed");
    }
    return {};
}

static Failure failed(const QString &file, int error)
{
    return {BadFiles, file + QStringLiteral(": ") + qt_error_string(error)};
}

// A copy, since the file may be written in place: the first free one of FILE.old, FILE.old2 and so on.
static Result<QString> keepBeside(const QString &file)
{
    const Descriptor source(openFile(QFile::encodeName(file).toStdString(), O_RDONLY));
    if (!source.isOpen())
        return Left(failed(file, errno));
    for (int number = 1;; ++number) {
        const QString copy = file + QStringLiteral(".old") + (number == 1 ? QString() : QString::number(number));
        const int error = copyToNew(source, copy);
        if (error == 0)
            return Right(copy);
        if (error != EEXIST)
            return Left(failed(copy, error));
    }
}

// Writes the bindings without those that are dropped, and checks first that the new configuration takes the rest.
static Result<Repair> repaired(const ApplicationPaths &paths, const Bindings &bindings, const QStringList &dropped,
                               const FeaturesProvider *features)
{
    if (dropped.isEmpty())
        return Right(Repair());
    Bindings rest = bindings;
    for (const QString &id : dropped)
        rest.remove(id);
    QObject owner;
    const auto gestures = gesturesOf(paths, features, rest, &owner);
    if (gestures.isLeft())
        return Left(gestures.left());

    const QString file = resolved(paths.currentPath());
    const auto keptAs = keepBeside(file);
    if (keptAs.isLeft())
        return Left(keptAs.left());
    // Programs save without the lock: what was judged must be what is kept and replaced.
    const auto kept = bindingsOf(ApplicationPaths(paths.appId(), keptAs.right(), paths.defaultPath()));
    const bool isSame = kept.isRight() && kept.right() == bindings;
    const auto written = isSame ? writeBindings(paths, gestures.right(), rest)
                                : Left(Failure{BadFiles, file + QStringLiteral(": changed meanwhile, try again")});
    if (written.isRight())
        return Right(Repair{dropped, keptAs.right()});
    // A write that fails halfway may have cost the file; then the copy is all there is.
    if (!isSame || contentOf(file) == contentOf(keptAs.right())) {
        QFile::remove(keptAs.right());
        return Left(written.left());
    }
    return Left(
            Failure{BadFiles, written.left().message + QStringLiteral("; the old file is kept as ") + keptAs.right()});
}

static void printText(const QString &file, const QList<Finding> &findings)
{
    if (findings.isEmpty())
        print(file + QStringLiteral(": no bindings"));
    QList<QStringList> rows;
    for (const Finding &finding : findings) {
        const QString note = finding.notes.isEmpty() ? QStringLiteral("-") : finding.notes.join(QStringLiteral("; "));
        rows.append({nameOf(finding.state), finding.gesture, finding.action, note});
    }
    printTable(rows);
}

static void printRepair(const QString &file, const Repair &repair)
{
    if (repair.dropped.isEmpty())
        print(file + QStringLiteral(": nothing needs repair, nothing is written"));
    else
        print(QStringLiteral("%1: dropped %2; the old file is kept as %3")
                      .arg(file, repair.dropped.join(QStringLiteral(", ")), repair.keptAs));
}

static void printJson(const QString &file, const QList<Finding> &findings, const Repair &repair)
{
    QJsonArray bindings;
    for (const Finding &finding : findings)
        bindings.append(QJsonObject{{QStringLiteral("state"), nameOf(finding.state)},
                                    {QStringLiteral("gesture"), finding.gesture},
                                    {QStringLiteral("action"), finding.action},
                                    {QStringLiteral("notes"), QJsonArray::fromStringList(finding.notes)}});
    print(QJsonDocument(QJsonObject{
            {QStringLiteral("file"), file},
            {QStringLiteral("bindings"), bindings},
            {QStringLiteral("dropped"), QJsonArray::fromStringList(repair.dropped)},
            {QStringLiteral("keptAs"), repair.keptAs.isEmpty() ? QJsonValue() : QJsonValue(repair.keptAs)}}));
}

Result<ExitStatus> doctor(const QString &oldFile, const QString &newFile, const QString &bindingsFile,
                          const QString &appId, bool isWriting, bool json)
{
    if (bindingsFile.isEmpty() == appId.isEmpty())
        return Left(Failure{WrongUse, QStringLiteral("one of --bindings and --app must be given")});
    const DefaultFeaturesProvider features;
    QObject owner;
    const Result<ApplicationPaths> own =
            appId.isEmpty() ? Right(ApplicationPaths(QString(), bindingsFile, newFile)) : pathsOf(appId);
    if (own.isLeft())
        return Left(own.left());
    std::optional<BindLock> lock;
    if (isWriting)
        lock.emplace(own.right());
    if (lock && lock->failure())
        return Left(*lock->failure());

    const auto bindings = appId.isEmpty() ? bindingsOfFile(own.right()) : bindingsOf(own.right());
    if (bindings.isLeft())
        return Left(bindings.left());
    const QString current = own.right().currentPath();
    const ApplicationPaths after(appId, current, newFile);
    const auto update = updateOf(ApplicationPaths(appId, current, oldFile), after, bindings.right(), &features, &owner);
    if (update.isLeft())
        return Left(update.left());

    QList<Finding> findings;
    QStringList dropped;
    for (auto binding = bindings.right().cbegin(); binding != bindings.right().cend(); ++binding) {
        findings.append(findingOf(binding.key(), *binding, update.right()));
        if (isDropped(findings.last()))
            dropped.append(binding.key());
    }
    const auto repair =
            isWriting ? repaired(after, bindings.right(), dropped, &features) : Result<Repair>(Right(Repair()));
    if (repair.isLeft())
        return Left(repair.left());

    const QString file = resolved(current);
    if (json) {
        printJson(file, findings, repair.right());
    } else {
        printText(file, findings);
        if (isWriting)
            printRepair(file, repair.right());
    }
    const bool isSound = std::all_of(findings.cbegin(), findings.cend(),
                                     [](const Finding &finding) { return finding.state == State::Kept; });
    return Right(isSound || isWriting ? Success : NoneMatches);
}

}
