#pragma once

#include <QtGlobal>

#include <string>

/// @file
/// Functions of the host's libraries only. Code for the device must not include this.

namespace vellix {

namespace EitherPrivate {
/// Sets shouldExitOnError(), initially false.
Q_DECL_EXPORT void setExitOnError(bool on);
}

/// The queries of libdevcaps on a given directory instead of "/sys/class".
namespace devcaps {
/// device_has_frontlight() for this directory: it contains a backlight, or an LED with the name of a front light.
Q_DECL_EXPORT bool hasFrontlight(const std::string &sysClass);
/// hw_is_frontlight_color_supported() for this directory: these include a warm and a cold channel.
Q_DECL_EXPORT bool hasColourFrontlight(const std::string &sysClass);
}

}
