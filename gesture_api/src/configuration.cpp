#include <gesture_api/configuration.h>

#include "fields.h"
#include "gesturereader.h"
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

static Either<Error, ZoneMap> zonesOf(QVariantMap *root, const ZoneMap &predefined)
{
    const auto section = takeField(root, QStringLiteral("zones"));
    if (!section)
        return Right(predefined);
    if (!isType(*section, QMetaType::QVariantMap))
        return fail(37, QStringLiteral("'%1' field must be 'map'").arg(QStringLiteral("zones")));
    return Gesture::zoneMapFromVariant(held<QVariantMap>(*section), predefined).map([&predefined](ZoneMap zones) {
        // A file cannot redefine an existing zone.
        for (auto zone = predefined.cbegin(); zone != predefined.cend(); ++zone)
            zones.insert(zone.key(), *zone);
        return zones;
    });
}

static Either<Error, QList<Action *>> actionsOf(QVariantMap *root, const FeaturesProvider *featuresProvider,
                                                NewActions *created)
{
    const auto section = takeField(root, QStringLiteral("actions"));
    if (!section)
        return Right(QList<Action *>());
    if (!isType(*section, QMetaType::QVariantList))
        return fail(46, QStringLiteral("'%1' field must be 'list'").arg(QStringLiteral("actions")));
    return ActionReader({}, {}, featuresProvider, created).list(*section);
}

static Either<Error, ActionReader::Groups> groupsOf(QVariantMap *root, const ActionReader::Index &actions,
                                                    NewActions *created)
{
    const auto section = takeField(root, QStringLiteral("actionGroups"));
    if (!section)
        return Right(ActionReader::Groups());
    if (!isType(*section, QMetaType::QVariantMap))
        return fail(55, QStringLiteral("'%1' field must be 'map'").arg(QStringLiteral("actionGroups")));
    return ActionReader(actions, {}, nullptr, created).groups(held<QVariantMap>(*section));
}

static Either<Error, QVariantList> entriesOf(QVariantMap *root)
{
    const auto section = takeField(root, QStringLiteral("gestures"));
    if (!section)
        return fail(76, QStringLiteral("'gestures' is obligatory field"));
    if (!isType(*section, QMetaType::QVariantList))
        return fail(73, QStringLiteral("'%1' field must be 'list'").arg(QStringLiteral("gestures")));
    return Right(held<QVariantList>(*section));
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

static Either<Error, QList<Gesture *>> gesturesOf(QVariantMap *root, const FeaturesProvider *featuresProvider,
                                                  const ZoneMap &predefined, const QMap<QString, QString> &bindings,
                                                  QObject *parent)
{
    const auto zones = zonesOf(root, predefined);
    if (zones.isLeft())
        return Left(zones.left());

    NewActions created;
    const auto actions = actionsOf(root, featuresProvider, &created);
    if (actions.isLeft())
        return Left(actions.left());

    const ActionReader::Index index = ActionReader::indexOf(actions.right());
    const auto groups = groupsOf(root, index, &created);
    if (groups.isLeft())
        return Left(groups.left());

    const ActionReader reader(index, groups.right(), featuresProvider, &created);
    return entriesOf(root)
            .flatMap([&](const QVariantList &entries) {
                return readGestures(entries, reader, zones.right(), bindings, parent);
            })
            .flatMap(withUniqueIds);
}

// The document is freed section by section as it is read, so that it and its gestures never exist as a whole together.
static Either<Error, QList<Gesture *>> read(QVariant document, const FeaturesProvider *featuresProvider,
                                            const ZoneMap &zones, const QMap<QString, QString> &bindings,
                                            QObject *parent)
{
    if (!document.isValid())
        return fail(19, QStringLiteral("invalid variant"));
    if (document.isNull())
        return fail(22, QStringLiteral("null variant"));
    QVariantMap root = document.toMap();
    document.clear();
    if (parent)
        return gesturesOf(&root, featuresProvider, zones, bindings, parent);

    // Without a parent, the gestures made before a failure would leak: this object destroys them.
    QObject orphanage;
    return gesturesOf(&root, featuresProvider, zones, bindings, &orphanage).map([](const QList<Gesture *> &gestures) {
        for (Gesture *gesture : gestures)
            gesture->setParent(nullptr);
        return gestures;
    });
}

Either<Error, QList<Gesture *>> Configuration::loadJson(const QString &fileName,
                                                        const FeaturesProvider *featuresProvider,
                                                        const QMap<QString, QRectF> &zones,
                                                        const QMap<QString, QString> &bindings, QObject *parent)
{
    auto document = components::VariantLoader::loadJson(fileName);
    if (document.isLeft())
        return Left(document.left());
    return read(document.take(), featuresProvider, zones, bindings, parent);
}

Either<Error, QList<Gesture *>> Configuration::fromVariant(const QVariant &document,
                                                           const FeaturesProvider *featuresProvider,
                                                           const QMap<QString, QRectF> &zones,
                                                           const QMap<QString, QString> &bindings, QObject *parent)
{
    return read(document, featuresProvider, zones, bindings, parent);
}

}
}
