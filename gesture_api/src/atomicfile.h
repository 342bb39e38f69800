#pragma once

#include <vellix/either.h>

#include <QByteArray>
#include <QString>

namespace vellix {
namespace gesture {

/// Replaces the content of a file in one step: when this returns, or whenever the process or the power
/// goes, the file holds its old bytes or the new ones, and success means that they are on disk. Links
/// are followed and permissions kept. Where no new file may be made beside a writable one, and for a
/// device, it is written directly. Left is the system's reason why the file cannot be opened for
/// writing, right the number of bytes written or -1 when a later step failed.
Either<QString, qint64> writeAtomically(const QString &path, const QByteArray &bytes);

/// Makes the directory of a file with all missing parents, on disk when this returns. What could not be
/// made shows when the file is opened.
void makeDirectoriesFor(const QString &path);

}
}
