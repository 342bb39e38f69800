#pragma once

#include <analysis/finding.h>
#include <analysis/format.h>

// The rules of keys for any object of any file.

namespace analysis {

/// Reports duplicate names in all objects of a file.
void reportDuplicateKeys(const JsonText &text, Findings *findings);

void reportUnknownKeys(const QVariantMap &object, const Place &place, const Fields &fields, Findings *findings);

/// Reports the values of another type that the library converts.
void reportConvertedValues(const QVariantMap &object, const Place &place, const Fields &fields, Findings *findings);
void reportConverted(const QVariant &value, const Place &place, const QString &readAs, Findings *findings);

}
