#include <vellix/platform/vxcomponents.h>

namespace vellix {
namespace components {

ReadonlyLazyListModel::ReadonlyLazyListModel(const std::function<int()> &count,
                                             const std::function<QVariant(int)> &item, QObject *parent)
    : QAbstractListModel(parent), m_count(count), m_item(item)
{
}

int ReadonlyLazyListModel::rowCount(const QModelIndex &parent) const
{
    return parent.isValid() || !m_count ? 0 : m_count();
}

QVariant ReadonlyLazyListModel::data(const QModelIndex &index, int role) const
{
    const bool known = checkIndex(index, CheckIndexOption::IndexIsValid | CheckIndexOption::ParentIsInvalid);
    if (!known || role != Qt::DisplayRole || !m_item)
        return {};
    return m_item(index.row());
}

QHash<int, QByteArray> ReadonlyLazyListModel::roleNames() const
{
    return {{Qt::DisplayRole, QByteArrayLiteral("display")}};
}

}
}
