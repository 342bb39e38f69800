#pragma once

#include <cstdio>
#include <ctime>

#include <unistd.h>

/// The report of a started program at the moment when its work is done.
struct Started
{
    double at; // the machine's monotonic clock, in nanoseconds
    double residentBytes;
};

inline double monotonicNanoseconds()
{
    timespec now;
    clock_gettime(CLOCK_MONOTONIC, &now);
    return static_cast<double>(now.tv_sec) * 1e9 + static_cast<double>(now.tv_nsec);
}

/// Writes it to the standard output; returns the exit status.
inline int tellStarted()
{
    Started started{monotonicNanoseconds(), 0};
    long size = 0;
    long resident = 0;
    if (FILE *statm = std::fopen("/proc/self/statm", "r")) {
        if (std::fscanf(statm, "%ld %ld", &size, &resident) == 2)
            started.residentBytes = static_cast<double>(resident) * static_cast<double>(sysconf(_SC_PAGESIZE));
        std::fclose(statm);
    }
    return started.residentBytes > 0 && write(STDOUT_FILENO, &started, sizeof started) == sizeof started ? 0 : 1;
}
