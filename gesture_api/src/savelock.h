#pragma once

#include "descriptor.h"

#include <QString>

namespace vellix {
namespace gesture {

/// While it lives, no other save of this library changes the directory of a file: the file that was compared is the one
/// that is replaced. Waits for a second at most; without a lock a save goes on.
class SaveLock
{
public:
    explicit SaveLock(const QString &file);

private:
    const Descriptor m_directory;
};

}
}
