#pragma once

#include <vellix/export.h>

#include <QString>
#include <QStringList>

namespace vellix {

/// String helpers for gesture ids and mode lists.
class GESTURE_API_EXPORT StringUtils
{
public:
    /// The string with its first UTF-16 unit in upper case, the rest unchanged.
    static QString capitalizeFirst(const QString &s);
    /// Each string of the list with its first UTF-16 unit in upper case, in the same order.
    static QStringList capitalizeFirstOnEach(const QStringList &list);
    /// The strings sorted by their UTF-16 units, without duplicates. Sorts the list in place.
    static QStringList sortedUnique(QStringList &&list);
};

}
