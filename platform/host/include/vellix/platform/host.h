#pragma once

#include <QtGlobal>

#include <string>

/// @file
/// What only the host's device libraries have. Nothing that is built for the device includes this.

namespace vellix {

namespace EitherPrivate {
/// The switch behind shouldExitOnError(); off at start.
Q_DECL_EXPORT void setExitOnError(bool on);
}

/// The queries of libdevcaps on a given tree in place of "/sys/class".
namespace devcaps {
/// What device_has_frontlight() says of this tree: it has a backlight, or an LED named as a front light.
Q_DECL_EXPORT bool hasFrontlight(const std::string &sysClass);
/// What hw_is_frontlight_color_supported() says of it: a warm and a cold channel are among those.
Q_DECL_EXPORT bool hasColourFrontlight(const std::string &sysClass);
}

}
