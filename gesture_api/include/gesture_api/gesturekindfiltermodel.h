#pragma once

#include <vellix/export.h>

#include <QList>
#include <QSortFilterProxyModel>

namespace vellix {
namespace gesture {

/// Shows the gestures of a service's model that the device supports, that offer an action (unless `noActionVisible`),
/// and whose Gesture::Kind is in `whiteList` or, if that is empty, not in `blackList`. Also shows rows that hold no
/// gesture.
///
/// Changed properties take effect only with the next source model: set all three before the source model, or set the
/// source model to null and back afterwards.
class GESTURE_API_EXPORT GestureKindFilterModel : public QSortFilterProxyModel
{
    Q_OBJECT
    ///@{
    /// The functions of the same names, for QML.
    Q_PROPERTY(QList<int> blackList READ blackList WRITE setBlackList NOTIFY blackListChanged)
    Q_PROPERTY(QList<int> whiteList READ whiteList WRITE setWhiteList NOTIFY whiteListChanged)
    Q_PROPERTY(bool noActionVisible READ noActionVisible WRITE setNoActionVisible NOTIFY noActionVisibleChanged)
    ///@}

public:
    /// Initially both lists are empty, and gestures without actions are hidden.
    explicit GestureKindFilterModel(QObject *parent = nullptr);

    /// Public, so that programs can ask whether a row would be shown.
    bool filterAcceptsRow(int sourceRow, const QModelIndex &sourceParent) const override;

    /// The hidden kinds. No effect if the white list is not empty.
    QList<int> blackList() const { return m_blackList; }
    /// Sets the hidden kinds, from the next source model on.
    void setBlackList(QList<int> value);
    /// The only kinds that are shown. If the list is empty, the black list applies.
    QList<int> whiteList() const { return m_whiteList; }
    /// Sets the shown kinds, from the next source model on.
    void setWhiteList(QList<int> value);
    /// Whether gestures without available actions are also shown.
    bool noActionVisible() const { return m_noActionVisible; }
    /// Shows or hides them from the next source model on.
    void setNoActionVisible(bool value);

Q_SIGNALS:
    ///@{
    /// The property has a new value. The rows are not filtered again yet.
    void blackListChanged(QList<int> value);
    void whiteListChanged(QList<int> value);
    void noActionVisibleChanged(bool value);
    ///@}

private:
    QList<int> m_blackList;
    QList<int> m_whiteList;
    bool m_noActionVisible = false;
};

}
}
