#include "output.h"
#include "verbs.h"

#include <QFile>

using namespace vellix;

namespace gesturectl {

Result<ExitStatus> schema(const QString &name)
{
    QFile file(QStringLiteral(":/schemas/%1.schema.json").arg(name));
    if (!file.open(QIODevice::ReadOnly))
        return Left(Failure{WrongUse, QStringLiteral("there is no schema '%1'").arg(name)});
    print(QString::fromUtf8(file.readAll()).trimmed().split(QLatin1Char('\n')));
    return Right(Success);
}

}
