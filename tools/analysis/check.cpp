#include "check.h"

#include "format.h"
#include "refusal.h"
#include "rules/keys.h"
#include "subjectreader.h"
#include "values.h"

#include <gesture_api/configuration.h>
#include <gesture_api/gestureservice.h>

#include <vellix/platform/vxcomponents.h>
#include <vellix/resolvedpath.h>

#include <QFile>
#include <QFileInfo>
#include <QJsonDocument>

using namespace vellix;
using namespace vellix::gesture;
using ActionBindings = Configuration::ActionBindings;

namespace analysis {

Check::Check(const QVector<QStringList> &devices) : m_devices(devices) {}

// The loader's reason, without its prefix of path and place.
static QString reasonOf(const Error &error, const QString &path)
{
    const QString words = messageOf(error);
    return words.startsWith(path + QStringLiteral(": ")) ? words.mid(path.size() + 2) : words;
}

// The library's message, at the place where the strict parser stops: the library's own place is mostly after the fault,
// or far off.
static void reportSyntax(const JsonText &text, const QJsonParseError &error, const QString &consequence,
                         Findings *findings)
{
    const int offset = text.fault() ? text.fault()->offset : qMax(0, error.offset - 1);
    findings->add("syntax", text.placeAt(qMin(offset, text.bytes().size())), error.errorString(),
                  text.fault() ? text.fault()->reason + QLatin1Char(' ') + consequence : consequence);
}

Check::Document Check::read(const QString &path, const QString &consequence)
{
    const QString file = resolvedPath(path);
    m_files.append(file);
    // The loader recognises a file that is not regular, and does not wait for a pipe.
    const auto document = components::VariantLoader::loadJson(file);
    QByteArray bytes;
    QFile opened(file);
    if (QFileInfo(file).isFile() && opened.open(QIODevice::ReadOnly))
        bytes = opened.readAll();
    m_texts.push_back(std::make_unique<const JsonText>(file, bytes));
    const JsonText &text = *m_texts.back();

    if (document.isLeft()) {
        QJsonParseError error;
        QJsonDocument::fromJson(bytes, &error);
        if (!opened.isOpen() || error.error == QJsonParseError::NoError)
            m_findings.add("unreadable", text.placeAt(0), reasonOf(document.left(), file), consequence);
        else
            reportSyntax(text, error, consequence, &m_findings);
        return {&text, QVariant()};
    }
    if (text.fault())
        m_findings.add("not-strict", text.placeAt(text.fault()->offset), text.fault()->reason);
    reportDuplicateKeys(text, &m_findings);
    return {&text, document.right()};
}

static const QString noGestures = QStringLiteral("The application has no gestures then.");
static const QString noChoices =
        QStringLiteral("The library ignores the file: gestures perform their default actions.");
static const QString ownPaths = QStringLiteral("The library uses its built-in paths instead.");

ApplicationPathsConfiguration Check::paths(const QString &path)
{
    const Document document = read(path, ownPaths);
    if (!document.value.isValid())
        return ApplicationPathsConfiguration::newDefault();
    const auto report = [this](const Place &place, const QString &words) {
        m_findings.add("refused", place, words, ownPaths);
    };
    const Place place = document.text->place();
    const auto paths = ApplicationPathsConfiguration::fromVariant(document.value);
    if (!isObject(document.value)) {
        report(place, wordsOf(paths));
        return ApplicationPathsConfiguration::newDefault();
    }
    const QVariantMap root = document.value.toMap();
    reportRefusals(
            root, place, format::paths(), {},
            [](const QVariantMap &tried) { return wordsOf(ApplicationPathsConfiguration::fromVariant(tried)); },
            report);
    reportUnknownKeys(root, place, format::paths(), &m_findings);
    reportConvertedValues(root, place, format::paths(), &m_findings);
    return paths.isRight() ? paths.right() : ApplicationPathsConfiguration::newDefault();
}

// The service's message for another version; the loader only returns the number.
static QString wordsOfBindings(const QVariantMap &root)
{
    const auto read = ActionBindings::fromVariant(root);
    if (read.isRight())
        return {};
    const auto &error = read.left().value;
    if (const auto *other = boost::get<Error>(&error))
        return wordsOf(Either<Error, int>(Left(*other)));
    return QStringLiteral("version not match: found: %1 needed: %2")
            .arg(boost::get<ActionBindings::ParsingError::VersionNotMatch>(error).version)
            .arg(ActionBindings::version);
}

static const QString versionKey = QStringLiteral("version");
static const QString actionsKey = QStringLiteral("actions");

// Reports the refused choices one by one. Returns whether there were any.
static bool reportChoices(const QVariant &value, const Place &place, const Report &report)
{
    const QVariantMap choices = value.toMap();
    bool any = false;
    for (auto choice = choices.cbegin(); choice != choices.cend(); ++choice) {
        QVariantMap tried = validObject(format::bindings());
        tried.insert(actionsKey, QVariantMap{{choice.key(), *choice}});
        const QString words = wordsOfBindings(tried);
        if (words.isNull())
            continue;
        any = true;
        report(place[choice.key()], words);
    }
    return any;
}

// The loader's message about the version alone; null if it accepts the version, or if there is none.
static QString wordsOfVersion(const QVariantMap &root)
{
    if (!root.contains(versionKey))
        return {};
    QVariantMap tried = validObject(format::bindings());
    tried.insert(versionKey, root.value(versionKey));
    return wordsOfBindings(tried);
}

static void reportConvertedVersion(const QVariant &version, const Place &place, Findings *findings)
{
    const bool isNumber = typeNameOf(version) == QLatin1String("a number");
    if (!isNumber || version.toDouble() != ActionBindings::version)
        reportConverted(version, place, QString::number(version.toInt()), findings);
}

std::optional<Choices> Check::readBindings(const Document &document)
{
    if (!document.value.isValid())
        return {};
    const Place place = document.text->place();
    const auto report = [this](const Place &where, const QString &words) {
        m_findings.add("refused", where, words, noChoices);
    };
    if (!isObject(document.value)) {
        report(place, QLatin1Char('`') + document.text->path() + QStringLiteral("` root bust be map<>"));
        return {};
    }
    const QVariantMap root = document.value.toMap();
    const QString words = wordsOfVersion(root);
    if (words.startsWith(QLatin1String("version not match"))) {
        m_findings.add("version", place[versionKey], words);
        return {};
    }
    const WithinMembers within{{actionsKey, [&report](const QVariant &value, const Place &where) {
                                    return reportChoices(value, where, report);
                                }}};
    reportRefusals(root, place, format::bindings(), within, wordsOfBindings, report);
    reportUnknownKeys(root, place, format::bindings(), &m_findings);
    if (root.contains(versionKey) && words.isNull())
        reportConvertedVersion(root.value(versionKey), place[versionKey], &m_findings);
    return Choices{root.value(actionsKey).toMap(), place[actionsKey]};
}

Findings Check::checkOn(const FeaturesProvider &features, const Document &document,
                        const std::optional<Choices> &choices) const
{
    Findings found;
    QObject owner;
    Subject subject = readSubject(*document.text, document.value, &features, &owner, &found);
    subject.choices = choices;
    const auto whole =
            Configuration::fromVariant(document.value, &features, GestureService::predefinedZones, {}, &owner);
    // A fault that no entry showed.
    if (whole.isLeft() && found.count(Severity::Error) == 0)
        found.add("refused", document.text->place(), wordsOf(whole));
    findAll(subject, !m_devices.isEmpty(), &found);
    return found;
}

void Check::configuration(const QString &path, const QString &bindingsPath)
{
    const Document document = read(path, noGestures);
    const std::optional<Choices> choices =
            bindingsPath.isEmpty() ? std::nullopt : readBindings(read(bindingsPath, noChoices));
    if (!document.value.isValid())
        return;
    if (m_devices.isEmpty()) {
        m_findings.append(checkOn(DefaultFeaturesProvider(), document, choices));
        return;
    }
    QVector<Findings> found;
    for (const QStringList &device : qAsConst(m_devices))
        found.append(checkOn(Device(device), document, choices));
    m_findings.append(merged(found, m_devices));
}

Findings Check::findings() const
{
    Findings sorted = m_findings;
    sorted.sort(m_files);
    return sorted;
}

void Check::bindings(const QString &path)
{
    readBindings(read(path, noChoices));
}

}
