#pragma once

#include "subject.h"

namespace analysis {

/// Reads each entry by itself, so that the faults of all are found, each in the library's own words and at the value
/// that it refuses. A refused value is left out, or kept for the references to it. The objects belong to `owner`.
Subject readSubject(const JsonText &text, const QVariant &document, const vellix::gesture::FeaturesProvider *features,
                    QObject *owner, Findings *findings);

}
