#include <gesture_api/action.h>
#include <gesture_api/gesture.h>

#include "announcement.h"

#include <QSet>

#include <algorithm>
#include <utility>

// Gestures share actions. Each action holds its living users in the order of their creation; the last gesture is its
// parent. Only this file connects actions to gestures.

namespace vellix {
namespace gesture {

Action::~Action()
{
    m_dying = true;
    if (m_users.isEmpty())
        return;
    // Listeners may destroy the owner, which must not destroy this action again, and other gestures, which then leave
    // the list. No gesture joins it any more.
    setParent(nullptr);
    while (!m_users.isEmpty())
        m_users.takeLast()->forget(this);
}

Gesture::~Gesture()
{
    for (Action *action : qAsConst(m_availableActions))
        leave(action);
    leave(m_defaultAction);
    leave(m_currentAction);
    // An action that another gesture still uses becomes a child of the latest one.
    const QList<Action *> owned = findChildren<Action *>(QString(), Qt::FindDirectChildrenOnly);
    for (Action *action : owned) {
        if (!action->m_users.isEmpty())
            action->setParent(action->m_users.last());
    }
    if (m_actionTree && *m_actionTree)
        (*m_actionTree)->deleteLater();
}

void Gesture::join(Action *action)
{
    if (!action)
        return;
    if (action->m_dying) {
        forget(action); // this gesture has no listeners yet
        return;
    }
    QList<Gesture *> &users = action->m_users;
    const auto place = placeAmong(users);
    if (place == users.end() || *place != this)
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

void Gesture::takeActions()
{
    const auto take = [this](Action *action) {
        if (action && action->m_users.last() == this)
            action->setParent(this);
    };
    std::for_each(m_availableActions.cbegin(), m_availableActions.cend(), take);
    take(m_defaultAction);
    take(m_currentAction);
}

void Gesture::leave(Action *action)
{
    if (!action)
        return;
    QList<Gesture *> &users = action->m_users;
    const auto place = placeAmong(users);
    if (place != users.end() && *place == this)
        users.erase(place);
}

// For gestures that are about to be destroyed: walks through each action once instead of once for each gesture.
void Gesture::leaveTogether(const QList<Gesture *> &gestures)
{
    QSet<Action *> actions;
    for (Gesture *gesture : gestures) {
        gesture->m_leaving = true;
        for (Action *action : qAsConst(gesture->m_availableActions))
            actions.insert(action);
        gesture->m_availableActions.clear();
        actions.insert(std::exchange(gesture->m_defaultAction, nullptr));
        actions.insert(std::exchange(gesture->m_currentAction, nullptr));
    }
    actions.remove(nullptr);
    for (Action *action : qAsConst(actions)) {
        QList<Gesture *> &users = action->m_users;
        users.erase(std::remove_if(users.begin(), users.end(), [](const Gesture *user) { return user->m_leaving; }),
                    users.end());
    }
}

bool Gesture::uses(Action *action) const
{
    return action == m_defaultAction || action == m_currentAction || m_availableActions.contains(action);
}

void Gesture::forget(Action *action)
{
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
