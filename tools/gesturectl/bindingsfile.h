#pragma once

#include "application.h"

#include <optional>

// Writing a user's bindings.

namespace gesturectl {

/// One change of the bindings at a time: what another process binds between our reading and our writing would be lost.
/// The lock is on the configuration, which is always there, and goes with the descriptor. Another's is waited for, for
/// some seconds; where there are no locks, there is none.
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
    const int m_descriptor;
    std::optional<Failure> m_failure;
};

/// Writes exactly these bindings, where `gestures` were loaded with them: a save of all gestures would pin every
/// default that the user left alone.
Result<ExitStatus> writeBindings(const vellix::gesture::ApplicationPaths &paths, const Gestures &gestures,
                                 const Bindings &bindings);

/// The bindings of a file that must be there.
Result<Bindings> bindingsOfFile(const vellix::gesture::ApplicationPaths &paths);

/// All of a file; nothing of one that cannot be read.
QByteArray contentOf(const QString &path);

}
