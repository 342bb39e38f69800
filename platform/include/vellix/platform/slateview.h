#pragma once

#include <stdbool.h>

/** @file
    libslateview: the device's task list and system services. Plain C. */

#pragma GCC visibility push(default)
#ifdef __cplusplus
extern "C" {
#endif

/** The record of a running task. */
struct TaskInfo
{
    const char *name; /**< The program's name in UTF-8. */
};

/** Whether the device can read text aloud. */
bool SvTTSSupported(void);

/** The process id of the current task; less than 1 if there is none. */
int GetCurrentTask(void);

/** The record of a task, or null if the task is unknown. It belongs to the library and is valid until the
    next call from the same thread. */
const struct TaskInfo *GetTaskInfo(int pid);

#ifdef __cplusplus
}
#endif
#pragma GCC visibility pop
