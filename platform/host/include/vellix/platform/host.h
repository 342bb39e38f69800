#pragma once

#include <QtGlobal>

#include <string>

// What only the host's device libraries have. Nothing that is built for the device includes this.

namespace vellix {

namespace EitherPrivate {
/// The switch behind shouldExitOnError(); off at start.
Q_DECL_EXPORT void setExitOnError(bool on);
}

namespace devcaps {
/// The queries of libdevcaps on a given tree in place of "/sys/class".
Q_DECL_EXPORT bool hasFrontlight(const std::string &sysClass);
Q_DECL_EXPORT bool hasColourFrontlight(const std::string &sysClass);
}

}
