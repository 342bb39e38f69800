#pragma once

#include "descriptor.h"

#include <QString>

namespace vellix {
namespace gesture {

/// While it lives, no other save of this library changes the directory of a file: what was compared with is then what
/// is replaced. Waits for a second at most; a save goes on without a lock that is not to be had.
class SaveLock
{
public:
    explicit SaveLock(const QString &file);

private:
    const Descriptor m_directory;
};

}
}
