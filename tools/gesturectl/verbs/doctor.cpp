#include "verbs.h"

#include <gesturectl/bindingsfile.h>
#include <gesturectl/doctor/repair.h>
#include <gesturectl/doctor/update.h>
#include <gesturectl/output.h>

#include <QJsonArray>
#include <QJsonObject>

#include <algorithm>
#include <optional>

using namespace vellix;
using namespace vellix::gesture;

namespace gesturectl {

namespace {
struct Request
{
    QString oldFile;
    QString newFile;
    QString bindings; // a file; if empty, the user's own of `appId`
    QString appId;
    bool isWriting = false;
    bool json = false;
};

struct Examination
{
    QList<Outcome> outcomes;
    Repair repair;
};
}

static void declare(Options *options, Request *request)
{
    options->file("--old", &request->oldFile, "The configuration before the update").required();
    options->file("--new", &request->newFile, "The configuration after the update").required();
    options->file("--bindings", &request->bindings, "Examine the choices in this bindings file");
    options->app(&request->appId, "Examine the user's choices for this application");
    options->flag("--write", &request->isWriting,
                  "Drop choices that the new configuration rejects or no longer has; keep the old file");
    options->json(&request->json);
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

static void printText(const QString &file, const QList<Outcome> &outcomes)
{
    if (outcomes.isEmpty())
        print(file + QStringLiteral(": no bindings"));
    QList<QStringList> rows;
    for (const Outcome &outcome : outcomes) {
        const QString note = outcome.notes.isEmpty() ? QStringLiteral("-") : outcome.notes.join(QStringLiteral("; "));
        rows.append({nameOf(outcome.state), outcome.gesture, outcome.action, note});
    }
    printTable(rows);
}

static void printRepair(const QString &file, const Repair &repair)
{
    if (repair.dropped.isEmpty())
        print(file + QStringLiteral(": nothing to repair, nothing written"));
    else
        print(QStringLiteral("%1: dropped %2; the old file is kept as %3")
                      .arg(file, repair.dropped.join(QStringLiteral(", ")), repair.keptAs));
}

static void printJson(const QString &file, const QList<Outcome> &outcomes, const Repair &repair)
{
    QJsonArray bindings;
    for (const Outcome &outcome : outcomes)
        bindings.append(QJsonObject{{QStringLiteral("state"), nameOf(outcome.state)},
                                    {QStringLiteral("gesture"), outcome.gesture},
                                    {QStringLiteral("action"), outcome.action},
                                    {QStringLiteral("notes"), QJsonArray::fromStringList(outcome.notes)}});
    print(QJsonDocument(QJsonObject{
            {QStringLiteral("file"), file},
            {QStringLiteral("bindings"), bindings},
            {QStringLiteral("dropped"), QJsonArray::fromStringList(repair.dropped)},
            {QStringLiteral("keptAs"), repair.keptAs.isEmpty() ? QJsonValue() : QJsonValue(repair.keptAs)}}));
}

static void printOutcomes(const QString &file, const QList<Outcome> &outcomes, const Repair &repair,
                          const Request &request)
{
    if (request.json) {
        printJson(file, outcomes, repair);
        return;
    }
    printText(file, outcomes);
    if (request.isWriting)
        printRepair(file, repair);
}

// Judges the bindings, and repairs their file with --write.
static Result<Examination> examine(const Request &request, const ApplicationPaths &own, const Bindings &bindings)
{
    const DefaultFeaturesProvider features;
    QObject owner;
    const ApplicationPaths before(request.appId, own.currentPath(), request.oldFile);
    const ApplicationPaths after(request.appId, own.currentPath(), request.newFile);
    const auto update = updateOf(before, after, bindings, &features, &owner);
    if (update.isLeft())
        return Left(update.left());

    QList<Outcome> outcomes;
    QStringList dropped;
    for (auto binding = bindings.cbegin(); binding != bindings.cend(); ++binding) {
        outcomes.append(outcomeOf(binding.key(), *binding, update.right()));
        if (isDropped(outcomes.last()))
            dropped.append(binding.key());
    }
    const auto repair =
            request.isWriting ? repaired(after, bindings, dropped, &features) : Result<Repair>(Right(Repair()));
    if (repair.isLeft())
        return Left(repair.left());
    return Right(Examination{outcomes, repair.right()});
}

static Result<ExitStatus> doctor(const Request &request)
{
    if (request.bindings.isEmpty() == request.appId.isEmpty())
        return Left(Failure{WrongUse, QStringLiteral("give either --bindings or --app")});
    const Result<ApplicationPaths> own = request.appId.isEmpty()
            ? Right(ApplicationPaths(QString(), request.bindings, request.newFile))
            : pathsOf(request.appId);
    if (own.isLeft())
        return Left(own.left());
    std::optional<BindLock> lock;
    if (request.isWriting)
        lock.emplace(own.right());
    if (lock && lock->failure())
        return Left(*lock->failure());
    const auto bindings = request.appId.isEmpty() ? bindingsOfFile(own.right()) : bindingsOf(own.right());
    if (bindings.isLeft())
        return Left(bindings.left());
    const auto examination = examine(request, own.right(), bindings.right());
    lock.reset(); // the reader of the output may be slow
    if (examination.isLeft())
        return Left(examination.left());
    const QList<Outcome> &outcomes = examination.right().outcomes;
    printOutcomes(resolved(own.right().currentPath()), outcomes, examination.right().repair, request);
    const bool isKept = std::all_of(outcomes.cbegin(), outcomes.cend(),
                                    [](const Outcome &outcome) { return outcome.state == State::Kept; });
    return Right(isKept || request.isWriting ? Success : NoneMatches);
}

Verb doctorVerb()
{
    return verb("doctor", "Show how an update of the default configuration affects the user's choices",
                "Exit status: 1 if a choice would no longer work.\n"
                "Example: gesturectl doctor --old old.json --new new.json --app reader",
                declare, doctor);
}

}
