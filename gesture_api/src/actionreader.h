#pragma once

#include <gesture_api/action.h>

#include <QHash>

// The readers of actions on top of one index of the known actions, made once for a whole load: a
// reference then costs the same however many actions and gestures there are.

namespace vellix {
namespace gesture {
namespace ActionReader {

using Index = QHash<QString, Action *>;

/// Path to action; of two actions with one path the later.
Index indexOf(const QList<Action *> &actions);

Either<Error, Action *> action(const QVariant &v, const FeaturesProvider *featuresProvider, const Index &known,
                               QObject *parent);
Either<Error, QList<Action *>> list(const QVariant &v, const FeaturesProvider *featuresProvider, const Index &known,
                                    const QMap<QString, QList<Action *>> &actionGroups, QObject *parent);
Either<Error, Action *> firstSupported(const QList<QVariant> &list, const FeaturesProvider *featuresProvider,
                                       const Index &known, QObject *parent);

/// The features of these names. Without a provider none is known.
Either<Error, QList<Feature *>> features(const QVariant &names, const FeaturesProvider *featuresProvider);

}
}
}
