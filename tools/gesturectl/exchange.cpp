#include "verbs.h"

#include "bindingsfile.h"
#include "output.h"

#include <QJsonObject>

#include <optional>
#include <set>

using namespace vellix;
using namespace vellix::gesture;

namespace gesturectl {

// An application that is not there has no choices to lose: its export would wipe those of another at an import.
static Result<ApplicationPaths> known(const ApplicationPaths &paths)
{
    if (!paths.currentPathExists() && !PathResolver::newDefault().exists(paths.defaultPath().toStdString()))
        return Left(Failure{BadFiles, resolved(paths.defaultPath()) + QStringLiteral(": No such file or directory")});
    return Right(paths);
}

Result<ExitStatus> exportBindings(const QString &appId)
{
    return pathsOf(appId).flatMap(known).flatMap(bindingsOf).map([](const Bindings &bindings) {
        QJsonObject actions;
        for (auto binding = bindings.cbegin(); binding != bindings.cend(); ++binding)
            actions.insert(binding.key(), *binding);
        print(QJsonDocument(QJsonObject{{QStringLiteral("version"), Configuration::ActionBindings::version},
                                        {QStringLiteral("actions"), actions}}));
        return Success;
    });
}

// One line for each binding that differs, in the order of the gestures' ids.
static QStringList difference(const Bindings &before, const Bindings &after)
{
    std::set<QString> ids(before.keyBegin(), before.keyEnd());
    ids.insert(after.keyBegin(), after.keyEnd());
    QStringList lines;
    for (const QString &id : ids) {
        const auto old = before.constFind(id);
        const auto now = after.constFind(id);
        if (old == before.cend())
            lines.append(QStringLiteral("+ %1: %2").arg(id, *now));
        else if (now == after.cend())
            lines.append(QStringLiteral("- %1: %2").arg(id, *old));
        else if (*old != *now)
            lines.append(QStringLiteral("~ %1: %2 -> %3").arg(id, *old, *now));
    }
    return lines;
}

Result<ExitStatus> importBindings(const QString &appId, const QString &file, bool isDryRun)
{
    const DefaultFeaturesProvider features;
    QObject owner;
    const auto paths = pathsOf(appId);
    if (paths.isLeft())
        return Left(paths.left());
    const ApplicationPaths source(appId, file, paths.right().defaultPath());
    const auto offered = bindingsOfFile(source);
    if (offered.isLeft())
        return Left(offered.left());
    const auto defaults = gesturesOf(paths.right(), &features, Bindings(), &owner);
    if (defaults.isLeft())
        return Left(defaults.left());
    const auto gestures = gesturesOf(source, &features, offered.right(), &owner);
    if (gestures.isLeft())
        return Left(gestures.left());

    std::optional<BindLock> lock;
    if (!isDryRun)
        lock.emplace(paths.right());
    if (lock && lock->failure())
        return Left(*lock->failure());
    const auto current = bindingsOf(paths.right());
    if (current.isLeft()) {
        const QString advice = QStringLiteral("; it is left as it is: repair it, or remove it with 'gesturectl reset'");
        return Left(Failure{current.left().status, current.left().message + advice});
    }

    Bindings wanted = offered.right();
    const QStringList ids = offered.right().keys();
    for (const QString &id : ids) {
        if (gestureById(gestures.right(), id))
            continue;
        printError(QStringLiteral("%1: actions.%2: left out, application '%3' has no such gesture")
                           .arg(resolved(file), id, appId));
        wanted.remove(id);
    }
    const QStringList lines = difference(current.right(), wanted);
    print(lines.isEmpty() ? QStringList(QStringLiteral("no difference")) : lines);
    if (isDryRun || lines.isEmpty())
        return Right(Success);
    return writeBindings(paths.right(), gestures.right(), wanted);
}

}
