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

// Of all that a check finds the error that the loader means, which stops at the first.
static const analysis::Finding *errorOf(const analysis::Findings &findings, const QString &reason)
{
    const auto isError = [](const analysis::Finding &one) { return one.rule->severity == analysis::Severity::Error; };
    const auto isMeant = [&](const analysis::Finding &one) { return isError(one) && one.text == reason; };
    const QVector<analysis::Finding> &all = findings.list();
    auto found = std::find_if(all.cbegin(), all.cend(), isMeant);
    if (found == all.cend())
        found = std::find_if(all.cbegin(), all.cend(), isError);
    return found == all.cend() ? nullptr : &*found;
}

// What a check finds beside what a later load would refuse.
static analysis::Findings findingsOf(const analysis::Check &check)
{
    analysis::Findings findings = check.findings();
    findings.drop({QLatin1String(analysis::rules::unsaveableAction.id)});
    return findings;
}

// A refused file, with the place of the fault. The loader names the file itself when it cannot read it.
static Failure badFile(const QString &path, const analysis::Check &check, const Error &error)
{
    const QString file = resolved(path);
    const QString reason = messageOf(error);
    const analysis::Findings findings = findingsOf(check);
    const analysis::Finding *finding = errorOf(findings, reason);
    if (finding && finding->rule != &analysis::rules::unreadable) {
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

// A configuration that does not load, or a binding for which it does not.
static Failure refused(const ApplicationPaths &paths, const Bindings &bindings, const Error &error)
{
    analysis::Check check;
    check.configuration(paths.defaultPath(), paths.currentPathExists() ? paths.currentPath() : QString());
    const Failure failure = badFile(paths.defaultPath(), check, error);
    // A choice that is in no file yet.
    const bool isSound = findingsOf(check).count(analysis::Severity::Error) == 0;
    return isSound
            ? Failure{BadFiles,
                      QStringList(bindings.keys()).join(QStringLiteral(", ")) + QStringLiteral(": ") + messageOf(error)}
            : failure;
}

Result<Gestures> gesturesOf(const ApplicationPaths &paths, const FeaturesProvider *features, const Bindings &bindings,
                            QObject *parent)
{
    const QString file = paths.defaultPath();
    return Configuration::loadJson(file, features, GestureService::predefinedZones, bindings, parent)
            .mapLeft([&](const Error &error) { return refused(paths, bindings, error); });
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
