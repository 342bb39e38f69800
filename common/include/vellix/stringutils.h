#pragma once

#include <vellix/export.h>

#include <QString>
#include <QStringList>

namespace vellix {

/// What the ids of gestures and the lists of their modes are made with.
class GESTURE_API_EXPORT StringUtils
{
public:
    /// The text with its first UTF-16 unit in upper case, the rest as it is.
    static QString capitalizeFirst(const QString &s);
    /// Every text with its first UTF-16 unit in upper case, in the order of the list.
    static QStringList capitalizeFirstOnEach(const QStringList &list);
    /// The strings in the order of their UTF-16 units, equal ones once. The list is sorted in place.
    static QStringList sortedUnique(QStringList &&list);
};

}
