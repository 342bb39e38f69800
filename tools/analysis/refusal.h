#pragma once

#include "finding.h"
#include "format.h"

#include <vellix/either.h>

#include <QMap>
#include <QStringList>
#include <QVariant>

#include <functional>

// Finds every value of an object that a reader refuses, though the reader stops at the first.

namespace analysis {

/// The message of a failed result; null if there is none.
template <class T>
QString wordsOf(const vellix::Either<vellix::Error, T> &result)
{
    return result.isRight() ? QString() : messageOf(result.left());
}

/// Why a reader refuses an object; null if it accepts it.
using Reader = std::function<QString(const QVariantMap &)>;

using Report = std::function<void(const Place &, const QString &)>;

/// By the name of a member: reports the faults within its value, so that they are not reported for the whole value.
/// Returns whether there were any.
using WithinMembers = QMap<QString, std::function<bool(const QVariant &, const Place &)>>;

/// The nearest object that the reader accepts, and what was changed to get it.
struct Repaired
{
    QVariantMap map;
    QStringList changed; // the members that it refused or missed
};

/// Reports every fault of an object.
Repaired reportRefusals(const QVariantMap &object, const Place &place, const Fields &fields,
                        const WithinMembers &within, const Reader &reader, const Report &report);

}
