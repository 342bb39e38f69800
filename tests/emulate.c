/* Preloaded into a test and all programs that it starts, of the machine and of the device: if they execute a program of
   the device, it runs under its emulator; the kernel would refuse it. Compiled for both, with
       EMULATOR  the emulator's path
       SYSROOT   where it looks for the device's libraries
       MACHINE   the device's number in an ELF header (EM_ARM, EM_AARCH64) */
#define _GNU_SOURCE
#include <elf.h>
#include <errno.h>
#include <fcntl.h>
#include <limits.h>
#include <stdlib.h>
#include <string.h>
#include <sys/syscall.h>
#include <unistd.h>

static int is_of_device(const char *path)
{
    Elf32_Ehdr header; /* as far as it is read, that of 64 bit is the same */
    const int file = open(path, O_RDONLY | O_CLOEXEC);
    const ssize_t size = file < 0 ? 0 : read(file, &header, sizeof header);
    if (file >= 0)
        close(file);
    return size == sizeof header && memcmp(header.e_ident, ELFMAG, SELFMAG) == 0 && header.e_machine == MACHINE;
}

int execve(const char *path, char *const arguments[], char *const environment[])
{
    const int before = errno;
    const int is_emulated = is_of_device(path);
    errno = before;
    if (!is_emulated)
        return syscall(SYS_execve, path, arguments, environment);
    size_t count = 0;
    while (arguments[count])
        ++count;
    /* On the stack: this may be a child that shares its parent's memory. */
    const char *const first[] = {EMULATOR, "-L", SYSROOT, "-0", arguments[0], path};
    const char *emulated[count + 6];
    memcpy(emulated, first, sizeof first);
    memcpy(emulated + 6, arguments + 1, count * sizeof *emulated); /* with the null at the end */
    return syscall(SYS_execve, EMULATOR, emulated, environment);
}

int execv(const char *path, char *const arguments[])
{
    return execve(path, arguments, environ);
}

int execvpe(const char *name, char *const arguments[], char *const environment[])
{
    if (strchr(name, '/'))
        return execve(name, arguments, environment);
    int failure = ENOENT;
    for (const char *directory = getenv("PATH"); directory && *directory;) {
        const size_t length = strcspn(directory, ":");
        char path[PATH_MAX];
        if (length + strlen(name) + 2 <= sizeof path) {
            memcpy(path, directory, length);
            path[length] = '/';
            strcpy(path + length + 1, name);
            execve(path, arguments, environment);
            if (errno != ENOENT && errno != ENOTDIR)
                failure = errno;
        }
        directory += length + (directory[length] == ':');
    }
    errno = failure;
    return -1;
}

int execvp(const char *name, char *const arguments[])
{
    return execvpe(name, arguments, environ);
}

#if (MACHINE == EM_ARM && defined __arm__) || (MACHINE == EM_AARCH64 && defined __aarch64__)

#include <dlfcn.h>
#include <stdarg.h>
#include <sys/prctl.h>
#include <sys/wait.h>

/* The emulator claims to support pidfds but does not, so Qt would wait for and kill processes at random. Qt tests for
   them with this call, and this is the result on a kernel without them. */
long syscall(long number, ...)
{
    static long (*next)(long, ...);
    long words[6];
    va_list list;
    va_start(list, number);
    for (int i = 0; i < 6; ++i)
        words[i] = va_arg(list, long);
    va_end(list);
    if (number == SYS_waitid && words[0] == P_PIDFD) {
        errno = EINVAL;
        return -1;
    }
    if (!next)
        next = (long (*)(long, ...))dlsym(RTLD_NEXT, "syscall");
    return next(number, words[0], words[1], words[2], words[3], words[4], words[5]);
}

/* To the kernel the process is the emulator. */
__attribute__((constructor)) static void take_name(int count, char **arguments)
{
    const char *slash = count > 0 ? strrchr(arguments[0], '/') : NULL;
    if (count > 0)
        prctl(PR_SET_NAME, slash ? slash + 1 : arguments[0]);
}

#endif
