#include "announcement.h"
#include "offer.h"

#include <QSet>

#include <algorithm>
#include <memory>
#include <utility>
#include <vector>

// Gestures share actions. Each action knows its existing users; the last gesture is its parent. Only this file connects
// actions to gestures.

namespace vellix {
namespace gesture {

// Fewer links than this need less memory than an offer.
static constexpr int shortList = 4;

Offer *Offer::of(const QList<Action *> &actions)
{
    const auto first = std::find_if(actions.cbegin(), actions.cend(), [](const Action *action) { return action; });
    if (actions.size() < shortList || first == actions.cend() || !(*first)->m_users)
        return nullptr;

    const Action::Users &users = *(*first)->m_users;
    Gesture *const other = users.gestures.isEmpty() ? nullptr : users.gestures.last();
    const bool isOthers = other && other->m_availableActions == actions;
    if (isOthers && other->m_offer)
        return other->m_offer;
    // Usually an action is in few lists. Of many, an older one can as well be a list of this gesture's own.
    const auto few = std::min<std::ptrdiff_t>(users.offers.end() - users.offers.begin(), 16);
    const auto known = std::find_if(users.offers.rbegin(), users.offers.rbegin() + few,
                                    [&actions](const Offer *offer) { return offer->m_actions == actions; });
    if (known != users.offers.rbegin() + few)
        return *known;
    const auto isDying = [](const Action *action) { return action && action->m_dying; };
    if (!isOthers || std::any_of(actions.cbegin(), actions.cend(), isDying))
        return nullptr;
    return new Offer(actions, other);
}

Offer::Offer(const QList<Action *> &actions, Gesture *first) : m_actions(actions)
{
    for (Action *action : actions) {
        if (!action)
            continue;
        std::vector<Offer *> &offers = action->m_users->offers;
        if (offers.empty() || offers.back() != this)
            offers.push_back(this);
        if (action != first->m_defaultAction && action != first->m_currentAction)
            first->leave(action);
    }
    first->m_offer = this;
    first->m_availableActions = m_actions;
    add(first);
}

Offer::~Offer()
{
    for (Action *action : qAsConst(m_actions)) {
        if (!action)
            continue;
        std::vector<Offer *> &offers = action->m_users->offers;
        offers.erase(std::remove(offers.begin(), offers.end(), this), offers.end());
    }
}

void Offer::add(Gesture *gesture)
{
    if (m_users.isEmpty())
        m_users.reserve(5);
    m_users.append(gesture);
}

void Offer::remove(Gesture *gesture)
{
    m_users.erase(gesture->placeAmong(m_users));
    if (m_users.isEmpty())
        delete this;
}

void Offer::removeLeaving()
{
    const auto isLeaving = [](const Gesture *user) { return user->m_leaving; };
    m_users.erase(std::remove_if(m_users.begin(), m_users.end(), isLeaving), m_users.end());
    if (m_users.isEmpty())
        delete this;
}

void Offer::forget(Action *action)
{
    m_actions.removeAll(action);
    for (Gesture *user : qAsConst(m_users))
        user->m_availableActions = m_actions;
}

Action::~Action()
{
    const std::unique_ptr<Users> users(m_users);
    m_dying = true;
    if (!m_users || m_users->isEmpty())
        return;
    // Listeners may destroy the owner, which must not destroy this action again, and other gestures, which then leave
    // the list. No gesture joins it any more.
    setParent(nullptr);
    for (Offer *offer : m_users->offers)
        offer->forget(this);
    m_users->offers.clear();
    while (!m_users->gestures.isEmpty())
        m_users->gestures.takeLast()->forget(this);
}

// Null if no gesture uses the action.
Gesture *Action::lastUser() const
{
    if (!m_users)
        return nullptr;
    Gesture *last = m_users->gestures.isEmpty() ? nullptr : m_users->gestures.last();
    for (const Offer *offer : m_users->offers) {
        Gesture *const user = offer->users().last();
        if (!last || last->m_serial < user->m_serial)
            last = user;
    }
    return last;
}

Gesture::~Gesture()
{
    leaveAll();
    // An action that another gesture still uses becomes a child of the latest one.
    const QList<Action *> owned = findChildren<Action *>(QString(), Qt::FindDirectChildrenOnly);
    for (Action *action : owned) {
        if (Gesture *heir = action->lastUser())
            action->setParent(heir);
    }
    if (m_actionTree)
        m_actionTree->deleteLater();
}

void Gesture::joinAll()
{
    m_offer = Offer::of(m_availableActions);
    if (m_offer) {
        m_offer->add(this);
        m_availableActions = m_offer->actions(); // to share the memory, too
    } else {
        const QList<Action *> actions = m_availableActions; // an action that is being destroyed leaves the list
        for (Action *action : actions)
            join(action);
    }
    join(m_defaultAction);
    if (m_currentAction != m_defaultAction)
        join(m_currentAction);
}

void Gesture::join(Action *action)
{
    if (!action)
        return;
    if (action->m_dying) {
        forget(action); // this gesture has no listeners yet
        return;
    }
    if (!action->m_users)
        action->m_users = new Action::Users;
    QList<Gesture *> &users = action->m_users->gestures;
    if (users.isEmpty())
        users.reserve(3); // exact, and without the computation of a growth
    const auto place = placeAmong(users);
    if (place == users.end())
        users.append(this);
    else if (*place != this)
        users.insert(place, this);
}

// The place of the gesture among these, present or not: they are in the order of their creation.
QList<Gesture *>::iterator Gesture::placeAmong(QList<Gesture *> &users) const
{
    // Gestures usually join at the end, and leave at either end.
    if (users.isEmpty() || users.last()->m_serial < m_serial)
        return users.end();
    if (users.first()->m_serial >= m_serial)
        return users.begin();
    return std::lower_bound(users.begin(), users.end(), m_serial,
                            [](const Gesture *user, quintptr serial) { return user->m_serial < serial; });
}

// For the last gestures created, in the order of their creation. Each action moves to the last of its users at once,
// not from one to the next.
void Gesture::takeActions(const QList<Gesture *> &gestures)
{
    for (auto gesture = gestures.crbegin(); gesture != gestures.crend(); ++gesture) {
        if (*gesture)
            (*gesture)->takeActions();
    }
}

void Gesture::takeActions()
{
    const auto take = [this](Action *action) {
        const auto *owner = action ? qobject_cast<const Gesture *>(action->parent()) : nullptr;
        if (action && (!owner || owner->m_serial < m_serial))
            action->setParent(this);
    };
    if (!m_offer || m_offer->users().last() == this)
        std::for_each(m_availableActions.cbegin(), m_availableActions.cend(), take);
    take(m_defaultAction);
    take(m_currentAction);
}

void Gesture::leaveAll()
{
    if (m_offer) {
        std::exchange(m_offer, nullptr)->remove(this);
    } else {
        for (Action *action : qAsConst(m_availableActions))
            leave(action);
    }
    leave(m_defaultAction);
    leave(m_currentAction);
}

void Gesture::leave(Action *action)
{
    if (!action || !action->m_users)
        return;
    QList<Gesture *> &users = action->m_users->gestures;
    const auto place = placeAmong(users);
    if (place != users.end() && *place == this)
        users.erase(place);
}

// For gestures that are about to be destroyed: walks through each action once instead of once for each gesture.
void Gesture::leaveTogether(const QList<Gesture *> &gestures)
{
    QSet<Action *> actions;
    QSet<Offer *> offers;
    for (Gesture *gesture : gestures) {
        gesture->m_leaving = true;
        if (gesture->m_offer) {
            offers.insert(std::exchange(gesture->m_offer, nullptr));
        } else {
            for (Action *action : qAsConst(gesture->m_availableActions))
                actions.insert(action);
        }
        actions.insert(std::exchange(gesture->m_defaultAction, nullptr));
        actions.insert(std::exchange(gesture->m_currentAction, nullptr));
        gesture->m_availableActions.clear();
    }
    for (Offer *offer : qAsConst(offers))
        offer->removeLeaving();
    actions.remove(nullptr);
    for (Action *action : qAsConst(actions)) {
        QList<Gesture *> &users = action->m_users->gestures;
        users.erase(std::remove_if(users.begin(), users.end(), [](const Gesture *user) { return user->m_leaving; }),
                    users.end());
    }
}

// Whether the action knows this gesture itself, not an offer of it.
bool Gesture::uses(Action *action) const
{
    return action == m_defaultAction || action == m_currentAction || (!m_offer && m_availableActions.contains(action));
}

void Gesture::forget(Action *action)
{
    if (!m_offer)
        m_availableActions.removeAll(action);
    if (m_defaultAction == action)
        m_defaultAction = nullptr;
    if (m_currentAction == action) {
        m_currentAction = nullptr;
        m_chosen = false;
        announce(this, &Gesture::currentActionChanged, nullptr);
    }
}

}
}
