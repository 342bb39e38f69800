#pragma once

#include <vellix/either.h>

#include <QString>
#include <QStringView>
#include <QVariant>

#include <algorithm>
#include <iterator>
#include <optional>

namespace vellix {
namespace gesture {

/// A member of an object, also without a value; null if the object does not have it.
inline const QVariant *field(const QVariantMap &object, const QString &name)
{
    const auto member = object.constFind(name);
    return member == object.constEnd() ? nullptr : &*member;
}

/// Takes a member out of an object, which frees it with the result; nothing if the object does not have it.
inline std::optional<QVariant> takeField(QVariantMap *object, const QString &name)
{
    const auto member = object->find(name);
    if (member == object->end())
        return std::nullopt;
    std::optional<QVariant> value(*member);
    object->erase(member);
    return value;
}

/// The name of a member that an object may have, and where to put its address.
template <class Members>
struct Field
{
    QStringView name;
    const QVariant *Members::*place;
};

/// Whether both have the same characters. Unlike the operator, it is short enough to be compiled into its callers.
inline bool isSame(QStringView name, const QString &key)
{
    return name.size() == key.size() && std::equal(name.cbegin(), name.cend(), key.cbegin());
}

/// The members of an object, found in one pass; null for a missing one.
template <class Members, std::size_t Count>
Members membersOf(const QVariantMap &object, const Field<Members> (&fields)[Count])
{
    Members members;
    for (auto member = object.cbegin(); member != object.cend(); ++member) {
        const auto found = std::find_if(std::begin(fields), std::end(fields), [&member](const Field<Members> &one) {
            return isSame(one.name, member.key());
        });
        if (found != std::end(fields))
            members.*(found->place) = &*member;
    }
    return members;
}

/// The result of `read` for an optional member; `fallback` if it is missing.
template <class T, class Read>
Either<Error, T> readOptional(const QVariant *value, const T &fallback, const Read &read)
{
    return value ? read(*value) : Either<Error, T>(Right(fallback));
}

}
}
