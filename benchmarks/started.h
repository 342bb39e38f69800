#pragma once

#include <cstdlib>
#include <ctime>

#include <fcntl.h>
#include <sys/resource.h>
#include <unistd.h>

/// The report of a started program at the moment when its work is done.
struct Started
{
    double at;            // the machine's monotonic clock, in nanoseconds
    double processorTime; // of the process, in nanoseconds
    double residentBytes;
    double pageFaults; // without those that read a disk
};

inline double nanosecondsOf(clockid_t clock)
{
    timespec now;
    clock_gettime(clock, &now);
    return static_cast<double>(now.tv_sec) * 1e9 + static_cast<double>(now.tv_nsec);
}

inline double monotonicNanoseconds()
{
    return nanosecondsOf(CLOCK_MONOTONIC);
}

/// Reads without the buffers of the C library: they would have the heap tidied up, within the measured process.
inline double residentBytes()
{
    char text[128] = {};
    const int file = open("/proc/self/statm", O_RDONLY | O_CLOEXEC);
    const ssize_t size = read(file, text, sizeof text - 1);
    close(file);
    char *rest = text;
    std::strtol(rest, &rest, 10); // the first number is the address space
    return size > 0 ? static_cast<double>(std::strtol(rest, nullptr, 10) * sysconf(_SC_PAGESIZE)) : 0;
}

/// Writes it to the standard output and ends the process at once: what a program destroys is no part of its start. Only
/// at a normal end does the dynamic linker report what it did.
[[noreturn]] inline void endStarted()
{
    Started started{monotonicNanoseconds(), nanosecondsOf(CLOCK_PROCESS_CPUTIME_ID), residentBytes(), 0};
    rusage usage;
    getrusage(RUSAGE_SELF, &usage);
    started.pageFaults = static_cast<double>(usage.ru_minflt);
    const bool isWritten = write(STDOUT_FILENO, &started, sizeof started) == sizeof started;
    const int status = started.residentBytes > 0 && isWritten ? 0 : 1;
    if (std::getenv("LD_DEBUG"))
        std::exit(status);
    _exit(status);
}
