#include "check.h"

#include "keys.h"
#include "refusal.h"
#include "rules_bindings.h"
#include "rules_configuration.h"

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

// The loader's reason, without the path and the place that it puts before it.
static QString reasonOf(const Error &error, const QString &path)
{
    const QString words = messageOf(error);
    return words.startsWith(path + QStringLiteral(": ")) ? words.mid(path.size() + 2) : words;
}

// The library's words, at the place where the strict reader stops: the library's own is mostly behind the fault, or far
// off.
static void tellSyntax(const JsonText &text, const QJsonParseError &error, const QString &consequence,
                       Findings *findings)
{
    const int offset = text.fault() ? text.fault()->offset : qMax(0, error.offset - 1);
    findings->add(rules::syntax, text.placeAt(qMin(offset, text.bytes().size())), error.errorString(),
                  text.fault() ? text.fault()->reason + QLatin1Char(' ') + consequence : consequence);
}

Check::Document Check::read(const QString &path, const QString &consequence)
{
    const QString file = resolvedPath(path);
    m_files.append(file);
    // It knows what is no file, and does not wait for a pipe.
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
            m_findings.add(rules::unreadable, text.placeAt(0), reasonOf(document.left(), file), consequence);
        else
            tellSyntax(text, error, consequence, &m_findings);
        return {&text, QVariant()};
    }
    if (text.fault())
        m_findings.add(rules::notStrict, text.placeAt(text.fault()->offset), text.fault()->reason);
    tellDuplicateKeys(text, &m_findings);
    return {&text, document.right()};
}

static const QString noGestures = QStringLiteral("The application has no gestures then.");
static const QString noChoices = QStringLiteral("The library ignores the file, and gestures do their defaults.");
static const QString ownPaths = QStringLiteral("The library uses its own paths in place of this file.");

ApplicationPathsConfiguration Check::paths(const QString &path)
{
    const Document document = read(path, ownPaths);
    if (!document.value.isValid())
        return ApplicationPathsConfiguration::newDefault();
    const auto refuse = [this](const Place &place, const QString &words) {
        m_findings.add(rules::refused, place, words, ownPaths);
    };
    const auto read = ApplicationPathsConfiguration::fromVariant(document.value);
    if (document.value.userType() != QMetaType::QVariantMap) {
        refuse(document.text->place(), wordsOf(read));
        return ApplicationPathsConfiguration::newDefault();
    }
    const QString text = QStringLiteral("t");
    const QVector<Field> fields{{QStringLiteral("current"), text},
                                {QStringLiteral("default"), text},
                                {QStringLiteral("filename"), text},
                                {QStringLiteral("prohibitedApps"), QVariantList()}};
    const QVariantMap map = document.value.toMap();
    const Place place = document.text->place();
    tellRefusals(
            map, place, fields,
            {{QStringLiteral("current"), text}, {QStringLiteral("default"), text}, {QStringLiteral("filename"), text}},
            {}, [](const QVariantMap &tried) { return wordsOf(ApplicationPathsConfiguration::fromVariant(tried)); },
            refuse);
    QStringList known{QStringLiteral("$schema")};
    for (const Field &field : fields)
        known.prepend(field.name);
    tellUnknownKeys(map, place, known, &m_findings);
    tellConvertedElements(map.value(QStringLiteral("prohibitedApps")), place[QStringLiteral("prohibitedApps")],
                          &m_findings);
    return read.isRight() ? read.right() : ApplicationPathsConfiguration::newDefault();
}

// As the service says it; the loader only gives the number.
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

std::optional<Check::Choices> Check::readBindings(const Document &document)
{
    if (!document.value.isValid())
        return {};
    const Place place = document.text->place();
    if (document.value.userType() != QMetaType::QVariantMap) {
        m_findings.add(rules::refused, place,
                       QLatin1Char('`') + document.text->path() + QStringLiteral("` root bust be map<>"), noChoices);
        return {};
    }
    const QString version = QStringLiteral("version");
    const QString actions = QStringLiteral("actions");
    const QVariantMap root = document.value.toMap();
    const QString other = root.contains(version)
            ? wordsOfBindings({{version, root.value(version)}, {actions, QVariantMap()}})
            : QString();
    if (other.startsWith(QLatin1String("version not match"))) {
        m_findings.add(rules::version, place[version], other);
        return {};
    }
    const auto tell = [this](const Place &where, const QString &words) {
        m_findings.add(rules::refused, where, words, noChoices);
    };
    const auto within = [&tell](const QVariant &value, const Place &where) {
        const QVariantMap choices = value.toMap();
        bool any = false;
        for (auto choice = choices.cbegin(); choice != choices.cend(); ++choice) {
            const QString words = wordsOfBindings({{QStringLiteral("version"), ActionBindings::version},
                                                   {QStringLiteral("actions"), QVariantMap{{choice.key(), *choice}}}});
            if (words.isNull())
                continue;
            any = true;
            tell(where[choice.key()], words);
        }
        return any;
    };
    tellRefusals(root, place, {{version, ActionBindings::version}, {actions, QVariantMap(), within}},
                 {{version, ActionBindings::version}, {actions, QVariantMap()}}, {}, wordsOfBindings, tell);
    tellUnknownKeys(root, place, {actions, version, QStringLiteral("$schema")}, &m_findings);
    const QVariant found = root.value(version);
    const bool isExact = typeNameOf(found) == QLatin1String("a number") && found.toDouble() == ActionBindings::version;
    if (root.contains(version) && other.isNull() && !isExact)
        tellConverted(found, place[version], QString::number(found.toInt()), &m_findings);
    return root.value(actions).toMap();
}

static void tellAll(const Subject &subject, bool isDeviceChosen, Findings *findings)
{
    tellUnknownKeys(subject, findings);
    tellConvertedValues(subject, findings);
    tellOverriddenZones(subject, findings);
    tellOddZones(subject, findings);
    tellUnusedZones(subject, findings);
    tellDuplicateActions(subject, findings);
    tellUnusedActions(subject, findings);
    tellUnusedGroups(subject, findings);
    tellShortTitles(subject, findings);
    tellDeepPaths(subject, findings);
    tellUnsaveableActions(subject, findings);
    tellShadowed(subject, findings);
    tellDuplicateIds(subject, findings);
    tellFallbacks(subject, findings);
    tellNotAvailable(subject, findings);
    tellFixedActions(subject, findings);
    tellDirectedTaps(subject, findings);
    tellUndirectedSwipes(subject, findings);
    tellModesCase(subject, findings);
    // This machine is hardly the device.
    if (!isDeviceChosen)
        return;
    tellNoAction(subject, findings);
    tellDeadTouches(subject, findings);
}

Findings Check::checkOn(const FeaturesProvider &features, const Document &document,
                        const std::optional<Choices> &choices, const JsonText *bindings) const
{
    Findings found;
    QObject owner;
    const Subject subject = takeApart(*document.text, document.value, &features, &owner, &found);
    const auto whole =
            Configuration::fromVariant(document.value, &features, GestureService::predefinedZones, {}, &owner);
    // Whatever it is that the entries did not show.
    if (whole.isLeft() && found.count(Severity::Error) == 0)
        found.add(rules::refused, document.text->place(), wordsOf(whole));
    tellAll(subject, !m_devices.isEmpty(), &found);
    if (choices)
        tellBindings(subject, *choices, bindings->place()[QStringLiteral("actions")], &found);
    return found;
}

void Check::configuration(const QString &path, const QString &bindingsPath)
{
    const Document document = read(path, noGestures);
    Document bindings{nullptr, {}};
    std::optional<Choices> choices;
    if (!bindingsPath.isEmpty()) {
        bindings = read(bindingsPath, noChoices);
        choices = readBindings(bindings);
    }
    if (!document.value.isValid())
        return;
    if (m_devices.isEmpty()) {
        m_findings.append(checkOn(DefaultFeaturesProvider(), document, choices, bindings.text));
        return;
    }
    QVector<Findings> found;
    for (const QStringList &device : qAsConst(m_devices))
        found.append(checkOn(Device(device), document, choices, bindings.text));
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
