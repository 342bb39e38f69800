#pragma once

#include <stdbool.h>

/** @file
    libslateview: the device's task list and system services. Plain C. */

#pragma GCC visibility push(default)
#ifdef __cplusplus
extern "C" {
#endif

/** What is known of a running task. */
struct TaskInfo
{
    const char *name; /**< The program's name in UTF-8. */
};

/** Whether text can be read aloud. */
bool SvTTSSupported(void);

/** The process id of the current task; less than 1 when there is none. */
int GetCurrentTask(void);

/** The record of a task, or null when it is unknown. It stays the library's and is valid until the
    next call from the same thread. */
const struct TaskInfo *GetTaskInfo(int pid);

#ifdef __cplusplus
}
#endif
#pragma GCC visibility pop
