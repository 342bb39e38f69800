#pragma once

#include "atomicfile.h"
#include "filestate.h"

namespace vellix {
namespace gesture {

/// Copies a refused file before it is overwritten: to "<file name>.rejected", or ".rejected.2" to ".rejected.8" if that
/// exists. The copy is on disk when this returns, and only readers of the file can read it. Does not copy a file that
/// has changed since. Fails if the file is not writable anyway, or if the copy fails: then it must not be overwritten.
Either<SaveFailure, bool> keepRejected(const QString &path, const FileState &refused);

}
}
