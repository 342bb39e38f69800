#pragma once

#include <QAbstractItemModel>
#include <QAbstractListModel>
#include <QPointer>
#include <QString>
#include <QVector>

namespace vellix {
namespace gesture {

/// Shows one page of another list: as many whole rows as fit, under the headings of their sections. A page that begins
/// within a section repeats its heading. It has the roles of the other list and three more: `isHeading`, `heading` (the
/// words, empty for a row) and `sourceRow` (-1 for a heading).
class PageModel : public QAbstractListModel
{
    Q_OBJECT
    Q_PROPERTY(QAbstractItemModel *source READ source WRITE setSource NOTIFY sourceChanged)
    /// The role whose value is the heading of a row's section. Without it there are no headings.
    Q_PROPERTY(QString headingRole READ headingRole WRITE setHeadingRole NOTIFY layoutPropertiesChanged)
    /// The role that identifies a row when the list is replaced, so that the current row stays the same.
    Q_PROPERTY(QString keyRole READ keyRole WRITE setKeyRole NOTIFY layoutPropertiesChanged)
    ///@{
    /// The room for a page, and the heights of its parts, in the same unit. At least one row is on each page.
    Q_PROPERTY(qreal height READ height WRITE setHeight NOTIFY layoutPropertiesChanged)
    Q_PROPERTY(qreal rowHeight READ rowHeight WRITE setRowHeight NOTIFY layoutPropertiesChanged)
    Q_PROPERTY(qreal headingHeight READ headingHeight WRITE setHeadingHeight NOTIFY layoutPropertiesChanged)
    ///@}
    /// The shown page, from 0. Setting it also moves the current row to the page.
    Q_PROPERTY(int page READ page WRITE setPage NOTIFY pageChanged)
    /// At least 1.
    Q_PROPERTY(int pageCount READ pageCount NOTIFY pageChanged)
    /// The row of the source that has the keyboard; -1 if there is none. Setting it also shows its page.
    Q_PROPERTY(int currentRow READ currentRow WRITE setCurrentRow NOTIFY currentRowChanged)
    /// The number of rows of the source.
    Q_PROPERTY(int rows READ rows NOTIFY pageChanged)

public:
    using QAbstractListModel::QAbstractListModel;

    QAbstractItemModel *source() const { return m_source; }
    void setSource(QAbstractItemModel *source);
    QString headingRole() const { return m_headingRole; }
    void setHeadingRole(const QString &role);
    QString keyRole() const { return m_keyRole; }
    void setKeyRole(const QString &role);
    qreal height() const { return m_height; }
    void setHeight(qreal height);
    qreal rowHeight() const { return m_rowHeight; }
    void setRowHeight(qreal height);
    qreal headingHeight() const { return m_headingHeight; }
    void setHeadingHeight(qreal height);
    int page() const { return m_page; }
    void setPage(int page);
    int pageCount() const { return qMax(1, m_firstRows.size()); }
    int currentRow() const { return m_currentRow; }
    void setCurrentRow(int row);
    int rows() const;

    /// Moves the current row by so many rows. Returns false at the end of the list: the keyboard may go elsewhere.
    Q_INVOKABLE bool step(int by);
    /// The value of a role in a row of the source.
    Q_INVOKABLE QVariant value(int row, const QString &role) const;
    /// The next row after the current one, from the start after the last, whose role starts with this text in any
    /// letter case; -1 if there is none.
    Q_INVOKABLE int find(const QString &start, const QString &role) const;

    int rowCount(const QModelIndex &parent = QModelIndex()) const override;
    QVariant data(const QModelIndex &index, int role = Qt::DisplayRole) const override;
    QHash<int, QByteArray> roleNames() const override;

Q_SIGNALS:
    void sourceChanged();
    void layoutPropertiesChanged();
    void pageChanged();
    void currentRowChanged();

private:
    struct Entry
    {
        int row; // of the source
        bool isHeading;

        bool operator==(const Entry &other) const { return row == other.row && isHeading == other.isHeading; }
    };

    void layOut();
    QVector<Entry> entriesOf(int page) const;
    void fill();
    void relayOut();
    void sourceReset();
    void sourceDataChanged(const QModelIndex &first, const QModelIndex &last, const QVector<int> &roles);
    int pageOf(int row) const;
    int roleOf(const QString &name) const;

    QPointer<QAbstractItemModel> m_source;
    QString m_headingRole;
    QString m_keyRole;
    qreal m_height = 0;
    qreal m_rowHeight = 1;
    qreal m_headingHeight = 1;
    int m_page = 0;
    int m_currentRow = -1;
    QVariant m_currentKey;
    QVector<int> m_firstRows; // of each page
    QVector<Entry> m_entries; // of the shown page
};

}
}
