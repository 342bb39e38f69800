#pragma once

#include <gesture_api/gesture.h>

#include <vector>

namespace vellix {
namespace gesture {

/// A list of available actions that several gestures share, such as a group, and these gestures. An action knows the
/// offer instead of each gesture: otherwise a thousand gestures with a group of a thousand actions would need a million
/// links. Gestures with equal lists share one: those that name one group, and clones, do.
class Offer
{
public:
    /// The offer of this list for one more gesture, or null if no other gesture has an equal one. The second gesture of
    /// a list creates the offer.
    static Offer *of(const QList<Action *> &actions);

    /// Adds a gesture that was created after all others.
    void add(Gesture *gesture);
    /// The last gesture destroys the offer.
    void remove(Gesture *gesture);
    void removeLeaving();
    /// For an action that is being destroyed.
    void forget(Action *action);

    const QList<Action *> &actions() const { return m_actions; }
    /// In the order of their creation.
    const QList<Gesture *> &users() const { return m_users; }

private:
    Offer(const QList<Action *> &actions, Gesture *first);
    ~Offer();

    QList<Action *> m_actions;
    QList<Gesture *> m_users;
};

/// The existing gestures that use an action. Those of an offer are not in the list, unless the action is also their
/// default or current one.
struct Action::Users
{
    bool isEmpty() const { return gestures.isEmpty() && offers.empty(); }

    QList<Gesture *> gestures;   // in the order of their creation; they often leave at the front
    std::vector<Offer *> offers; // each has at least one gesture
};

}
}
