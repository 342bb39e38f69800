#pragma once

#include <vellix/either.h>

#include <QString>
#include <QVariant>

namespace vellix {
namespace gesture {

/// A member of an object, also without a value; null if the object does not have it.
inline const QVariant *field(const QVariantMap &object, const QString &name)
{
    const auto member = object.constFind(name);
    return member == object.constEnd() ? nullptr : &*member;
}

/// The result of `read` for an optional member; `fallback` if it is missing.
template <class T, class Read>
Either<Error, T> readOptional(const QVariant *value, const T &fallback, const Read &read)
{
    return value ? read(*value) : Either<Error, T>(Right(fallback));
}

}
}
