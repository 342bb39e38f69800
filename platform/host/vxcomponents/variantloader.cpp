#include "filebytes.h"
#include "jsonreader.h"

#include <vellix/platform/vxcomponents.h>
#include <vellix/resolvedpath.h>

#include <QJsonDocument>

#include <algorithm>
#include <utility>

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

Either<Error, QVariant> VariantLoader::loadJson(const QString &fileName)
{
    const QString path = resolvedPath(fileName);
    const FileBytes file = readFile(path);
    if (file.kind != FileBytes::Regular)
        return fail(__LINE__,
                    path + QStringLiteral(": ")
                            + (file.kind == FileBytes::Directory ? QStringLiteral("Is a directory")
                                                                 : QStringLiteral("Not a regular file")));
    if (!file.error.isEmpty())
        return fail(__LINE__, path + QStringLiteral(": ") + file.error);

    QVariant read;
    if (readJson(file.bytes, &read))
        return Right(std::move(read));

    // Odd, or invalid: Qt's parser knows its value, or the reason and the place.

    QJsonParseError error;
    const QJsonDocument document = QJsonDocument::fromJson(file.bytes, &error);
    if (error.error != QJsonParseError::NoError)
        return fail(__LINE__,
                    path + QLatin1Char(':') + place(file.bytes, offsetOf(error)) + QStringLiteral(": ")
                            + error.errorString());
    return Right(document.toVariant());
}

}
}
