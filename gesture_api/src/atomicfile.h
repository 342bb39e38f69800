#pragma once

#include <vellix/either.h>

#include <QByteArray>
#include <QString>

#include <functional>
#include <string>

namespace vellix {
namespace gesture {

/// Why a file was not written, and how far that went.
struct SaveFailure
{
    enum Step {
        Other, // nothing was tried, and the reason says all
        Opening,
        Writing
    };
    Step step;
    QString reason; // the system's, except for Other

    /// The step, the reason and the path of the file.
    QString message(const QString &path) const;
};

/// Replaces the content of a file in one step: when this returns, or whenever the process or the power
/// goes, the file holds its old bytes or the new ones, and success means that they are on disk. Links
/// are followed, and who may do what with the file stays. Where no new file may be made beside a writable one, or none
/// that is alike, and for a device, it is written directly; a full disk then still leaves the old bytes. Right is
/// the number of bytes written.
Either<SaveFailure, qint64> writeAtomically(const QString &path, const QByteArray &bytes);

/// Copies an open file to a new one, on disk when this returns: as accessible as the original, or else to its new owner
/// alone. `isGood` looks at the copy's descriptor. Returns 0, or the error and leaves nothing behind: EEXIST only where
/// there is anything.
int copyToNew(int original, const QString &path, const std::function<bool(int)> &isGood);

/// Makes the directory of a file with all missing parents, on disk when this returns. What could not be
/// made shows when the file is opened.
void makeDirectoriesFor(const QString &path);

/// The directory that a file is in: "." for a bare name.
std::string directoryOf(const std::string &path);

}
}
