#pragma once

#include <QList>
#include <QSortFilterProxyModel>
#include <QString>
#include <QStringList>

namespace vellix {
namespace gesture {

/// Shows some gestures of a GestureEditor's or a service's model, and filters again by itself. Rows that hold no
/// gesture are hidden.
class GestureFilterModel : public QSortFilterProxyModel
{
    Q_OBJECT
    /// The values of Gesture.Kind that are shown. All if it is empty.
    Q_PROPERTY(QList<int> kinds READ kinds WRITE setKinds NOTIFY kindsChanged)
    /// The modes whose gestures are shown, with those of all modes. All if it is empty.
    Q_PROPERTY(QStringList modes READ modes WRITE setModes NOTIFY modesChanged)
    /// Words that must appear in the title of the gesture or of its action, or in their ids, in any letter case.
    Q_PROPERTY(QString searchText READ searchText WRITE setSearchText NOTIFY searchTextChanged)
    /// Whether gestures that offer no action are shown. Initially false.
    Q_PROPERTY(bool withoutChoice READ withoutChoice WRITE setWithoutChoice NOTIFY withoutChoiceChanged)
    /// Whether only gestures with a choice of the user are shown, saved or not. A service's model has none.
    Q_PROPERTY(bool changedOnly READ changedOnly WRITE setChangedOnly NOTIFY changedOnlyChanged)
    /// Whether gestures that the device does not support are shown. Initially false.
    Q_PROPERTY(bool unsupported READ unsupported WRITE setUnsupported NOTIFY unsupportedChanged)
    Q_PROPERTY(int count READ count NOTIFY countChanged)

public:
    explicit GestureFilterModel(QObject *parent = nullptr);

    QList<int> kinds() const { return m_kinds; }
    void setKinds(const QList<int> &kinds);
    QStringList modes() const { return m_modes; }
    void setModes(const QStringList &modes);
    QString searchText() const { return m_searchText; }
    void setSearchText(const QString &text);
    bool withoutChoice() const { return m_withoutChoice; }
    void setWithoutChoice(bool shown);
    bool changedOnly() const { return m_changedOnly; }
    void setChangedOnly(bool only);
    bool unsupported() const { return m_unsupported; }
    void setUnsupported(bool shown);
    int count() const { return rowCount(); }

Q_SIGNALS:
    void kindsChanged();
    void modesChanged();
    void searchTextChanged();
    void withoutChoiceChanged();
    void changedOnlyChanged();
    void unsupportedChanged();
    void countChanged();

protected:
    bool filterAcceptsRow(int sourceRow, const QModelIndex &sourceParent) const override;

private:
    template <class Value>
    void set(Value *member, const Value &value, void (GestureFilterModel::*changed)());
    void watchCount();

    QList<int> m_kinds;
    QStringList m_modes;
    QString m_searchText;
    bool m_withoutChoice = false;
    bool m_changedOnly = false;
    bool m_unsupported = false;
    int m_count = 0;
};

}
}
