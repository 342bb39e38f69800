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
    ///@{
    /// What the functions of this name return and set, for QML.
    Q_PROPERTY(QList<int> blackList READ blackList WRITE setBlackList NOTIFY blackListChanged)
    Q_PROPERTY(QList<int> whiteList READ whiteList WRITE setWhiteList NOTIFY whiteListChanged)
    Q_PROPERTY(bool noActionVisible READ noActionVisible WRITE setNoActionVisible NOTIFY noActionVisibleChanged)
    ///@}

public:
    /// Both lists are empty at start, and gestures without actions hidden.
    explicit GestureKindFilterModel(QObject *parent = nullptr);

    /// Public, so that anybody may ask of a row whether it would be shown.
    bool filterAcceptsRow(int sourceRow, const QModelIndex &sourceParent) const override;

    /// The kinds that are hidden; without effect while there is a white list.
    QList<int> blackList() const { return m_blackList; }
    /// Hides other kinds from the next source model on.
    void setBlackList(QList<int> value);
    /// The only kinds that are shown; an empty list for all that the black list leaves.
    QList<int> whiteList() const { return m_whiteList; }
    /// Shows other kinds from the next source model on.
    void setWhiteList(QList<int> value);
    /// Whether gestures without available actions are shown as well.
    bool noActionVisible() const { return m_noActionVisible; }
    /// Shows or hides them from the next source model on.
    void setNoActionVisible(bool value);

Q_SIGNALS:
    ///@{
    /// The property was set to another value, before any row is filtered again.
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
