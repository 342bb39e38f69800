#pragma once

#include <QVariant>

namespace vellix {
namespace gesture {

/// Whether a variant holds this very type; what it could be converted to does not count.
inline bool isType(const QVariant &v, QMetaType::Type type)
{
    return v.userType() == type;
}

}
}
