#pragma once

#include <QByteArray>

#include <fcntl.h>

#include <cerrno>

namespace vellix {
namespace components {

/// Opens a file to read it without waiting, neither for the other end of a pipe nor for a device. Returns a negative
/// value (and errno) on failure.
inline int openAtOnce(const QByteArray &path)
{
    int descriptor;
    do {
        descriptor = open(path.constData(), O_RDONLY | O_NONBLOCK | O_NOCTTY | O_CLOEXEC);
    } while (descriptor < 0 && errno == EINTR);
    return descriptor;
}

}
}
