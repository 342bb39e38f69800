#include <vellix/stringutils.h>

#include <algorithm>

namespace vellix {

QString StringUtils::capitalizeFirst(const QString &s)
{
    QString capitalized = s;
    if (!capitalized.isEmpty())
        capitalized[0] = capitalized.at(0).toUpper();
    return capitalized;
}

QStringList StringUtils::capitalizeFirstOnEach(const QStringList &list)
{
    QStringList capitalized;
    capitalized.reserve(list.size());
    for (const QString &s : list)
        capitalized.append(capitalizeFirst(s));
    return capitalized;
}

QStringList StringUtils::sortedUnique(QStringList &&list)
{
    if (list.size() < 2)
        return std::move(list);
    list.sort(Qt::CaseSensitive);
    QStringList unique;
    unique.reserve(list.size());
    std::unique_copy(list.cbegin(), list.cend(), std::back_inserter(unique));
    return unique;
}

}
