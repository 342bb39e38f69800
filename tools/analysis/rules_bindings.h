#pragma once

#include "subject.h"

namespace analysis {

/// What a user's choices do to a configuration: `choices` are those of the file, by the id of a gesture.
void reportBindings(const Subject &subject, const QMap<QString, QVariant> &choices, const Place &place,
                    Findings *findings);

}
