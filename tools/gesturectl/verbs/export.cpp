#include "verbs.h"

#include <gesturectl/output.h>

#include <QJsonObject>

using namespace vellix;
using namespace vellix::gesture;

namespace gesturectl {

namespace {
struct Request
{
    QString appId;
};
}

static void declare(Options *options, Request *request)
{
    options->app(&request->appId).required();
}

// An unknown application has no choices to export: an import of the empty file would wipe another one's.
static Result<ApplicationPaths> known(const ApplicationPaths &paths)
{
    if (!paths.currentPathExists() && !PathResolver::newDefault().exists(paths.defaultPath().toStdString()))
        return Left(Failure{BadFiles, resolved(paths.defaultPath()) + QStringLiteral(": No such file or directory")});
    return Right(paths);
}

static Result<ExitStatus> exportBindings(const Request &request)
{
    return pathsOf(request.appId).flatMap(known).flatMap(bindingsOf).map([](const Bindings &bindings) {
        QJsonObject actions;
        for (auto binding = bindings.cbegin(); binding != bindings.cend(); ++binding)
            actions.insert(binding.key(), *binding);
        print(QJsonDocument(QJsonObject{{QStringLiteral("version"), Configuration::ActionBindings::version},
                                        {QStringLiteral("actions"), actions}}));
        return Success;
    });
}

Verb exportVerb()
{
    return verb("export", "Print the user's choices in the format that 'import' reads",
                "Example: gesturectl export --app reader > choices.json", declare, exportBindings);
}

}
