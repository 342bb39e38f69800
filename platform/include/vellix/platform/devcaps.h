#pragma once

#include <stdbool.h>

/** @file
    libdevcaps: the capabilities of the hardware. Plain C. */

#pragma GCC visibility push(default)
#ifdef __cplusplus
extern "C" {
#endif

/** Whether the device has a front light. */
bool device_has_frontlight(void);

/** Not 0 if the colour of the front light can be changed. */
int hw_is_frontlight_color_supported(void);

#ifdef __cplusplus
}
#endif
#pragma GCC visibility pop
