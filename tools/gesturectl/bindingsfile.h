#pragma once

#include "application.h"

#include <QLockFile>

#include <optional>

// Writing a user's bindings.

namespace gesturectl {

/// Allows one change of the bindings at a time: a binding that another process saves between our read and our write
/// would be lost. The lock is a file beside the bindings, which only those who may change them can create, and lives as
/// long as this object. The constructor waits some seconds for another process. Where no file can be created, it locks
/// nothing: the bindings cannot be written there, or only directly.
class BindLock
{
public:
    explicit BindLock(const vellix::gesture::ApplicationPaths &paths);
    ~BindLock();
    BindLock(const BindLock &) = delete;
    BindLock &operator=(const BindLock &) = delete;

    /// Why the bindings must not be changed: another process still holds the lock.
    const std::optional<Failure> &failure() const { return m_failure; }

private:
    QLockFile m_file;
    QStringList m_created; // directories, the deepest first
    std::optional<Failure> m_failure;
};

/// Writes exactly these bindings; `gestures` were loaded with them. A save of all gestures would pin every default that
/// the user left alone.
Result<ExitStatus> writeBindings(const vellix::gesture::ApplicationPaths &paths, const Gestures &gestures,
                                 const Bindings &bindings);

/// The bindings of a file that must exist.
Result<Bindings> bindingsOfFile(const vellix::gesture::ApplicationPaths &paths);

/// The content of a file; empty if it cannot be read.
QByteArray contentOf(const QString &path);

}
