#pragma once

#include "subject.h"

namespace analysis {

/// Reads each entry by itself to find the faults of all, each with the library's own message and at the refused value.
/// A refused value is left out, or kept for the references to it. The objects belong to `owner`.
Subject readSubject(const JsonText &text, const QVariant &document, const vellix::gesture::FeaturesProvider *features,
                    QObject *owner, Findings *findings);

}
