#pragma once

#include "atomicfile.h"
#include "filestate.h"

namespace vellix {
namespace gesture {

/// Keeps a file that is about to be overwritten and holds what was refused: a copy beside it named "<file
/// name>.rejected", or ".rejected.2" to ".rejected.8" where there is one, on disk when this returns and readable by
/// nobody who can not read the file. A file that holds anything else by now is not kept. Fails when the file may not be
/// written anyway, or when it can not be kept: then it must not be overwritten.
Either<SaveFailure, bool> keepRejected(const QString &path, const FileState &refused);

}
}
