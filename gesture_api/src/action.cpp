#include <gesture_api/action.h>

#include "actionreader.h"
#include "dump.h"
#include "qmllistproperty.h"
#include "varianttype.h"

#include <gesture_api/gesture.h>

#include <QHash>

#include <algorithm>

namespace vellix {
namespace gesture {

static Left<Error> fail(int line, const QString &message)
{
    return Left(Error({"../../../gesture_api/src/action", line}, message.toStdString()));
}

Action::Action(QObject *parent) : Action(QString(), QStringList(), QList<Feature *>(), parent) {}

Action::Action(const QString &path, const QStringList &titles, const QList<Feature *> &features, QObject *parent)
    : QObject(parent), m_path(path), m_titles(titles), m_features(features)
{
    connect(this, &Action::titlesChanged, this, [this] { Q_EMIT lastTitleChanged(lastTitle()); });
}

Action::~Action()
{
    m_dying = true;
    if (m_users.isEmpty())
        return;
    // Whoever hears of it may destroy the owner, which must not destroy this action again, and other gestures, which
    // then leave the list. Nobody enters it any more.
    setParent(nullptr);
    while (!m_users.isEmpty())
        m_users.takeLast()->forget(this);
}

QString Action::path() const
{
    return m_path;
}

QStringList Action::titles() const
{
    return m_titles;
}

QString Action::lastTitle() const
{
    return m_titles.isEmpty() ? QString() : m_titles.last();
}

QQmlListProperty<Feature> Action::features() const
{
    return kMakeReadonlyProxyQmlListProperty(this, m_features);
}

const QList<Feature *> &Action::featureList() const
{
    return m_features;
}

bool Action::supported() const
{
    if (!m_evaluated) {
        m_supported = Feature::allSupported(m_features);
        m_evaluated = true;
    }
    return m_supported;
}

static Either<Error, Action *> definition(const QVariantMap &entry, const FeaturesProvider *featuresProvider,
                                          QObject *parent)
{
    const auto title = entry.constFind(QStringLiteral("title"));
    const auto titles = entry.constFind(QStringLiteral("titles"));
    const auto features = entry.constFind(QStringLiteral("features"));
    const auto path = entry.constFind(QStringLiteral("path"));
    const auto absent = entry.constEnd();

    if (title == absent && titles == absent)
        return fail(__LINE__, QStringLiteral("one of fields 'title' or 'titles' must be set"));
    if (title != absent && titles != absent)
        return fail(__LINE__, QStringLiteral("fields 'title' or 'titles' can not be set simultaneously"));
    if (title != absent && !isType(*title, QMetaType::QString))
        return fail(__LINE__, QStringLiteral("'title' must be string. for type list<str> use 'titles'"));
    if (titles != absent && !isType(*titles, QMetaType::QVariantList))
        return fail(__LINE__, QStringLiteral("'titles' must be list<str>. for type 'str' use 'title'"));
    if (features != absent && !isType(*features, QMetaType::QVariantList))
        return fail(__LINE__, QStringLiteral("'features' must be list<str>."));

    const Either<Error, QList<Feature *>> required =
            features == absent ? Right(QList<Feature *>()) : ActionReader::features(*features, featuresProvider);
    if (required.isLeft())
        return Left(required.left());
    if (path == absent)
        return fail(__LINE__, QStringLiteral("'path' is obligatory field"));

    const QStringList labels = title != absent ? QStringList(title->toString()) : titles->toStringList();
    return Right(new Action(path->toString(), labels, required.right(), parent));
}

// `known` is any map from path to action.
template <class Map>
static Either<Error, Action *> readAction(const QVariant &v, const FeaturesProvider *featuresProvider, const Map &known,
                                          QObject *parent)
{
    if (isType(v, QMetaType::QString)) {
        const QString path = v.toString();
        Action *action = known.value(path);
        if (!action)
            return fail(__LINE__, QStringLiteral("action '%1' not defined").arg(path));
        return Right(action);
    }
    if (isType(v, QMetaType::QVariantMap))
        return definition(v.toMap(), featuresProvider, parent);
    return fail(__LINE__, QStringLiteral("'Action' must be either 'str' or 'map'"));
}

Either<Error, Action *> Action::fromVariant(const QVariant &v, const FeaturesProvider *featuresProvider,
                                            const QMap<QString, Action *> &knownActions, QObject *parent)
{
    return readAction(v, featuresProvider, knownActions, parent);
}

Either<Error, Action *> Action::fromVariant(const QVariant &v, const FeaturesProvider *featuresProvider,
                                            const QList<Action *> &actions, QObject *parent)
{
    return ActionReader::action(v, featuresProvider, ActionReader::indexOf(actions), parent);
}

Either<Error, QList<Action *>> Action::listFromVariant(const QVariant &v, const FeaturesProvider *featuresProvider,
                                                       const QList<Action *> &actions,
                                                       const QMap<QString, QList<Action *>> &actionGroups,
                                                       QObject *parent)
{
    return ActionReader::list(v, featuresProvider, ActionReader::indexOf(actions), actionGroups, parent);
}

Either<Error, QMap<QString, QList<Action *>>> Action::actionGroupsFromVariant(const QMap<QString, QVariant> &groups,
                                                                              const QList<Action *> &actions,
                                                                              const FeaturesProvider *featuresProvider,
                                                                              QObject *parent)
{
    const ActionReader::Index known = ActionReader::indexOf(actions);
    QMap<QString, QList<Action *>> table;
    for (auto group = groups.cbegin(); group != groups.cend(); ++group) {
        const auto all = ActionReader::list(*group, featuresProvider, known, {}, parent);
        if (all.isLeft())
            return Left(all.left());
        QList<Action *> &supported = table[group.key()];
        std::copy_if(all.right().cbegin(), all.right().cend(), std::back_inserter(supported),
                     [](const Action *action) { return action->supported(); });
    }
    return Right(table);
}

Either<Error, Action *> Action::firstSupportedFromVariant(const QList<QVariant> &list,
                                                          const FeaturesProvider *featuresProvider,
                                                          const QList<Action *> &actions, QObject *parent)
{
    return ActionReader::firstSupported(list, featuresProvider, ActionReader::indexOf(actions), parent);
}

QVariant Action::toVariant() const
{
    return QVariantMap{{QStringLiteral("path"), m_path}, {QStringLiteral("titles"), m_titles}};
}

QVariant Action::listToVariant(const QList<Action *> &actions)
{
    QVariantList list;
    for (const Action *action : actions) {
        if (action)
            list.append(action->toVariant());
    }
    return list;
}

void Action::dump(QDebug &dbg, int indent) const
{
    dbg << indentText(indent).constData() << "action: " << m_path << ":" << m_titles << "\n";
}

namespace ActionReader {

Index indexOf(const QList<Action *> &actions)
{
    Index index;
    index.reserve(actions.size());
    for (Action *action : actions) {
        if (action)
            index.insert(action->path(), action);
    }
    return index;
}

Either<Error, Action *> action(const QVariant &v, const FeaturesProvider *featuresProvider, const Index &known,
                               QObject *parent)
{
    return readAction(v, featuresProvider, known, parent);
}

Either<Error, QList<Action *>> list(const QVariant &v, const FeaturesProvider *featuresProvider, const Index &known,
                                    const QMap<QString, QList<Action *>> &actionGroups, QObject *parent)
{
    if (isType(v, QMetaType::QString)) {
        const QString name = v.toString();
        const auto group = actionGroups.constFind(name);
        if (group == actionGroups.constEnd())
            return fail(__LINE__, QStringLiteral("action group '%1' not defined").arg(name));
        return Right(*group);
    }
    if (isType(v, QMetaType::QVariantList)) {
        QList<Action *> actions;
        const QVariantList entries = v.toList();
        for (const QVariant &entry : entries) {
            const auto action = ActionReader::action(entry, featuresProvider, known, parent);
            if (action.isLeft())
                return Left(action.left());
            actions.append(action.right());
        }
        return Right(actions);
    }
    if (isType(v, QMetaType::QVariantMap)) {
        return action(v, featuresProvider, known, parent).map([](Action *action) { return QList<Action *>{action}; });
    }
    return fail(__LINE__, QStringLiteral("action list must be one of types: 'str', 'list', 'map'"));
}

Either<Error, Action *> firstSupported(const QList<QVariant> &list, const FeaturesProvider *featuresProvider,
                                       const Index &known, QObject *parent)
{
    for (const QVariant &alternative : list) {
        const auto action = ActionReader::action(alternative, featuresProvider, known, parent);
        if (action.isLeft() || action.right()->supported())
            return action;
    }

    QStringList alternatives;
    for (const QVariant &alternative : list)
        alternatives.append(alternative.toString());
    return fail(__LINE__,
                QStringLiteral("no one action is supported of list: [ ") + alternatives.join(QStringLiteral(", "))
                        + QStringLiteral(" ]"));
}

namespace {
class NoFeatures : public FeaturesProvider
{
public:
    QList<Feature *> allFeatures() const override { return {}; }
};
}

Either<Error, QList<Feature *>> features(const QVariant &names, const FeaturesProvider *featuresProvider)
{
    const QStringList list = names.toStringList();
    const QSet<QString> set(list.cbegin(), list.cend());
    return featuresProvider ? featuresProvider->featuresByNames(set) : NoFeatures().featuresByNames(set);
}

}

}
}
