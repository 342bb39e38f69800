#pragma once

#include <QByteArray>
#include <QString>

namespace vellix {
namespace components {

/// What is at a path.
struct FileBytes
{
    enum Kind { Regular, Directory, Other };

    Kind kind = Regular;
    /// Why a regular file cannot be read. Empty if it could.
    QString error;
    QByteArray bytes;
};

/// Reads a regular file or a Qt resource. Never waits: a pipe would block, and a device might never end.
FileBytes readFile(const QString &path);

}
}
