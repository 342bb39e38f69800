#include "openatonce.h"

#include <vellix/platform/vxcomponents.h>
#include <vellix/resolvedpath.h>

#include <QFile>
#include <QFileInfo>
#include <QJsonDocument>

#include <sys/stat.h>

#include <algorithm>

namespace vellix {
namespace components {

static Left<Error> fail(int line, const QString &message)
{
    return Left(Error({"../../../platform/host/vxcomponents/variantloader", line}, message.toStdString()));
}

// The byte that the parser refused. The parser stops after it, except for the errors named here.
static int offsetOf(const QJsonParseError &error)
{
    switch (error.error) {
    case QJsonParseError::IllegalNumber:
    case QJsonParseError::IllegalEscapeSequence:
    case QJsonParseError::IllegalUTF8String:
    case QJsonParseError::UnterminatedString:
    case QJsonParseError::GarbageAtEnd: return error.offset;
    default: return qMax(0, error.offset - 1);
    }
}

// "LINE:COLUMN" of a byte offset, both counted from one and columns in characters.
static QString place(const QByteArray &text, int offset)
{
    const char *const end = text.constData() + qMin(offset, text.size());
    const int line = static_cast<int>(std::count(text.constData(), end, '\n'));
    const int lineStart = offset > 0 ? text.lastIndexOf('\n', offset - 1) + 1 : 0;
    const auto startsCharacter = [](char c) { return (c & 0xc0) != 0x80; };
    const int column = static_cast<int>(std::count_if(text.constData() + lineStart, end, startsCharacter));
    return QStringLiteral("%1:%2").arg(line + 1).arg(column + 1);
}

// A pipe would block and a device might never end.
static Left<Error> irregular(const QString &path, bool directory)
{
    return fail(__LINE__,
                path + QStringLiteral(": ")
                        + (directory ? QStringLiteral("Is a directory") : QStringLiteral("Not a regular file")));
}

// Opens without waiting, even if the file has been replaced since the check. Returns the error if it cannot.
static QString openAtOnce(QFile &file)
{
    if (!QFileInfo(file).isNativePath()) // an empty name, or a Qt resource
        return file.open(QIODevice::ReadOnly) ? QString() : file.errorString();
    const int descriptor = openAtOnce(QFile::encodeName(file.fileName()));
    const bool open = descriptor >= 0 && file.open(descriptor, QIODevice::ReadOnly, QFile::AutoCloseHandle);
    return open ? QString() : qt_error_string(errno);
}

Either<Error, QVariant> VariantLoader::loadJson(const QString &fileName)
{
    const QString path = resolvedPath(fileName);

    const QFileInfo info(path);
    if (info.exists() && !info.isFile())
        return irregular(path, info.isDir());

    QFile file(path);
    const QString obstacle = openAtOnce(file);
    if (!obstacle.isEmpty())
        return fail(__LINE__, path + QStringLiteral(": ") + obstacle);

    // It may be another kind of file by now.
    struct stat status;
    if (fstat(file.handle(), &status) == 0 && !S_ISREG(status.st_mode))
        return irregular(path, S_ISDIR(status.st_mode));

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
