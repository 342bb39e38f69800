#pragma once

#include <QVariant>

namespace vellix {
namespace gesture {

/// Whether a variant holds exactly this type; conversions do not count.
inline bool isType(const QVariant &v, QMetaType::Type type)
{
    return v.userType() == type;
}

/// The value of a variant of exactly this type, in place.
template <class T>
const T &held(const QVariant &v)
{
    return *static_cast<const T *>(v.constData());
}

}
}
