#include <vellix/platform/vxcomponents.h>

#include <QFile>
#include <QFileInfo>
#include <QJsonDocument>

namespace vellix {
namespace components {

static Left<Error> fail(int line, const QString &message)
{
    return Left(Error({"../../../platform/host/vxcomponents/variantloader", line}, message.toStdString()));
}

// The byte that the parser refused. It stops behind it, except for the errors named here.
static int offsetOf(const QJsonParseError &error)
{
    switch (error.error) {
    case QJsonParseError::IllegalNumber:
    case QJsonParseError::IllegalUTF8String:
    case QJsonParseError::UnterminatedString:
    case QJsonParseError::GarbageAtEnd: return error.offset;
    default: return qMax(0, error.offset - 1);
    }
}

// "LINE:COLUMN" of a byte offset, both counted from one and columns in characters.
static QString place(const QByteArray &text, int offset)
{
    const QByteArray before = text.left(offset);
    const int lineStart = before.lastIndexOf('\n') + 1;
    const int column = QString::fromUtf8(before.mid(lineStart)).toUcs4().size();
    return QStringLiteral("%1:%2").arg(before.count('\n') + 1).arg(column + 1);
}

Either<Error, QVariant> VariantLoader::loadJson(const QString &fileName)
{
    const QString path = QString::fromStdString(PathResolver::newDefault().resolvePreffix(fileName.toStdString()));

    // A pipe would block and a device might never end.
    const QFileInfo info(path);
    if (info.exists() && !info.isFile())
        return fail(__LINE__,
                    path + QStringLiteral(": ")
                            + (info.isDir() ? QStringLiteral("Is a directory") : QStringLiteral("Not a regular file")));

    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return fail(__LINE__, path + QStringLiteral(": ") + file.errorString());

    const QByteArray text = file.readAll();
    if (file.error() != QFileDevice::NoError)
        return fail(__LINE__, path + QStringLiteral(": ") + file.errorString());

    QJsonParseError error;
    const QJsonDocument document = QJsonDocument::fromJson(text, &error);
    if (error.error != QJsonParseError::NoError)
        return fail(__LINE__,
                    path + QLatin1Char(':') + place(text, offsetOf(error)) + QStringLiteral(": ")
                            + error.errorString());
    return Right(document.toVariant());
}

}
}
