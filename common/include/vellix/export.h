#pragma once

#include <QtGlobal>

/// @file
/// What the library's headers mark their classes with.

/// Marks what libgesture_api offers; everything else in it is hidden.
#define GESTURE_API_EXPORT Q_DECL_EXPORT
