#pragma once

#include <vellix/export.h>

#include <QList>
#include <QSortFilterProxyModel>

namespace vellix {
namespace gesture {

/// Shows those gestures of a service's model that the device supports, that offer an action (unless
/// `noActionVisible`), and whose Gesture::Kind is in `whiteList`, or, when that is empty, not in
/// `blackList`. Rows that are no gestures are shown.
///
/// Changing a property does not filter again the rows that are there: set all three before the source
/// model, or set the source model to null and back afterwards.
class GESTURE_API_EXPORT GestureKindFilterModel : public QSortFilterProxyModel
{
    Q_OBJECT
    Q_PROPERTY(QList<int> blackList READ blackList WRITE setBlackList NOTIFY blackListChanged)
    Q_PROPERTY(QList<int> whiteList READ whiteList WRITE setWhiteList NOTIFY whiteListChanged)
    Q_PROPERTY(bool noActionVisible READ noActionVisible WRITE setNoActionVisible NOTIFY noActionVisibleChanged)

public:
    explicit GestureKindFilterModel(QObject *parent = nullptr);

    /// Public, so that anybody may ask of a row whether it would be shown.
    bool filterAcceptsRow(int sourceRow, const QModelIndex &sourceParent) const override;

    QList<int> blackList() const { return m_blackList; }
    void setBlackList(QList<int> value);
    QList<int> whiteList() const { return m_whiteList; }
    void setWhiteList(QList<int> value);
    bool noActionVisible() const { return m_noActionVisible; }
    void setNoActionVisible(bool value);

Q_SIGNALS:
    void blackListChanged(QList<int> value);
    void whiteListChanged(QList<int> value);
    void noActionVisibleChanged(bool value);

private:
    QList<int> m_blackList;
    QList<int> m_whiteList;
    bool m_noActionVisible = false;
};

}
}
