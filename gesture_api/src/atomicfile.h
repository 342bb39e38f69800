#pragma once

#include <vellix/either.h>

#include <QByteArray>
#include <QString>

#include <functional>
#include <string>

namespace vellix {
namespace gesture {

/// Why a file was not written, and at which step.
struct SaveFailure
{
    enum Step {
        Other, // nothing was attempted, and the reason is the whole message
        Opening,
        Writing
    };
    Step step;
    QString reason; // the system's, except for Other

    /// The step, the reason and the path of the file.
    QString message(const QString &path) const;
};

/// Replaces the content of a file in one step: when this returns, or after a crash or a power failure, the file holds
/// its old bytes or the new ones. Success means that the new ones are on disk. Follows links and keeps the permissions.
/// Writes directly to a device, and to a writable file beside which no new file, or none with the same permissions, can
/// be made; a full disk then still leaves the old bytes. Right is the number of bytes written.
Either<SaveFailure, qint64> writeAtomically(const QString &path, const QByteArray &bytes);

/// Copies an open file to a new one, on disk when this returns: as accessible as the original, or else only for its new
/// owner. `isGood` checks the copy's descriptor. Returns 0, or the error and leaves nothing behind. EEXIST always means
/// that the path exists.
int copyToNew(int original, const QString &path, const std::function<bool(int)> &isGood);

/// Makes the directory of a file with all missing parents, on disk when this returns. A failure shows when the file is
/// opened.
void makeDirectoriesFor(const QString &path);

/// The directory of a file: "." for a bare name.
std::string directoryOf(const std::string &path);

}
}
