#pragma once

#include <gesture_api/action.h>

#include <QHash>
#include <QVector>

namespace vellix {
namespace gesture {

/// The actions that a load creates, until gestures own them. Destroys those without a parent. They are no children of
/// an object: it would search all of them for each one that leaves.
class NewActions
{
public:
    NewActions() = default;
    NewActions(const NewActions &) = delete;
    NewActions &operator=(const NewActions &) = delete;
    ~NewActions();

    void add(Action *action) { m_actions.append(action); }

private:
    QVector<Action *> m_actions;
};

/// Reads the actions of a file. One reader serves a whole load: with its index a reference costs the same however many
/// actions and gestures there are.
class ActionReader
{
public:
    using Index = QHash<QString, Action *>;
    using Groups = QMap<QString, QList<Action *>>;

    /// Path to action; the later of two actions with one path.
    static Index indexOf(const QList<Action *> &actions);

    /// Defined actions become children of `parent`. Without a provider every feature is unknown.
    ActionReader(const Index &known, const Groups &groups, const FeaturesProvider *featuresProvider, QObject *parent);
    /// Defined actions have no parent, and are added to `created`.
    ActionReader(const Index &known, const Groups &groups, const FeaturesProvider *featuresProvider,
                 NewActions *created);

    Either<Error, Action *> action(const QVariant &v) const;
    Either<Error, QList<Action *>> list(const QVariant &v) const;
    /// The supported actions of each group.
    Either<Error, Groups> groups(const QVariantMap &section) const;
    Either<Error, Action *> firstSupported(const QVariantList &alternatives) const;
    Either<Error, QList<Feature *>> features(const QVariant &names) const;

private:
    Either<Error, Action *> definition(const QVariantMap &entry) const;
    Either<Error, Action *> knownAction(const QString &path) const;
    Either<Error, QList<Action *>> group(const QString &name) const;
    Either<Error, QList<Action *>> each(const QVariantList &entries) const;

    const Index m_known;
    const Groups m_groups;
    const FeaturesProvider *const m_featuresProvider;
    QObject *const m_parent = nullptr;
    NewActions *const m_created = nullptr;
};

}
}
