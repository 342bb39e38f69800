#pragma once

#include "subject.h"

namespace analysis {

/// What to write in place of what the library refuses with these words; empty when that is unknown.
QString hintFor(const QString &words, const Subject &subject);

/// "Did you mean 'NAME'?" with the known name that is nearest; empty when none is near.
QString nearestHint(const QString &name, const QStringList &known);

}
