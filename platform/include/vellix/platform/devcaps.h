#pragma once

#include <stdbool.h>

/* libdevcaps: what the hardware can do. */

#pragma GCC visibility push(default)
#ifdef __cplusplus
extern "C" {
#endif

/** Whether the device has a front light. */
bool device_has_frontlight(void);

/** Not 0 when the colour of the front light can be changed. */
int hw_is_frontlight_color_supported(void);

#ifdef __cplusplus
}
#endif
#pragma GCC visibility pop
