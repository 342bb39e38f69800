#include "gesturefiltermodel.h"

#include "gesturelist.h"
#include "words.h"

#include <algorithm>

namespace vellix {
namespace gesture {

GestureFilterModel::GestureFilterModel(QObject *parent) : QSortFilterProxyModel(parent)
{
    qRegisterMetaType<QList<int>>();
    connect(this, &QAbstractItemModel::rowsInserted, this, &GestureFilterModel::watchCount);
    connect(this, &QAbstractItemModel::rowsRemoved, this, &GestureFilterModel::watchCount);
    connect(this, &QAbstractItemModel::modelReset, this, &GestureFilterModel::watchCount);
}

void GestureFilterModel::watchCount()
{
    if (count() == m_count)
        return;
    m_count = count();
    Q_EMIT countChanged();
}

template <class Value>
void GestureFilterModel::set(Value *member, const Value &value, void (GestureFilterModel::*changed)())
{
    if (value == *member)
        return;
    *member = value;
    invalidateFilter();
    Q_EMIT(this->*changed)();
}

void GestureFilterModel::setKinds(const QList<int> &kinds)
{
    set(&m_kinds, kinds, &GestureFilterModel::kindsChanged);
}

void GestureFilterModel::setModes(const QStringList &modes)
{
    set(&m_modes, modes, &GestureFilterModel::modesChanged);
}

void GestureFilterModel::setSearchText(const QString &text)
{
    set(&m_searchText, text, &GestureFilterModel::searchTextChanged);
}

void GestureFilterModel::setWithoutChoice(bool shown)
{
    set(&m_withoutChoice, shown, &GestureFilterModel::withoutChoiceChanged);
}

void GestureFilterModel::setChangedOnly(bool only)
{
    set(&m_changedOnly, only, &GestureFilterModel::changedOnlyChanged);
}

void GestureFilterModel::setUnsupported(bool shown)
{
    set(&m_unsupported, shown, &GestureFilterModel::unsupportedChanged);
}

static bool isInModes(const Gesture &gesture, const QStringList &modes)
{
    return modes.isEmpty() || gesture.modes().isEmpty()
            || std::any_of(modes.cbegin(), modes.cend(),
                           [&gesture](const QString &mode) { return gesture.modes().contains(mode); });
}

static bool isFound(const Gesture &gesture, const QString &title, const QString &text)
{
    const Action *action = gesture.currentAction();
    const QStringList texts{title, gesture.id(), words::action(action), action ? action->path() : QString()};
    return text.isEmpty() || std::any_of(texts.cbegin(), texts.cend(), [&text](const QString &each) {
               return each.contains(text, Qt::CaseInsensitive);
           });
}

bool GestureFilterModel::filterAcceptsRow(int sourceRow, const QModelIndex &sourceParent) const
{
    const QModelIndex row = sourceModel()->index(sourceRow, 0, sourceParent);
    const auto *list = qobject_cast<const GestureList *>(sourceModel());
    const auto *gesture = row.data(list ? int(GestureList::GestureRole) : int(Qt::DisplayRole)).value<Gesture *>();
    if (!gesture)
        return false;
    if (!m_kinds.isEmpty() && !m_kinds.contains(gesture->kind()))
        return false;
    if (!m_withoutChoice && gesture->availableActions().isEmpty())
        return false;
    if (!m_unsupported && !gesture->supported())
        return false;
    if (!isInModes(*gesture, m_modes))
        return false;
    const auto isMarked = [&row](GestureList::Role role, bool mark) { return row.data(role).toBool() == mark; };
    if (m_changedOnly
        && !(list && (isMarked(GestureList::IsDefaultRole, false) || isMarked(GestureList::IsEditedRole, true))))
        return false;
    const QString title = list ? row.data(GestureList::GestureTitleRole).toString() : words::gesture(*gesture);
    return isFound(*gesture, title, m_searchText.trimmed());
}

}
}
