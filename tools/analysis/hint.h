#pragma once

#include "subject.h"

namespace analysis {

/// A correction for a value that the library refuses with this message; empty if none is known.
QString hintFor(const QString &words, const Subject &subject);

/// "Did you mean 'NAME'?" with the nearest known name; empty if none is near.
QString nearestHint(const QString &name, const QStringList &known);

}
