#include "verbs.h"

#include <gesturectl/output.h>

#include <QFileInfo>

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

static Result<ExitStatus> reset(const Request &request)
{
    return pathsOf(request.appId).flatMap([](const ApplicationPaths &paths) -> Result<ExitStatus> {
        const QString file = resolved(paths.currentPath());
        if (PathResolver::newDefault().remove(paths.currentPath().toStdString()))
            print(file + QStringLiteral(" removed"));
        else if (QFileInfo(file).isSymLink() || QFileInfo::exists(file))
            return Left(Failure{BadFiles, file + QStringLiteral(": could not be removed")});
        else
            print(QStringLiteral("nothing to reset"));
        return Right(Success);
    });
}

Verb resetVerb()
{
    return verb("reset", "Remove all of the user's choices", "Example: gesturectl reset --app reader", declare, reset);
}

}
