#include "actionreader.h"

#include "fields.h"
#include "varianttype.h"

#include <algorithm>

namespace vellix {
namespace gesture {

static Left<Error> fail(int line, const QString &message)
{
    return Left(Error({"../../../gesture_api/src/action", line}, message.toStdString()));
}

NewActions::~NewActions()
{
    for (Action *action : qAsConst(m_actions)) {
        if (!action->parent())
            delete action;
    }
}

ActionReader::Index ActionReader::indexOf(const QList<Action *> &actions)
{
    Index index;
    index.reserve(actions.size());
    for (Action *action : actions) {
        if (action)
            index.insert(action->path(), action);
    }
    return index;
}

ActionReader::ActionReader(const Index &known, const Groups &groups, const FeaturesProvider *featuresProvider,
                           QObject *parent)
    : m_known(known), m_groups(groups), m_featuresProvider(featuresProvider), m_parent(parent)
{
}

ActionReader::ActionReader(const Index &known, const Groups &groups, const FeaturesProvider *featuresProvider,
                           NewActions *created)
    : m_known(known), m_groups(groups), m_featuresProvider(featuresProvider), m_created(created)
{
}

Either<Error, Action *> ActionReader::action(const QVariant &v) const
{
    if (isType(v, QMetaType::QString))
        return knownAction(held<QString>(v));
    if (isType(v, QMetaType::QVariantMap))
        return definition(held<QVariantMap>(v));
    return fail(__LINE__, QStringLiteral("'Action' must be either 'str' or 'map'"));
}

Either<Error, Action *> ActionReader::knownAction(const QString &path) const
{
    Action *action = m_known.value(path);
    if (!action)
        return fail(__LINE__, QStringLiteral("action '%1' not defined").arg(path));
    return Right(action);
}

namespace {
struct Definition
{
    const QVariant *path = nullptr;
    const QVariant *title = nullptr;
    const QVariant *titles = nullptr;
    const QVariant *features = nullptr;
};

constexpr Field<Definition> definitionFields[] = {{u"path", &Definition::path},
                                                  {u"title", &Definition::title},
                                                  {u"titles", &Definition::titles},
                                                  {u"features", &Definition::features}};
}

static Either<Error, QStringList> titlesOf(const QVariant *title, const QVariant *titles)
{
    if (!title && !titles)
        return fail(__LINE__, QStringLiteral("one of fields 'title' or 'titles' must be set"));
    if (title && titles)
        return fail(__LINE__, QStringLiteral("fields 'title' or 'titles' can not be set simultaneously"));
    if (title && !isType(*title, QMetaType::QString))
        return fail(__LINE__, QStringLiteral("'title' must be string. for type list<str> use 'titles'"));
    if (titles && !isType(*titles, QMetaType::QVariantList))
        return fail(__LINE__, QStringLiteral("'titles' must be list<str>. for type 'str' use 'title'"));
    return Right(title ? QStringList(title->toString()) : textsOf(held<QVariantList>(*titles)));
}

// The order of the checks is behaviour: only the first fault is reported.
Either<Error, Action *> ActionReader::definition(const QVariantMap &entry) const
{
    const auto [path, title, manyTitles, names] = membersOf(entry, definitionFields);
    const auto titles = titlesOf(title, manyTitles);
    if (titles.isLeft())
        return Left(titles.left());

    if (names && !isType(*names, QMetaType::QVariantList))
        return fail(__LINE__, QStringLiteral("'features' must be list<str>."));
    const auto required = names ? features(*names) : Right(QList<Feature *>());
    if (required.isLeft())
        return Left(required.left());

    if (!path)
        return fail(__LINE__, QStringLiteral("'path' is obligatory field"));
    auto *action = new Action(path->toString(), titles.right(), required.right(), m_parent);
    if (m_created)
        m_created->add(action);
    return Right(action);
}

Either<Error, QList<Action *>> ActionReader::list(const QVariant &v) const
{
    if (isType(v, QMetaType::QString))
        return group(held<QString>(v));
    if (isType(v, QMetaType::QVariantList))
        return each(held<QVariantList>(v));
    if (isType(v, QMetaType::QVariantMap))
        return action(v).map([](Action *action) { return QList<Action *>{action}; });
    return fail(__LINE__, QStringLiteral("action list must be one of types: 'str', 'list', 'map'"));
}

Either<Error, QList<Action *>> ActionReader::group(const QString &name) const
{
    const auto group = m_groups.constFind(name);
    if (group == m_groups.constEnd())
        return fail(__LINE__, QStringLiteral("action group '%1' not defined").arg(name));
    return Right(*group);
}

Either<Error, QList<Action *>> ActionReader::each(const QVariantList &entries) const
{
    QList<Action *> actions;
    actions.reserve(entries.size());
    for (const QVariant &entry : entries) {
        const auto read = action(entry);
        if (read.isLeft())
            return Left(read.left());
        actions.append(read.right());
    }
    return Right(actions);
}

static QList<Action *> supportedOf(const QList<Action *> &actions)
{
    QList<Action *> supported;
    supported.reserve(actions.size());
    std::copy_if(actions.cbegin(), actions.cend(), std::back_inserter(supported),
                 [](const Action *action) { return action->supported(); });
    return supported;
}

Either<Error, ActionReader::Groups> ActionReader::groups(const QVariantMap &section) const
{
    Groups groups;
    for (auto group = section.cbegin(); group != section.cend(); ++group) {
        const auto all = list(*group);
        if (all.isLeft())
            return Left(all.left());
        groups.insert(groups.cend(), group.key(), supportedOf(all.right()));
    }
    return Right(groups);
}

Either<Error, Action *> ActionReader::firstSupported(const QVariantList &alternatives) const
{
    QStringList names;
    for (const QVariant &alternative : alternatives) {
        const auto read = action(alternative);
        if (read.isLeft() || read.right()->supported())
            return read;
        names.append(alternative.toString());
    }
    return fail(__LINE__,
                QStringLiteral("no one action is supported of list: [ ") + names.join(QStringLiteral(", "))
                        + QStringLiteral(" ]"));
}

namespace {
class NoFeatures : public FeaturesProvider
{
public:
    QList<Feature *> allFeatures() const override { return {}; }
};
}

Either<Error, QList<Feature *>> ActionReader::features(const QVariant &names) const
{
    const QStringList list = names.toStringList();
    const QSet<QString> set(list.cbegin(), list.cend());
    return m_featuresProvider ? m_featuresProvider->featuresByNames(set) : NoFeatures().featuresByNames(set);
}

Either<Error, Action *> Action::fromVariant(const QVariant &v, const FeaturesProvider *featuresProvider,
                                            const QMap<QString, Action *> &knownActions, QObject *parent)
{
    const QString path = v.toString(); // the only action that `v` can name
    return ActionReader({{path, knownActions.value(path)}}, {}, featuresProvider, parent).action(v);
}

Either<Error, Action *> Action::fromVariant(const QVariant &v, const FeaturesProvider *featuresProvider,
                                            const QList<Action *> &actions, QObject *parent)
{
    return ActionReader(ActionReader::indexOf(actions), {}, featuresProvider, parent).action(v);
}

Either<Error, QList<Action *>> Action::listFromVariant(const QVariant &v, const FeaturesProvider *featuresProvider,
                                                       const QList<Action *> &actions,
                                                       const QMap<QString, QList<Action *>> &actionGroups,
                                                       QObject *parent)
{
    return ActionReader(ActionReader::indexOf(actions), actionGroups, featuresProvider, parent).list(v);
}

Either<Error, QMap<QString, QList<Action *>>> Action::actionGroupsFromVariant(const QMap<QString, QVariant> &groups,
                                                                              const QList<Action *> &actions,
                                                                              const FeaturesProvider *featuresProvider,
                                                                              QObject *parent)
{
    return ActionReader(ActionReader::indexOf(actions), {}, featuresProvider, parent).groups(groups);
}

Either<Error, Action *> Action::firstSupportedFromVariant(const QList<QVariant> &list,
                                                          const FeaturesProvider *featuresProvider,
                                                          const QList<Action *> &actions, QObject *parent)
{
    return ActionReader(ActionReader::indexOf(actions), {}, featuresProvider, parent).firstSupported(list);
}

}
}
