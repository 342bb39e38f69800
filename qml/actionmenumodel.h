#pragma once

#include <gesture_api/action.h>
#include <gesture_api/gesture.h>

#include <QAbstractListModel>
#include <QList>
#include <QPointer>
#include <QString>
#include <QStringList>

namespace vellix {
namespace gesture {

/// One page of the menu of a gesture's actions. Entries that the device does not support are left out, and menus
/// without entries.
class ActionMenuModel : public QAbstractListModel
{
    Q_OBJECT
    /// The gesture. Setting it opens the menu that holds its current action.
    Q_PROPERTY(vellix::gesture::Gesture *gesture READ gesture WRITE setGesture NOTIFY gestureChanged)
    /// The titles of the open menus from the outermost, empty at the top.
    Q_PROPERTY(QStringList trail READ trail NOTIFY pageChanged)
    /// Whether back() has somewhere to go.
    Q_PROPERTY(bool nested READ isNested NOTIFY pageChanged)
    /// The row of the current action or of the menu that holds it, or -1.
    Q_PROPERTY(int currentRow READ currentRow NOTIFY pageChanged)
    Q_PROPERTY(int count READ count NOTIFY pageChanged)

public:
    enum Role {
        EntryTitleRole = Qt::UserRole, ///< `entryTitle`: the last title of an action, or the title of a menu
        EntryPathRole,                 ///< `entryPath`: the path of the action; empty for a menu
        IsMenuRole,                    ///< `isMenu`: opens another page
        IsCurrentRole,                 ///< `isCurrent`: the current action, or a menu that holds it
    };

    using QAbstractListModel::QAbstractListModel;

    Gesture *gesture() const { return m_gesture; }
    void setGesture(Gesture *gesture);
    QStringList trail() const;
    bool isNested() const { return m_open.size() > 1; }
    int currentRow() const;
    int count() const { return m_entries.size(); }

    /// Opens the menu of this row. Returns the path of its action instead, if it is one.
    Q_INVOKABLE QString open(int row);
    /// Goes back to the menu before. Returns the row of the menu that was left, or -1 if there is none before.
    Q_INVOKABLE int back();

    int rowCount(const QModelIndex &parent = QModelIndex()) const override;
    QVariant data(const QModelIndex &index, int role = Qt::DisplayRole) const override;
    QHash<int, QByteArray> roleNames() const override;

Q_SIGNALS:
    void gestureChanged();
    void pageChanged();

private:
    struct Entry
    {
        QPointer<Action> action; // null for a menu
        QPointer<ActionProxyNode> menu;
        QString title;
        bool current;
    };

    void fill();
    void openCurrent();
    QStringList currentSegments() const;
    QStringList openSegments() const;
    static Entry entryOf(ActionProxyNode *node, bool isMenu, bool isCurrent);

    QPointer<Gesture> m_gesture;
    QList<QPointer<ActionProxyNode>> m_open; // from the root to the shown menu
    QList<Entry> m_entries;
};

}
}
