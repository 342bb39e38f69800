#pragma once

#include <QVariant>

namespace vellix {
namespace gesture {

/// Whether a variant holds exactly this type; conversions do not count.
inline bool isType(const QVariant &v, QMetaType::Type type)
{
    return v.userType() == type;
}

}
}
