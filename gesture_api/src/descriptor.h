#pragma once

#include <fcntl.h>
#include <unistd.h>

#include <cerrno>
#include <string>

// The system's calls on files, where Qt lacks them: never inherited, never cut short by a signal.

namespace vellix {
namespace gesture {

/// An open file, closed with this object.
class Descriptor
{
public:
    explicit Descriptor(int descriptor) : m_descriptor(descriptor) {}
    ~Descriptor() { close(); }
    Descriptor(const Descriptor &) = delete;
    Descriptor &operator=(const Descriptor &) = delete;

    bool isOpen() const { return m_descriptor >= 0; }
    operator int() const { return m_descriptor; }

    bool close()
    {
        const int descriptor = m_descriptor;
        m_descriptor = -1;
        // Linux closes the descriptor even when a signal interrupts the call.
        return descriptor < 0 || ::close(descriptor) == 0 || errno == EINTR;
    }

private:
    int m_descriptor;
};

/// Repeats `call` until no signal interrupts it, and returns its result.
template <class Call>
auto untilNotInterrupted(const Call &call)
{
    auto result = call();
    while (result == -1 && errno == EINTR)
        result = call();
    return result;
}

/// Opens a file; -1 (and errno) on failure.
inline int openFile(const std::string &path, int flags, mode_t mode = 0)
{
    return untilNotInterrupted([&] { return ::open(path.c_str(), flags | O_CLOEXEC, mode); });
}

/// Waits until a file or directory is on disk.
inline bool sync(int descriptor)
{
    return untilNotInterrupted([&] { return ::fsync(descriptor); }) == 0;
}

}
}
