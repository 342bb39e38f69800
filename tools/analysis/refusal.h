#pragma once

#include "finding.h"

#include <vellix/either.h>

#include <QStringList>
#include <QVariant>
#include <QVector>

#include <functional>

// Finds out which value of an object a reader refuses, and all of them, though the reader stops at the first.

namespace analysis {

/// The words of a failed result; null when there are none.
template <class T>
QString wordsOf(const vellix::Either<vellix::Error, T> &result)
{
    return result.isRight() ? QString() : messageOf(result.left());
}

/// What a reader says of an object; null when it takes it.
using Reader = std::function<QString(const QVariantMap &)>;

/// One member that the reader knows.
struct Field
{
    QString name;
    QVariant valid; // a value that it accepts
    /// Reports the faults within a value, so that they are not reported for the whole of it; whether there were any.
    std::function<bool(const QVariant &, const Place &)> within = {};
};

/// The nearest object that the reader accepts, and what was changed to get it.
struct Repaired
{
    QVariantMap map;
    QStringList changed; // the members that it refused or missed
};

/// Reports every fault of an object. `valid` is one that the reader accepts; a field that cannot stand beside another
/// names that in `instead`, which is taken out for it.
Repaired reportRefusals(const QVariantMap &object, const Place &place, const QVector<Field> &fields,
                        const QVariantMap &valid, const QMap<QString, QString> &instead, const Reader &reader,
                        const std::function<void(const Place &, const QString &)> &report);

}
