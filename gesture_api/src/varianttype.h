#pragma once

#include <QStringList>
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

/// As QVariant::toStringList().
inline QStringList textsOf(const QVariantList &values)
{
    QStringList texts;
    texts.reserve(values.size());
    for (const QVariant &value : values)
        texts.append(isType(value, QMetaType::QString) ? held<QString>(value) : value.toString());
    return texts;
}

}
}
