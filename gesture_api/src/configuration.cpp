#include <gesture_api/configuration.h>

#include "fields.h"
#include "varianttype.h"

#include <vellix/platform/vxcomponents.h>

#include <algorithm>

namespace vellix {
namespace gesture {

// Programs that read logs match these line numbers: they are fixed, however this file changes.
static Left<Error> fail(int line, const QString &message)
{
    return Left(Error({"../../../gesture_api/src/configuration", line}, message.toStdString()));
}

using ZoneMap = QMap<QString, QRectF>;
using ActionGroups = QMap<QString, QList<Action *>>;

static Either<Error, ZoneMap> zonesOf(const QVariantMap &root, const ZoneMap &predefined)
{
    const QVariant *const section = field(root, QStringLiteral("zones"));
    if (!section)
        return Right(predefined);
    if (!isType(*section, QMetaType::QVariantMap))
        return fail(37, QStringLiteral("'%1' field must be 'map'").arg(QStringLiteral("zones")));
    return Gesture::zoneMapFromVariant(section->toMap(), predefined).map([&predefined](ZoneMap zones) {
        // A file cannot redefine an existing zone.
        for (auto zone = predefined.cbegin(); zone != predefined.cend(); ++zone)
            zones.insert(zone.key(), *zone);
        return zones;
    });
}

static Either<Error, QList<Action *>> actionsOf(const QVariantMap &root, const FeaturesProvider *featuresProvider,
                                                QObject *owner)
{
    const QVariant *const section = field(root, QStringLiteral("actions"));
    if (!section)
        return Right(QList<Action *>());
    if (!isType(*section, QMetaType::QVariantList))
        return fail(46, QStringLiteral("'%1' field must be 'list'").arg(QStringLiteral("actions")));
    return Action::listFromVariant(*section, featuresProvider, {}, {}, owner);
}

static Either<Error, ActionGroups> actionGroupsOf(const QVariantMap &root, const QList<Action *> &actions,
                                                  QObject *owner)
{
    const QVariant *const section = field(root, QStringLiteral("actionGroups"));
    if (!section)
        return Right(ActionGroups());
    if (!isType(*section, QMetaType::QVariantMap))
        return fail(55, QStringLiteral("'%1' field must be 'map'").arg(QStringLiteral("actionGroups")));
    return Action::actionGroupsFromVariant(section->toMap(), actions, nullptr, owner);
}

static Either<Error, QVariantList> entriesOf(const QVariantMap &root)
{
    const QVariant *const section = field(root, QStringLiteral("gestures"));
    if (!section)
        return fail(76, QStringLiteral("'gestures' is obligatory field"));
    if (!isType(*section, QMetaType::QVariantList))
        return fail(73, QStringLiteral("'%1' field must be 'list'").arg(QStringLiteral("gestures")));
    return Right(section->toList());
}

static Either<Error, QList<Gesture *>> withUniqueIds(const QList<Gesture *> &gestures)
{
    // Only neighbours are compared. The error names the first id after the kept part.
    QList<Gesture *> kept = gestures;
    const auto end = std::unique(kept.begin(), kept.end(),
                                 [](const Gesture *a, const Gesture *b) { return a->id() == b->id(); });
    if (end != kept.end())
        return fail(69,
                    QStringLiteral("gesture id must be unique but dublicate found: `") + (*end)->id()
                            + QLatin1Char('`'));
    return Right(gestures);
}

static Either<Error, QList<Gesture *>> gesturesOf(const QVariantMap &root, const FeaturesProvider *featuresProvider,
                                                  const ZoneMap &predefined, const QMap<QString, QString> &bindings,
                                                  QObject *parent)
{
    const auto zones = zonesOf(root, predefined);
    if (zones.isLeft())
        return Left(zones.left());

    QObject owner; // of the actions that no gesture takes over
    const auto actions = actionsOf(root, featuresProvider, &owner);
    if (actions.isLeft())
        return Left(actions.left());

    const auto groups = actionGroupsOf(root, actions.right(), &owner);
    if (groups.isLeft())
        return Left(groups.left());

    return entriesOf(root)
            .flatMap([&](const QVariantList &entries) {
                return Gesture::listFromVariant(entries, featuresProvider, actions.right(), groups.right(),
                                                zones.right(), bindings, parent);
            })
            .flatMap(withUniqueIds);
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
    if (parent)
        return gesturesOf(document.toMap(), featuresProvider, zones, bindings, parent);

    // Without a parent, the gestures made before a failure would leak: this object destroys them.
    QObject orphanage;
    return gesturesOf(document.toMap(), featuresProvider, zones, bindings, &orphanage)
            .map([](const QList<Gesture *> &gestures) {
                for (Gesture *gesture : gestures)
                    gesture->setParent(nullptr);
                return gestures;
            });
}

}
}
