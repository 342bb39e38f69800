#pragma once

#include <gesture_api/action.h>

#include <QHash>

namespace vellix {
namespace gesture {

/// Reads the actions of a file. One reader serves a whole load: with its index a reference costs the same however many
/// actions and gestures there are.
class ActionReader
{
public:
    using Index = QHash<QString, Action *>;
    using Groups = QMap<QString, QList<Action *>>;

    /// Path to action; the later of two actions with one path.
    static Index indexOf(const QList<Action *> &actions);

    /// Inline actions become children of `parent`. Without a provider every feature is unknown.
    ActionReader(const Index &known, const Groups &groups, const FeaturesProvider *featuresProvider, QObject *parent);

    Either<Error, Action *> action(const QVariant &v) const;
    Either<Error, QList<Action *>> list(const QVariant &v) const;
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
    QObject *const m_parent;
};

}
}
