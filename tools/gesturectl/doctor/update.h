#pragma once

#include <gesturectl/application.h>

#include <QString>
#include <QStringList>

// The effect of an update of the default configuration on a user's bindings.

namespace gesturectl {

enum class State { Kept, Stale, Unknown, Shadowed };

/// The effect of the update on one binding.
struct Outcome
{
    State state;
    QString gesture;
    QString action;
    QStringList notes;
};

/// Two default configurations without bindings, and the new one with those that it accepts.
struct Update
{
    Gestures before;
    Gestures after;
    Gestures bound;
    Bindings refusals; // gesture id to the library's reason
};

/// The gestures become children of `parent`.
Result<Update> updateOf(const vellix::gesture::ApplicationPaths &before, const vellix::gesture::ApplicationPaths &after,
                        const Bindings &bindings, const vellix::gesture::FeaturesProvider *features, QObject *parent);

/// For the binding of the gesture `id` to the action `choice`.
Outcome outcomeOf(const QString &id, const QString &choice, const Update &update);

/// Whether a repair drops the binding.
bool isDropped(const Outcome &outcome);

}
