#include "pagemodel.h"

#include <algorithm>

namespace vellix {
namespace gesture {

// Roles of this model itself, behind any that a source has.
enum OwnRole { IsHeadingRole = 0x10000000, HeadingRole, SourceRowRole };

void PageModel::setSource(QAbstractItemModel *source)
{
    if (source == m_source)
        return;
    if (m_source)
        m_source->disconnect(this);
    m_source = source;
    if (source) {
        connect(source, &QAbstractItemModel::rowsInserted, this, &PageModel::sourceReset);
        connect(source, &QAbstractItemModel::rowsRemoved, this, &PageModel::sourceReset);
        connect(source, &QAbstractItemModel::rowsMoved, this, &PageModel::sourceReset);
        connect(source, &QAbstractItemModel::modelReset, this, &PageModel::sourceReset);
        connect(source, &QAbstractItemModel::layoutChanged, this, &PageModel::sourceReset);
        connect(source, &QAbstractItemModel::dataChanged, this, &PageModel::sourceDataChanged);
        connect(source, &QObject::destroyed, this, &PageModel::sourceReset);
    }
    m_currentRow = -1;
    m_currentKey = QVariant();
    m_page = 0;
    sourceReset();
    Q_EMIT sourceChanged();
}

void PageModel::setHeadingRole(const QString &role)
{
    if (role == m_headingRole)
        return;
    m_headingRole = role;
    relayOut();
}

void PageModel::setKeyRole(const QString &role)
{
    if (role == m_keyRole)
        return;
    m_keyRole = role;
    m_currentKey = value(m_currentRow, m_keyRole);
    Q_EMIT layoutPropertiesChanged();
}

void PageModel::setHeight(qreal height)
{
    if (qFuzzyCompare(height + 1, m_height + 1))
        return;
    m_height = height;
    relayOut();
}

void PageModel::setRowHeight(qreal height)
{
    if (qFuzzyCompare(height + 1, m_rowHeight + 1))
        return;
    m_rowHeight = height;
    relayOut();
}

void PageModel::setHeadingHeight(qreal height)
{
    if (qFuzzyCompare(height + 1, m_headingHeight + 1))
        return;
    m_headingHeight = height;
    relayOut();
}

// The page that holds the current row, or the one that held the first row, stays in view.
void PageModel::relayOut()
{
    const int kept = m_currentRow >= 0 ? m_currentRow : m_firstRows.value(m_page, 0);
    layOut();
    m_page = pageOf(kept);
    fill();
    Q_EMIT layoutPropertiesChanged();
    Q_EMIT pageChanged();
}

void PageModel::sourceReset()
{
    layOut();
    const int before = m_currentRow;
    if (m_currentRow >= 0 && !m_keyRole.isEmpty()) {
        for (int row = 0; row < rows(); ++row) {
            if (value(row, m_keyRole) == m_currentKey) {
                m_currentRow = row;
                break;
            }
        }
    }
    m_currentRow = qMin(m_currentRow < 0 ? 0 : m_currentRow, rows() - 1);
    m_currentKey = value(m_currentRow, m_keyRole);
    m_page = pageOf(m_currentRow);
    fill();
    Q_EMIT pageChanged();
    if (m_currentRow != before)
        Q_EMIT currentRowChanged();
}

void PageModel::layOut()
{
    m_firstRows.clear();
    QVariant section;
    qreal used = 0;
    for (int row = 0; row < rows(); ++row) {
        const QVariant own = value(row, m_headingRole);
        const bool startsSection = !m_headingRole.isEmpty() && own != section;
        const qreal needed = m_rowHeight + (startsSection ? m_headingHeight : 0);
        if (m_firstRows.isEmpty() || used + needed > m_height + 0.001) {
            m_firstRows.append(row);
            used = m_rowHeight + (m_headingRole.isEmpty() ? 0 : m_headingHeight);
        } else {
            used += needed;
        }
        section = own;
    }
}

QVector<PageModel::Entry> PageModel::entriesOf(int page) const
{
    QVector<Entry> entries;
    const int last = page + 1 < m_firstRows.size() ? m_firstRows.at(page + 1) : rows();
    for (int row = m_firstRows.value(page, 0); row < last; ++row) {
        const bool startsSection = entries.isEmpty() || value(row, m_headingRole) != value(row - 1, m_headingRole);
        if (!m_headingRole.isEmpty() && startsSection)
            entries.append({row, true});
        entries.append({row, false});
    }
    return entries;
}

void PageModel::fill()
{
    beginResetModel();
    m_entries = entriesOf(m_page);
    endResetModel();
}

void PageModel::sourceDataChanged(const QModelIndex &first, const QModelIndex &last, const QVector<int> &roles)
{
    if (!m_headingRole.isEmpty() && (roles.isEmpty() || roles.contains(roleOf(m_headingRole)))) {
        layOut();
        const int page = pageOf(m_currentRow);
        if (page != m_page || entriesOf(page) != m_entries) {
            m_page = page;
            fill();
            Q_EMIT pageChanged();
            return;
        }
    }
    for (int i = 0; i < m_entries.size(); ++i) {
        if (m_entries.at(i).row >= first.row() && m_entries.at(i).row <= last.row())
            Q_EMIT dataChanged(index(i), index(i));
    }
}

int PageModel::pageOf(int row) const
{
    const auto next = std::upper_bound(m_firstRows.cbegin(), m_firstRows.cend(), row);
    return qMax(0, static_cast<int>(next - m_firstRows.cbegin()) - 1);
}

int PageModel::rows() const
{
    return m_source ? m_source->rowCount() : 0;
}

void PageModel::setPage(int page)
{
    page = qBound(0, page, pageCount() - 1);
    if (page != m_page)
        setCurrentRow(m_firstRows.value(page, 0));
}

void PageModel::setCurrentRow(int row)
{
    row = rows() == 0 ? -1 : qBound(0, row, rows() - 1);
    if (row == m_currentRow)
        return;
    m_currentRow = row;
    m_currentKey = value(row, m_keyRole);
    const int page = pageOf(row);
    if (page != m_page) {
        m_page = page;
        fill();
        Q_EMIT pageChanged();
    }
    Q_EMIT currentRowChanged();
}

bool PageModel::step(int by)
{
    const int row = m_currentRow + by;
    if (row < 0 || row >= rows())
        return false;
    setCurrentRow(row);
    return true;
}

int PageModel::roleOf(const QString &name) const
{
    return m_source ? m_source->roleNames().key(name.toUtf8(), -1) : -1;
}

QVariant PageModel::value(int row, const QString &role) const
{
    const int number = role.isEmpty() ? -1 : roleOf(role);
    return number < 0 || row < 0 || row >= rows() ? QVariant() : m_source->index(row, 0).data(number);
}

int PageModel::find(const QString &start, const QString &role) const
{
    for (int step = 1; step <= rows(); ++step) {
        const int row = (qMax(0, m_currentRow) + step) % rows();
        if (value(row, role).toString().startsWith(start, Qt::CaseInsensitive))
            return row;
    }
    return -1;
}

int PageModel::rowCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : m_entries.size();
}

QVariant PageModel::data(const QModelIndex &index, int role) const
{
    if (!checkIndex(index, CheckIndexOption::IndexIsValid))
        return QVariant();
    const Entry &entry = m_entries.at(index.row());
    switch (role) {
    case IsHeadingRole: return entry.isHeading;
    case HeadingRole: return entry.isHeading ? value(entry.row, m_headingRole).toString() : QString();
    case SourceRowRole: return entry.isHeading ? -1 : entry.row;
    default: return m_source ? m_source->index(entry.row, 0).data(role) : QVariant();
    }
}

QHash<int, QByteArray> PageModel::roleNames() const
{
    QHash<int, QByteArray> names = m_source ? m_source->roleNames() : QAbstractListModel::roleNames();
    names.insert(IsHeadingRole, "isHeading");
    names.insert(HeadingRole, "heading");
    names.insert(SourceRowRole, "sourceRow");
    return names;
}

}
}
