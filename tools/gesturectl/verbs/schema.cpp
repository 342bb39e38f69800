#include "verbs.h"

#include <gesturectl/output.h>

#include <QFile>

using namespace vellix;

namespace gesturectl {

namespace {
struct Request
{
    QString name;
};
}

static void declare(Options *options, Request *request)
{
    options->text("FILE", &request->name, "gesture-config, bindings or application-paths")
            .required()
            .oneOf({QStringLiteral("gesture-config"), QStringLiteral("bindings"), QStringLiteral("application-paths")});
}

static Result<ExitStatus> schema(const Request &request)
{
    QFile file(QStringLiteral(":/schemas/%1.schema.json").arg(request.name));
    if (!file.open(QIODevice::ReadOnly))
        return Left(Failure{WrongUse, QStringLiteral("unknown schema '%1'").arg(request.name)});
    print(QString::fromUtf8(file.readAll()).trimmed().split(QLatin1Char('\n')));
    return Right(Success);
}

Verb schemaVerb()
{
    return verb("schema", "Print the JSON Schema of a file, for editors",
                "Example: gesturectl schema gesture-config > gesture-config.schema.json", declare, schema);
}

}
