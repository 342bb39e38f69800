#include "actionmenumodel.h"

#include "words.h"

#include <algorithm>
#include <iterator>

namespace vellix {
namespace gesture {

// Whether there is an action that the device supports, in any menu below. A configuration can nest menus deeper than
// the stack is.
static bool isOffered(const ActionProxyNode &node)
{
    QList<const ActionProxyNode *> remaining{&node};
    while (!remaining.isEmpty()) {
        const ActionProxyNode *next = remaining.takeLast();
        const QList<ActionProxyNode *> &children = next->childNodeList();
        if (children.isEmpty() && next->action() && next->action()->supported())
            return true;
        std::copy(children.cbegin(), children.cend(), std::back_inserter(remaining));
    }
    return false;
}

static QString titleOf(const ActionProxyNode &node)
{
    return node.title().isEmpty() ? node.pathSegment() : node.title();
}

void ActionMenuModel::setGesture(Gesture *gesture)
{
    if (gesture == m_gesture && gesture)
        return;
    m_gesture = gesture;
    m_open.clear();
    if (ActionProxyNode *root = gesture ? gesture->actionTree() : nullptr) {
        m_open.append(root);
        openCurrent();
    }
    fill();
    Q_EMIT gestureChanged();
}

QStringList ActionMenuModel::currentSegments() const
{
    const Action *current = m_gesture ? m_gesture->currentAction() : nullptr;
    return current ? current->path().split(QLatin1Char('/')) : QStringList();
}

// Opens the menus on the way to the current action, as far as they offer anything.
void ActionMenuModel::openCurrent()
{
    const QStringList segments = currentSegments();
    for (const QString &segment : segments) {
        ActionProxyNode *next = m_open.last()->findChildNode(segment);
        if (!next || next->childNodeList().isEmpty())
            break;
        m_open.append(next);
    }
    while (isNested() && !isOffered(*m_open.last()))
        m_open.removeLast();
}

// The segments from the root's first menu to the open one; a root has none.
QStringList ActionMenuModel::openSegments() const
{
    QStringList segments;
    for (int level = 1; level < m_open.size(); ++level)
        segments.append(m_open.at(level) ? m_open.at(level)->pathSegment() : QString());
    return segments;
}

QStringList ActionMenuModel::trail() const
{
    QStringList titles;
    for (int level = 1; level < m_open.size(); ++level) {
        if (m_open.at(level))
            titles.append(titleOf(*m_open.at(level)));
    }
    return titles;
}

int ActionMenuModel::currentRow() const
{
    const auto found =
            std::find_if(m_entries.cbegin(), m_entries.cend(), [](const Entry &entry) { return entry.current; });
    return found == m_entries.cend() ? -1 : static_cast<int>(found - m_entries.cbegin());
}

// An action whose path is the beginning of others has its own entry on the page of its menu. Another action may have
// created the node, so it is found by its path.
void ActionMenuModel::fill()
{
    beginResetModel();
    m_entries.clear();
    const ActionProxyNode *menu = m_open.isEmpty() ? nullptr : m_open.last().data();
    if (menu && m_gesture) {
        const QStringList current = currentSegments();
        const QStringList open = openSegments();
        const QString path = open.join(QLatin1Char('/'));
        const bool isOnTheWay = current.mid(0, open.size()) == open;
        for (Action *action : m_gesture->availableActions()) {
            if (isNested() && action->path() == path && action->supported()) {
                m_entries.append({action, nullptr, words::action(action), current == open});
                break;
            }
        }
        for (ActionProxyNode *child : menu->childNodeList()) {
            const bool isMenu = !child->childNodeList().isEmpty();
            const bool isNext = isOnTheWay && current.value(open.size()) == child->pathSegment();
            const bool isCurrent =
                    isNext && current.size() > open.size() && (isMenu || current.size() == open.size() + 1);
            if (isOffered(*child))
                m_entries.append(entryOf(child, isMenu, isCurrent));
        }
    }
    endResetModel();
    Q_EMIT pageChanged();
}

ActionMenuModel::Entry ActionMenuModel::entryOf(ActionProxyNode *node, bool isMenu, bool isCurrent)
{
    if (isMenu)
        return {nullptr, node, titleOf(*node), isCurrent};
    return {node->action(), nullptr, words::action(node->action()), isCurrent};
}

QString ActionMenuModel::open(int row)
{
    if (row < 0 || row >= m_entries.size())
        return QString();
    const Entry entry = m_entries.at(row);
    if (entry.menu) {
        m_open.append(entry.menu);
        fill();
        return QString();
    }
    return entry.action ? entry.action->path() : QString();
}

int ActionMenuModel::back()
{
    if (!isNested())
        return -1;
    const ActionProxyNode *left = m_open.takeLast();
    fill();
    const auto found = std::find_if(m_entries.cbegin(), m_entries.cend(),
                                    [left](const Entry &entry) { return left && entry.menu == left; });
    return found == m_entries.cend() ? 0 : static_cast<int>(found - m_entries.cbegin());
}

int ActionMenuModel::rowCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : m_entries.size();
}

QVariant ActionMenuModel::data(const QModelIndex &index, int role) const
{
    if (!checkIndex(index, CheckIndexOption::IndexIsValid))
        return QVariant();
    const Entry &entry = m_entries.at(index.row());
    switch (role) {
    case Qt::DisplayRole:
    case EntryTitleRole: return entry.title;
    case EntryPathRole: return entry.action ? entry.action->path() : QString();
    case IsMenuRole: return !entry.menu.isNull();
    case IsCurrentRole: return entry.current;
    default: return QVariant();
    }
}

QHash<int, QByteArray> ActionMenuModel::roleNames() const
{
    return {{EntryTitleRole, "entryTitle"},
            {EntryPathRole, "entryPath"},
            {IsMenuRole, "isMenu"},
            {IsCurrentRole, "isCurrent"}};
}

}
}
