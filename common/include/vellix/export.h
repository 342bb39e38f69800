#pragma once

#include <QtGlobal>

/// @file
/// The export macro.

/// Exports a class or function from libgesture_api. All other symbols are hidden.
#define GESTURE_API_EXPORT Q_DECL_EXPORT
