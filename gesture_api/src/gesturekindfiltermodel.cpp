#include <gesture_api/gesturekindfiltermodel.h>

#include "announcement.h"

#include <gesture_api/gesture.h>

namespace vellix {
namespace gesture {

GestureKindFilterModel::GestureKindFilterModel(QObject *parent) : QSortFilterProxyModel(parent)
{
    qRegisterMetaType<QList<int>>();
}

bool GestureKindFilterModel::filterAcceptsRow(int sourceRow, const QModelIndex &sourceParent) const
{
    Q_UNUSED(sourceParent) // the gestures of a service are a plain list
    const QAbstractItemModel *source = sourceModel();
    if (!source || sourceRow >= source->rowCount())
        return true;
    const auto *gesture = source->index(sourceRow, 0).data(Qt::DisplayRole).value<Gesture *>();
    if (!gesture)
        return true;

    if (!m_whiteList.isEmpty()) {
        if (!m_whiteList.contains(gesture->kind()))
            return false;
    } else if (m_blackList.contains(gesture->kind())) {
        return false;
    }
    if (gesture->availableActions().isEmpty() && !m_noActionVisible)
        return false;
    return gesture->supported();
}

// The meta-object has this signature. NOLINTNEXTLINE(performance-unnecessary-value-param)
void GestureKindFilterModel::setBlackList(QList<int> value)
{
    if (value == m_blackList)
        return;
    m_blackList = value;
    announce(this, &GestureKindFilterModel::blackListChanged, value);
}

// The meta-object has this signature. NOLINTNEXTLINE(performance-unnecessary-value-param)
void GestureKindFilterModel::setWhiteList(QList<int> value)
{
    if (value == m_whiteList)
        return;
    m_whiteList = value;
    announce(this, &GestureKindFilterModel::whiteListChanged, value);
}

void GestureKindFilterModel::setNoActionVisible(bool value)
{
    if (value == m_noActionVisible)
        return;
    m_noActionVisible = value;
    announce(this, &GestureKindFilterModel::noActionVisibleChanged, value);
}

}
}
