#pragma once

#include "subject.h"

namespace analysis {

/// A correction for a value that the library refuses with these words; empty when none is known.
QString hintFor(const QString &words, const Subject &subject);

/// "Did you mean 'NAME'?" with the known name that is nearest; empty when none is near.
QString nearestHint(const QString &name, const QStringList &known);

}
