#include "application.h"

#include "output.h"

#include <analysis/check.h>

#include <gesture_api/action.h>
#include <gesture_api/gestureservice.h>

#include <vellix/platform/vxcomponents.h>
#include <vellix/resolvedpath.h>

#include <QFileInfo>

#include <algorithm>

using namespace vellix;
using namespace vellix::gesture;
using ActionBindings = Configuration::ActionBindings;

namespace gesturectl {

const QString pathsFile = QStringLiteral("${SYSTEMDATA}/config/gestures/application_paths.json");

QString resolved(const QString &path)
{
    return resolvedPath(path);
}

// The finding for the loader's error; the loader stops at the first.
static const analysis::Finding *errorOf(const analysis::Findings &findings, const QString &reason)
{
    const auto isError = [](const analysis::Finding &one) { return one.rule->severity == analysis::Severity::Error; };
    const auto isSame = [&](const analysis::Finding &one) { return isError(one) && one.text == reason; };
    const QVector<analysis::Finding> &all = findings.list();
    auto found = std::find_if(all.cbegin(), all.cend(), isSame);
    if (found == all.cend())
        found = std::find_if(all.cbegin(), all.cend(), isError);
    return found == all.cend() ? nullptr : &*found;
}

// Without the findings that only make a later load fail.
static analysis::Findings findingsOf(const analysis::Check &check)
{
    analysis::Findings findings = check.findings();
    findings.drop({QStringLiteral("unsaveable-action")});
    return findings;
}

// An invalid file, with the place of the fault. The loader names the file itself if it cannot read it.
static Failure badFile(const QString &path, const analysis::Check &check, const Error &error)
{
    const QString file = resolved(path);
    const QString reason = messageOf(error);
    const analysis::Findings findings = findingsOf(check);
    const analysis::Finding *finding = errorOf(findings, reason);
    if (finding && qstrcmp(finding->rule->id, "unreadable") != 0) {
        const analysis::Position position = finding->file->positionOf(finding->span.begin);
        return {BadFiles,
                QStringLiteral("%1:%2:%3: ").arg(finding->file->path()).arg(position.line).arg(position.column)
                        + finding->text};
    }
    return {BadFiles, reason.contains(file) ? reason : file + QStringLiteral(": ") + reason};
}

Result<ApplicationPaths> pathsOf(const QString &appId)
{
    const bool exists = PathResolver::newDefault().exists(pathsFile.toStdString());
    const auto rules = exists ? ApplicationPathsConfiguration::loadJson(pathsFile)
                              : Right(ApplicationPathsConfiguration::newDefault());
    if (rules.isLeft()) {
        analysis::Check check;
        check.paths(pathsFile);
        return Left(badFile(pathsFile, check, rules.left()));
    }
    return rules.right().appPaths(appId).mapLeft([](const Error &error) {
        return Failure{WrongUse, messageOf(error)};
    });
}

Result<Bindings> bindingsOf(const ApplicationPaths &paths)
{
    if (!paths.currentPathExists())
        return Right(Bindings());
    return ActionBindings::loadJson(paths.currentPath()).mapLeft([&paths](const ActionBindings::ParsingError &error) {
        analysis::Check check;
        check.bindings(paths.currentPath());
        const auto *other = boost::get<Error>(&error.value);
        return badFile(paths.currentPath(), check, other ? *other : Error());
    });
}

// A configuration that does not load, or not with one of the bindings.
static Failure loadFailure(const ApplicationPaths &paths, const Bindings &bindings, const Error &error)
{
    analysis::Check check;
    check.configuration(paths.defaultPath(), paths.currentPathExists() ? paths.currentPath() : QString());
    const Failure failure = badFile(paths.defaultPath(), check, error);
    // The files are valid: the fault is a binding that is in no file yet.
    const bool isValid = findingsOf(check).count(analysis::Severity::Error) == 0;
    return isValid
            ? Failure{BadFiles,
                      QStringList(bindings.keys()).join(QStringLiteral(", ")) + QStringLiteral(": ") + messageOf(error)}
            : failure;
}

Result<Gestures> gesturesOf(const ApplicationPaths &paths, const FeaturesProvider *features, const Bindings &bindings,
                            QObject *parent)
{
    const QString file = paths.defaultPath();
    return Configuration::loadJson(file, features, GestureService::predefinedZones, bindings, parent)
            .mapLeft([&](const Error &error) { return loadFailure(paths, bindings, error); });
}

Result<Loaded> load(const QString &appId, const FeaturesProvider *features, QObject *parent)
{
    return pathsOf(appId).flatMap([&](const ApplicationPaths &paths) {
        return bindingsOf(paths).flatMap([&](const Bindings &bindings) {
            return gesturesOf(paths, features, bindings, parent).map([&](const Gestures &gestures) {
                return Loaded{paths, bindings, gestures};
            });
        });
    });
}

Gesture *gestureById(const Gestures &gestures, const QString &id)
{
    const auto found = std::find_if(gestures.cbegin(), gestures.cend(),
                                    [&id](const Gesture *gesture) { return gesture->id() == id; });
    return found == gestures.cend() ? nullptr : *found;
}

Result<Gesture *> gestureOf(const Gestures &gestures, const QString &appId, const QString &id)
{
    if (Gesture *gesture = gestureById(gestures, id))
        return Right(gesture);
    return Left(Failure{WrongUse, QStringLiteral("application '%1' has no gesture '%2'").arg(appId, id)});
}

bool offers(const Gesture *gesture, const QString &actionPath)
{
    const QList<Action *> &available = gesture->availableActions();
    return std::any_of(available.cbegin(), available.cend(),
                       [&](const Action *action) { return action->path() == actionPath; });
}

Result<QMap<QString, QRectF>> zonesOf(const ApplicationPaths &paths)
{
    const auto document = components::VariantLoader::loadJson(paths.defaultPath());
    if (document.isLeft())
        return Left(badFile(paths.defaultPath(), analysis::Check(), document.left()));
    const QVariantMap section = document.right().toMap().value(QStringLiteral("zones")).toMap();
    return Gesture::zoneMapFromVariant(section, GestureService::predefinedZones)
            .map([](QMap<QString, QRectF> zones) {
                for (auto zone = GestureService::predefinedZones.cbegin();
                     zone != GestureService::predefinedZones.cend(); ++zone)
                    zones.insert(zone.key(), *zone);
                return zones;
            })
            .mapLeft([&paths](const Error &error) {
                analysis::Check check;
                check.configuration(paths.defaultPath());
                return badFile(paths.defaultPath(), check, error);
            });
}

}
