#pragma once

#include <gesture_api/gesture.h>

#include <QAbstractListModel>
#include <QList>
#include <QMap>
#include <QPointer>
#include <QSet>
#include <QString>

namespace vellix {
namespace gesture {

/// The gestures of a GestureEditor, those of one section together. No role has the name of a property of Qt Quick's
/// buttons, so each can be a required property of a delegate.
class GestureList : public QAbstractListModel
{
    Q_OBJECT
    Q_PROPERTY(int count READ count NOTIFY countChanged)

public:
    enum Role {
        GestureRole = Qt::UserRole, ///< `gesture`: the Gesture
        GestureIdRole,              ///< `gestureId`: its id
        GestureTitleRole,           ///< `gestureTitle`: "Tap, on the right"; no two zones have the same words
        SectionRole,                ///< `section`: its key
        SectionTitleRole,           ///< `sectionTitle`: "Reading: tap"
        ActionTitleRole,            ///< `actionTitle`: the last title of the current action, or "Nothing"
        DefaultTitleRole,           ///< `defaultTitle`: that of the action without any choice
        IsDefaultRole,              ///< `isDefault`: the user has chosen nothing for it
        IsEditedRole,               ///< `isEdited`: the choice is not saved
        IsConflictingRole,          ///< `isConflicting`: another program has saved another choice since the edit
        IsSupportedRole,            ///< `isSupported`: the device has the features it needs
        IsChangeableRole,           ///< `isChangeable`: it offers actions that the device supports
    };

    /// What the editor knows of the gestures, by their ids.
    struct Marks
    {
        QSet<QString> chosen;
        QSet<QString> edited;
        QSet<QString> conflicting;
        QMap<QString, QString> defaultTitles;
    };

    using QAbstractListModel::QAbstractListModel;

    int count() const { return m_gestures.size(); }
    /// The gestures, which must live until the next call. Rows that stay keep their places on the screen.
    void setGestures(const QList<Gesture *> &gestures);
    /// The marks of all rows.
    void setMarks(const Marks &marks);
    Gesture *gesture(const QString &id) const;
    const QList<Gesture *> &gestures() const { return m_gestures; }

    int rowCount(const QModelIndex &parent = QModelIndex()) const override;
    QVariant data(const QModelIndex &index, int role = Qt::DisplayRole) const override;
    QHash<int, QByteArray> roleNames() const override;

Q_SIGNALS:
    void countChanged();

private:
    QList<Gesture *> m_gestures;
    int m_decimals = 0;
    Marks m_marks;
};

}
}
