#include "bindings.h"

#include "atomicfile.h"
#include "fields.h"
#include "varianttype.h"

#include <gesture_api/configuration.h>

#include <vellix/platform/vxcomponents.h>
#include <vellix/resolvedpath.h>

#include <QJsonArray>
#include <QJsonDocument>

#include <algorithm>
#include <iterator>
#include <ostream>
#include <vector>

namespace vellix {
namespace gesture {

qint32 Configuration::ActionBindings::version = 1;

// Programs that read logs match these line numbers: they are fixed, however this file changes.
static Left<Error> fail(int line, const QString &message)
{
    return Left(Error({"../../../gesture_api/src/configuration", line}, message.toStdString()));
}

using ParsingError = Configuration::ActionBindings::ParsingError;

Either<ParsingError, Bindings> Configuration::ActionBindings::loadJson(const QString &fileName)
{
    return components::VariantLoader::loadJson(fileName)
            .mapLeft([](const Error &error) { return ParsingError(error); })
            .flatMap([&fileName](const QVariant &root) -> Either<ParsingError, Bindings> {
                if (!isType(root, QMetaType::QVariantMap))
                    return fail(163, QLatin1Char('`') + fileName + QStringLiteral("` root bust be map<>"));
                return fromVariant(root.toMap());
            });
}

Either<ParsingError, Bindings> Configuration::ActionBindings::fromVariant(const QVariantMap &root)
{
    const QVariant *const found = field(root, QStringLiteral("version"));
    if (!found)
        return fail(84, QStringLiteral("`version` is obligatory field"));
    bool isNumber = false;
    const qint32 number = found->toInt(&isNumber);
    if (!isNumber)
        return fail(89, QStringLiteral("`version` type must be `int`"));
    if (number != version)
        return Left(ParsingError::VersionNotMatch{number});

    const QVariant *const actions = field(root, QStringLiteral("actions"));
    if (!actions)
        return fail(111, QStringLiteral("`actions` is obligatory field"));
    if (!isType(*actions, QMetaType::QVariantMap))
        return fail(108, QStringLiteral("`actions` type must be `map<str, str>`"));

    Bindings bindings;
    const QVariantMap entries = actions->toMap();
    for (auto entry = entries.cbegin(); entry != entries.cend(); ++entry) {
        if (!isType(*entry, QMetaType::QString))
            return fail(102, QStringLiteral("`actions` value type must be `str`"));
        bindings.insert(entry.key(), entry->toString());
    }
    return Right(bindings);
}

// A map is filled faster in its own order.
Bindings bindingsOf(const QList<Gesture *> &gestures)
{
    std::vector<const Gesture *> sorted;
    sorted.reserve(static_cast<std::size_t>(gestures.size()));
    std::copy_if(gestures.cbegin(), gestures.cend(), std::back_inserter(sorted),
                 [](const Gesture *gesture) { return gesture && gesture->currentAction(); });
    std::stable_sort(sorted.begin(), sorted.end(),
                     [](const Gesture *a, const Gesture *b) { return a->id() < b->id(); });
    Bindings bindings;
    for (const Gesture *gesture : sorted)
        bindings.insert(bindings.cend(), gesture->id(), gesture->currentAction()->path());
    return bindings;
}

QVariant Configuration::ActionBindings::toVariant(const QList<Gesture *> &gestures)
{
    QVariantMap actions;
    const Bindings bindings = bindingsOf(gestures);
    for (auto binding = bindings.cbegin(); binding != bindings.cend(); ++binding)
        actions.insert(binding.key(), *binding);
    return QVariantMap{{QStringLiteral("version"), version}, {QStringLiteral("actions"), actions}};
}

static bool needsNoEscape(QChar c)
{
    return c >= QLatin1Char(' ') && c.unicode() < 0x7f && c != QLatin1Char('"') && c != QLatin1Char('\\');
}

static void appendString(QByteArray *text, const QString &value)
{
    if (!std::all_of(value.cbegin(), value.cend(), needsNoEscape)) {
        const QByteArray list = QJsonDocument(QJsonArray{value}).toJson(QJsonDocument::Compact);
        text->append(list.constData() + 1, list.size() - 2); // without the brackets
        return;
    }
    const int start = text->size();
    text->resize(start + value.size() + 2);
    char *const quoted = text->data() + start;
    quoted[0] = quoted[value.size() + 1] = '"';
    std::transform(value.cbegin(), value.cend(), quoted + 1, [](QChar c) { return c.toLatin1(); });
}

static void startMember(QByteArray *text, int level, const QString &name)
{
    text->append('\n').append(4 * level, ' ');
    appendString(text, name);
    text->append(": ");
}

// Writes the text of the document as QJsonDocument does, which would need several times as long.
QByteArray bindingsText(const Bindings &bindings)
{
    QByteArray text;
    text.reserve(64 + bindings.size() * 80);
    text.append('{');
    startMember(&text, 1, QStringLiteral("actions"));
    text.append('{');
    for (auto binding = bindings.cbegin(); binding != bindings.cend(); ++binding) {
        if (binding != bindings.cbegin())
            text.append(',');
        startMember(&text, 2, binding.key());
        appendString(&text, *binding);
    }
    text.append('\n').append(4, ' ').append("},");
    startMember(&text, 1, QStringLiteral("version"));
    text.append(QByteArray::number(Configuration::ActionBindings::version)).append("\n}\n");
    return text;
}

Either<QString, qint64> Configuration::ActionBindings::saveJson(const QString &fileName,
                                                                const QList<Gesture *> &gestures)
{
    const QString path = resolvedPath(fileName);
    const QByteArray text = bindingsText(bindingsOf(gestures));
    makeDirectoriesFor(path);
    const auto written = writeAtomically(path, text);
    if (written.isRight())
        return Right(written.right());
    const bool opened = written.left().step != SaveFailure::Opening;
    return opened ? Either<QString, qint64>(Right<qint64>(-1)) : Left(written.left().message(path));
}

std::ostream &operator<<(std::ostream &out, const ParsingError &error)
{
    if (const auto *versionNotMatch = boost::get<ParsingError::VersionNotMatch>(&error.value))
        return out << "VersionNotMatch(" << versionNotMatch->version << ")";
    if (const auto *other = boost::get<Error>(&error.value))
        return out << "OtherError(" << *other << ")";
    return out << "Undefined error type";
}

}
}
