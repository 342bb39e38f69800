#include "output.h"
#include "verbs.h"

#include <analysis/report.h>

#include <vellix/platform/baseutil.h>

#include <QDir>
#include <QFileInfo>

using namespace vellix;
using namespace vellix::gesture;
using analysis::Check;
using analysis::Findings;
using analysis::Severity;

namespace gesturectl {

// The file that was named, or the system's when there is one.
static ApplicationPathsConfiguration pathsFor(Check *check, const QString &named)
{
    const QString path = named.isEmpty() ? pathsFile : named;
    if (named.isEmpty() && !PathResolver::newDefault().exists(path.toStdString()))
        return ApplicationPathsConfiguration::newDefault();
    return check->paths(path);
}

static Result<ExitStatus> checkApplication(Check *check, const ApplicationPathsConfiguration &rules,
                                           const QString &appId, const QString &bindings)
{
    return rules.appPaths(appId)
            .mapLeft([](const Error &error) {
                return Failure{WrongUse, messageOf(error)};
            })
            .map([&](const ApplicationPaths &paths) {
                const QString own = paths.currentPathExists() ? paths.currentPath() : QString();
                check->configuration(paths.defaultPath(), bindings.isEmpty() ? own : bindings);
                return Success;
            });
}

static QStringList applicationsOf(const ApplicationPathsConfiguration &rules)
{
    const QDir directory(resolved(rules.defaultPath()));
    QStringList applications;
    const QStringList names = directory.entryList(QDir::Dirs | QDir::NoDotAndDotDot, QDir::Name);
    for (const QString &name : names) {
        if (QFileInfo(directory.filePath(name), rules.fileName()).exists() && rules.appPaths(name).isRight())
            applications.append(name);
    }
    return applications;
}

static Result<ExitStatus> checkFiles(Check *check, const CheckRequest &request)
{
    const bool isAlone = request.config.isEmpty() && request.appId.isEmpty() && !request.allApps;
    if (isAlone && request.paths.isEmpty() && request.bindings.isEmpty())
        return Left(Failure{
                WrongUse,
                QStringLiteral("nothing to check: name it with --app, --all-apps, --config, --bindings or --paths")});
    if (!request.config.isEmpty() || (isAlone && request.paths.isEmpty())) {
        if (!request.paths.isEmpty())
            pathsFor(check, request.paths);
        if (request.config.isEmpty())
            check->bindings(request.bindings);
        else
            check->configuration(request.config, request.bindings);
        return Right(Success);
    }
    const ApplicationPathsConfiguration rules = pathsFor(check, request.paths);
    if (!request.appId.isEmpty())
        return checkApplication(check, rules, request.appId, request.bindings);
    if (isAlone) {
        if (!request.bindings.isEmpty())
            check->bindings(request.bindings);
        return Right(Success);
    }
    const QStringList applications = applicationsOf(rules);
    if (applications.isEmpty())
        return Left(Failure{
                BadFiles, resolved(rules.defaultPath()) + QStringLiteral(": no application has a configuration here")});
    for (const QString &appId : applications) {
        const auto checked = checkApplication(check, rules, appId, request.bindings);
        if (checked.isLeft())
            return checked;
    }
    return Right(Success);
}

static QString counted(int count, const QString &what)
{
    return QStringLiteral("%1 %2%3").arg(QString::number(count), what, count == 1 ? QString() : QStringLiteral("s"));
}

static void report(const Findings &findings, const QStringList &files, CheckRequest::Format format)
{
    switch (format) {
    case CheckRequest::Json: print(analysis::toJson(findings, files)); return;
    case CheckRequest::Sarif: print(analysis::toSarif(findings, QStringLiteral(GESTURECTL_VERSION))); return;
    case CheckRequest::Text: break;
    }
    for (const analysis::Finding &finding : findings.list())
        print(analysis::toText(finding).split(QLatin1Char('\n')));
    print(QStringLiteral("%1 and %2 in %3")
                  .arg(counted(findings.count(Severity::Error), QStringLiteral("error")),
                       counted(findings.count(Severity::Warning), QStringLiteral("warning")),
                       counted(files.size(), QStringLiteral("file"))));
}

Result<ExitStatus> check(const CheckRequest &request)
{
    Check check(request.everyDevice    ? analysis::allDevices()
                        : request.with ? QVector<QStringList>{*request.with}
                                       : QVector<QStringList>());
    const auto checked = checkFiles(&check, request);
    if (checked.isLeft())
        return checked;
    Findings findings = check.findings();
    findings.drop(request.ignored);
    report(findings, check.files(), request.format);
    if (findings.count(Severity::Error) > 0)
        return Right(BadFiles);
    return Right(request.strict && findings.count(Severity::Warning) > 0 ? NoneMatches : Success);
}

}
