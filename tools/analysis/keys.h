#pragma once

#include "finding.h"

#include <QVariant>

namespace analysis {

/// "null", "a number" and so on.
QString typeNameOf(const QVariant &value);

/// Of these, the one that a person may have meant; empty when none is near.
QString nearestTo(const QString &name, const QStringList &known);

/// The members of an object that nobody reads.
void reportUnknownKeys(const QVariantMap &object, const Place &place, const QStringList &known, Findings *findings);

/// The elements of a list that are no strings, though the library takes them as such.
void reportConvertedElements(const QVariant &list, const Place &place, Findings *findings);

void reportConverted(const QVariant &value, const Place &place, const QString &readAs, Findings *findings);

}
