#include "application.h"

#include <gesture_api/action.h>
#include <gesture_api/gestureservice.h>

#include <vellix/platform/vxcomponents.h>

#include <QFileInfo>

using namespace vellix;
using namespace vellix::gesture;
using ActionBindings = Configuration::ActionBindings;

namespace gesturectl {

static const QString pathsFile = QStringLiteral("${SYSTEMDATA}/config/gestures/application_paths.json");

QString resolved(const QString &path)
{
    return QString::fromStdString(PathResolver::newDefault().resolvePreffix(path.toStdString()));
}

static QString words(const Error &error)
{
    return error.records.empty() ? QStringLiteral("undefined error")
                                 : QString::fromStdString(error.records.front().message);
}

// The loader names the file itself, with the place of a syntax error; the readers know neither.
static Failure badFile(const QString &path, const QString &place, const Error &error)
{
    const QString file = resolved(path);
    const QString reason = words(error);
    if (reason.contains(file))
        return {BadFiles, reason};
    return {BadFiles,
            file + QStringLiteral(": ") + (place.isEmpty() ? QString() : place + QStringLiteral(": ")) + reason};
}

Result<ApplicationPaths> pathsOf(const QString &appId)
{
    const bool exists = PathResolver::newDefault().exists(pathsFile.toStdString());
    const auto rules = exists ? ApplicationPathsConfiguration::loadJson(pathsFile)
                              : Right(ApplicationPathsConfiguration::newDefault());
    if (rules.isLeft())
        return Left(badFile(pathsFile, QString(), rules.left()));
    return rules.right().appPaths(appId).mapLeft([](const Error &error) { return Failure{WrongUse, words(error)}; });
}

Result<Bindings> bindingsOf(const ApplicationPaths &paths)
{
    if (!paths.currentPathExists())
        return Right(Bindings());
    return ActionBindings::loadJson(paths.currentPath()).mapLeft([&paths](const ActionBindings::ParsingError &error) {
        if (const auto *other = boost::get<Error>(&error.value))
            return badFile(paths.currentPath(), QString(), *other);
        const qint32 found = boost::get<ActionBindings::ParsingError::VersionNotMatch>(error.value).version;
        return Failure{BadFiles,
                       QStringLiteral("%1: version: found %2, needed %3")
                               .arg(resolved(paths.currentPath()))
                               .arg(found)
                               .arg(ActionBindings::version)};
    });
}

// The first entry of a configuration that the library refuses, such as "gestures[3]". The readers stop
// at the first fault of a section, so each entry is tried by itself.
static QString placeOfFault(const QVariantMap &root, const FeaturesProvider *features, const Bindings &bindings)
{
    QObject owner;
    const auto entry = [](const char *section, int index) {
        return QStringLiteral("%1[%2]").arg(QLatin1String(section)).arg(index);
    };
    const auto member = [](const char *section, const QString &name) {
        return QLatin1String(section) + QLatin1Char('.') + name;
    };

    const auto isOther = [&root](const char *section, QMetaType::Type type) {
        const auto value = root.constFind(QLatin1String(section));
        return value != root.constEnd() && value->userType() != type;
    };
    // The message names the section then.
    if (isOther("zones", QMetaType::QVariantMap) || isOther("actions", QMetaType::QVariantList)
        || isOther("actionGroups", QMetaType::QVariantMap))
        return {};

    QMap<QString, QRectF> zones;
    const QVariantMap zoneSection = root.value(QStringLiteral("zones")).toMap();
    for (auto zone = zoneSection.cbegin(); zone != zoneSection.cend(); ++zone) {
        const auto one = Gesture::zoneFromVariant(*zone, GestureService::predefinedZones, nullptr);
        if (one.isLeft())
            return member("zones", zone.key());
        zones.insert(zone.key(), one.right());
    }
    for (auto zone = GestureService::predefinedZones.cbegin(); zone != GestureService::predefinedZones.cend(); ++zone)
        zones.insert(zone.key(), *zone);

    QList<Action *> actions;
    const QVariantList actionSection = root.value(QStringLiteral("actions")).toList();
    for (int i = 0; i < actionSection.size(); ++i) {
        const auto one = Action::fromVariant(actionSection.at(i), features, QList<Action *>(), &owner);
        if (one.isLeft())
            return entry("actions", i);
        actions.append(one.right());
    }

    const QVariantMap groupSection = root.value(QStringLiteral("actionGroups")).toMap();
    for (auto group = groupSection.cbegin(); group != groupSection.cend(); ++group) {
        if (Action::actionGroupsFromVariant({{group.key(), *group}}, actions, nullptr, &owner).isLeft())
            return member("actionGroups", group.key());
    }
    const auto groups = Action::actionGroupsFromVariant(groupSection, actions, nullptr, &owner);

    const QVariantList gestureSection = root.value(QStringLiteral("gestures")).toList();
    for (int i = 0; i < gestureSection.size() && groups.isRight(); ++i) {
        // Gestures own their actions: what they take, the next ones must still find.
        const auto one = Gesture::listFromVariant({gestureSection.at(i)}, features, actions, groups.right(), zones,
                                                  bindings, &owner);
        if (one.isLeft())
            return entry("gestures", i);
    }
    return {};
}

// The first binding that alone makes a sound configuration fail; empty when there is none.
static QString refusedBinding(const QVariant &document, const FeaturesProvider *features, const Bindings &bindings)
{
    const auto loads = [&](const Bindings &some) {
        QObject owner;
        return Configuration::fromVariant(document, features, GestureService::predefinedZones, some, &owner).isRight();
    };
    if (!loads({}))
        return {};
    for (auto binding = bindings.cbegin(); binding != bindings.cend(); ++binding) {
        if (!loads({{binding.key(), *binding}}))
            return binding.key();
    }
    return {};
}

Result<Gestures> gesturesOf(const ApplicationPaths &paths, const FeaturesProvider *features, const Bindings &bindings,
                            QObject *parent)
{
    const QString file = paths.defaultPath();
    return Configuration::loadJson(file, features, GestureService::predefinedZones, bindings, parent)
            .mapLeft([&](const Error &error) {
                const auto document = components::VariantLoader::loadJson(file);
                const QString binding =
                        document.isRight() ? refusedBinding(document.right(), features, bindings) : QString();
                if (!binding.isEmpty())
                    return badFile(paths.currentPath(), QStringLiteral("actions.") + binding, error);
                const QString place =
                        document.isRight() ? placeOfFault(document.right().toMap(), features, bindings) : QString();
                return badFile(file, place, error);
            });
}

Result<QMap<QString, QRectF>> zonesOf(const ApplicationPaths &paths)
{
    const auto document = components::VariantLoader::loadJson(paths.defaultPath());
    if (document.isLeft())
        return Left(badFile(paths.defaultPath(), QString(), document.left()));
    const QVariantMap section = document.right().toMap().value(QStringLiteral("zones")).toMap();
    return Gesture::zoneMapFromVariant(section, GestureService::predefinedZones)
            .map([](QMap<QString, QRectF> zones) {
                for (auto zone = GestureService::predefinedZones.cbegin();
                     zone != GestureService::predefinedZones.cend(); ++zone)
                    zones.insert(zone.key(), *zone);
                return zones;
            })
            .mapLeft([&paths](const Error &error) {
                return badFile(paths.defaultPath(), QStringLiteral("zones"), error);
            });
}

}
