#include "verbs.h"

#include <gesturectl/output.h>

#include <analysis/devices.h>
#include <analysis/report.h>
#include <analysis/rule.h>

#include <vellix/platform/baseutil.h>

#include <QDir>
#include <QFileInfo>

using namespace vellix;
using namespace vellix::gesture;
using analysis::Check;
using analysis::Findings;
using analysis::Severity;

namespace gesturectl {

namespace {
struct Request
{
    enum Format { Text, Json, Sarif };

    QString appId; // empty if not given, like the files
    bool allApps = false;
    QString config;
    QString bindings;
    QString paths;
    bool everyDevice = false;
    QStringList with; // the features of the device, or "none"; empty for this machine's
    bool strict = false;
    QStringList ignored; // ids of rules
    Format format = Text;
};
}

// "none" is a device without features.
static QStringList featureNames()
{
    return QStringList(QStringLiteral("none")) + analysis::knownFeatures();
}

// Errors cannot be ignored.
static QStringList warningIds()
{
    QStringList ids;
    for (const analysis::Rule *rule : analysis::allRules()) {
        if (rule->severity == Severity::Warning)
            ids.append(QLatin1String(rule->id));
    }
    return ids;
}

static Request::Format formatOf(const QString &name)
{
    if (name == QLatin1String("json"))
        return Request::Json;
    return name == QLatin1String("sarif") ? Request::Sarif : Request::Text;
}

static void declare(Options *options, Request *request)
{
    Option app = options->app(&request->appId);
    const Option all =
            options->flag("--all-apps", &request->allApps, "Check all applications that have a configuration");
    Option config = options->file("--config", &request->config, "Check this configuration");
    app.excludes(all).excludes(config);
    config.excludes(all);
    options->file("--bindings", &request->bindings, "Check these bindings instead of the user's").excludes(all);
    options->file("--paths", &request->paths, "Use this file instead of the system's application paths");
    const Option every =
            options->flag("--every-device", &request->everyDevice, "Check all combinations of device features");
    options->list("--with", &request->with,
                  "Check a device with these features, separated by commas, instead of this machine")
            .oneOf(featureNames())
            .excludes(every);
    options->flag("--strict", &request->strict, "Exit with status 1 on warnings");
    options->list("--ignore", &request->ignored, "Ignore the warnings of these rules, separated by commas")
            .oneOf(warningIds())
            .type("RULE");
    options->value(
                   "--format", [request](const QString &name) { request->format = formatOf(name); },
                   "The output format")
            .defaultText("text")
            .oneOf({QStringLiteral("text"), QStringLiteral("json"), QStringLiteral("sarif")});
}

// The named file, or the system's if there is one.
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

static Result<ExitStatus> checkAllApplications(Check *check, const ApplicationPathsConfiguration &rules)
{
    const QStringList applications = applicationsOf(rules);
    if (applications.isEmpty())
        return Left(Failure{
                BadFiles, resolved(rules.defaultPath()) + QStringLiteral(": no application has a configuration here")});
    for (const QString &appId : applications) {
        const auto checked = checkApplication(check, rules, appId, QString());
        if (checked.isLeft())
            return checked;
    }
    return Right(Success);
}

static Result<ExitStatus> checkFiles(Check *check, const Request &request)
{
    if (!request.config.isEmpty()) {
        if (!request.paths.isEmpty())
            check->paths(request.paths);
        check->configuration(request.config, request.bindings);
        return Right(Success);
    }
    if (!request.appId.isEmpty())
        return checkApplication(check, pathsFor(check, request.paths), request.appId, request.bindings);
    if (request.allApps)
        return checkAllApplications(check, pathsFor(check, request.paths));
    if (request.paths.isEmpty() && request.bindings.isEmpty())
        return Left(Failure{
                WrongUse, QStringLiteral("nothing to check: give --app, --all-apps, --config, --bindings or --paths")});
    if (!request.paths.isEmpty())
        check->paths(request.paths);
    if (!request.bindings.isEmpty())
        check->bindings(request.bindings);
    return Right(Success);
}

static QString counted(int count, const QString &what)
{
    return QStringLiteral("%1 %2%3").arg(QString::number(count), what, count == 1 ? QString() : QStringLiteral("s"));
}

static void report(const Findings &findings, const QStringList &files, Request::Format format)
{
    switch (format) {
    case Request::Json: print(analysis::toJson(findings, files)); return;
    case Request::Sarif: print(analysis::toSarif(findings, QStringLiteral(GESTURECTL_VERSION))); return;
    case Request::Text: break;
    }
    for (const analysis::Finding &finding : findings.list())
        print(analysis::toText(finding).split(QLatin1Char('\n')));
    print(QStringLiteral("%1 and %2 in %3")
                  .arg(counted(findings.count(Severity::Error), QStringLiteral("error")),
                       counted(findings.count(Severity::Warning), QStringLiteral("warning")),
                       counted(files.size(), QStringLiteral("file"))));
}

static Result<ExitStatus> check(const Request &request)
{
    QVector<QStringList> devices;
    if (request.everyDevice)
        devices = analysis::allDevices();
    else if (!request.with.isEmpty())
        devices.append(request.with);
    Check check(devices);
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

Verb checkVerb()
{
    return verb("check", "Find problems in configurations before they are shipped",
                "Exit status: 3 on errors, 1 on warnings with --strict.\n"
                "Example: gesturectl check --app reader --every-device --strict",
                declare, check);
}

}
