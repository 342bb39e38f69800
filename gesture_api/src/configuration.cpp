#include <gesture_api/configuration.h>

#include "atomicfile.h"
#include "bindings.h"
#include "resolvedpath.h"
#include "varianttype.h"

#include <vellix/platform/vxcomponents.h>

#include <QJsonDocument>
#include <QJsonObject>

#include <algorithm>
#include <ostream>

namespace vellix {
namespace gesture {

qint32 Configuration::ActionBindings::version = 1;

// Log readers key on these line numbers: they are fixed, whatever becomes of this file.
static Left<Error> fail(int line, const QString &message)
{
    return Left(Error({"../../../gesture_api/src/configuration", line}, message.toStdString()));
}

using ZoneMap = QMap<QString, QRectF>;
using ActionGroups = QMap<QString, QList<Action *>>;

static Either<Error, ZoneMap> zonesOf(const QVariantMap &root, const ZoneMap &predefined)
{
    const auto section = root.constFind(QStringLiteral("zones"));
    if (section == root.constEnd())
        return Right(predefined);
    if (!isType(*section, QMetaType::QVariantMap))
        return fail(37, QStringLiteral("'%1' field must be 'map'").arg(QStringLiteral("zones")));
    return Gesture::zoneMapFromVariant(section->toMap(), predefined).map([&predefined](ZoneMap zones) {
        // A file cannot redefine what is there already.
        for (auto zone = predefined.cbegin(); zone != predefined.cend(); ++zone)
            zones.insert(zone.key(), *zone);
        return zones;
    });
}

static Either<Error, QList<Action *>> actionsOf(const QVariantMap &root, const FeaturesProvider *featuresProvider,
                                                QObject *owner)
{
    const auto section = root.constFind(QStringLiteral("actions"));
    if (section == root.constEnd())
        return Right(QList<Action *>());
    if (!isType(*section, QMetaType::QVariantList))
        return fail(46, QStringLiteral("'%1' field must be 'list'").arg(QStringLiteral("actions")));
    return Action::listFromVariant(*section, featuresProvider, {}, {}, owner);
}

static Either<Error, ActionGroups> actionGroupsOf(const QVariantMap &root, const QList<Action *> &actions,
                                                  QObject *owner)
{
    const auto section = root.constFind(QStringLiteral("actionGroups"));
    if (section == root.constEnd())
        return Right(ActionGroups());
    if (!isType(*section, QMetaType::QVariantMap))
        return fail(55, QStringLiteral("'%1' field must be 'map'").arg(QStringLiteral("actionGroups")));
    return Action::actionGroupsFromVariant(section->toMap(), actions, nullptr, owner);
}

static Either<Error, QList<Gesture *>> withUniqueIds(const QList<Gesture *> &gestures)
{
    // Only neighbours are compared, and the id named is the first one behind the kept part.
    QList<Gesture *> kept = gestures;
    const auto end = std::unique(kept.begin(), kept.end(),
                                 [](const Gesture *a, const Gesture *b) { return a->id() == b->id(); });
    if (end != kept.end())
        return fail(69,
                    QStringLiteral("gesture id must be unique but dublicate found: `") + (*end)->id()
                            + QLatin1Char('`'));
    return Right(gestures);
}

Either<Error, QList<Gesture *>> Configuration::loadJson(const QString &fileName,
                                                        const FeaturesProvider *featuresProvider,
                                                        const QMap<QString, QRectF> &zones,
                                                        const QMap<QString, QString> &bindings, QObject *parent)
{
    return components::VariantLoader::loadJson(fileName).flatMap(
            [=](const QVariant &document) { return fromVariant(document, featuresProvider, zones, bindings, parent); });
}

Either<Error, QList<Gesture *>> Configuration::fromVariant(const QVariant &document,
                                                           const FeaturesProvider *featuresProvider,
                                                           const QMap<QString, QRectF> &zones,
                                                           const QMap<QString, QString> &bindings, QObject *parent)
{
    if (!document.isValid())
        return fail(19, QStringLiteral("invalid variant"));
    if (document.isNull())
        return fail(22, QStringLiteral("null variant"));
    const QVariantMap root = document.toMap();

    const auto allZones = zonesOf(root, zones);
    if (allZones.isLeft())
        return Left(allZones.left());

    // What no gesture takes over goes with the owner.
    QObject owner;
    const auto actions = actionsOf(root, featuresProvider, &owner);
    if (actions.isLeft())
        return Left(actions.left());

    const auto groups = actionGroupsOf(root, actions.right(), &owner);
    if (groups.isLeft())
        return Left(groups.left());

    const auto gestures = root.constFind(QStringLiteral("gestures"));
    if (gestures == root.constEnd())
        return fail(76, QStringLiteral("'gestures' is obligatory field"));
    if (!isType(*gestures, QMetaType::QVariantList))
        return fail(73, QStringLiteral("'%1' field must be 'list'").arg(QStringLiteral("gestures")));

    // Without a parent nobody could reach the gestures made before a failure: they go with this one.
    QObject orphanage;
    const auto read = Gesture::listFromVariant(gestures->toList(), featuresProvider, actions.right(), groups.right(),
                                               allZones.right(), bindings, parent ? parent : &orphanage)
                              .flatMap(withUniqueIds);
    if (!parent && read.isRight()) {
        for (Gesture *gesture : read.right())
            gesture->setParent(nullptr);
    }
    return read;
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
    const auto found = root.constFind(QStringLiteral("version"));
    if (found == root.constEnd())
        return fail(84, QStringLiteral("`version` is obligatory field"));
    bool isNumber = false;
    const qint32 number = found->toInt(&isNumber);
    if (!isNumber)
        return fail(89, QStringLiteral("`version` type must be `int`"));
    if (number != version)
        return Left(ParsingError::VersionNotMatch{number});

    const auto actions = root.constFind(QStringLiteral("actions"));
    if (actions == root.constEnd())
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

Bindings bindingsOf(const QList<Gesture *> &gestures)
{
    Bindings bindings;
    for (const Gesture *gesture : gestures) {
        if (gesture && gesture->currentAction())
            bindings.insert(gesture->id(), gesture->currentAction()->path());
    }
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

// What toVariant() gives, without the way through variants. In order, since the object moves all that is behind what it
// inserts.
QByteArray bindingsText(const Bindings &bindings)
{
    QJsonObject actions;
    for (auto binding = bindings.cbegin(); binding != bindings.cend(); ++binding)
        actions.insert(binding.key(), *binding);
    const QJsonObject document{{QStringLiteral("version"), Configuration::ActionBindings::version},
                               {QStringLiteral("actions"), actions}};
    return QJsonDocument(document).toJson(QJsonDocument::Indented);
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
