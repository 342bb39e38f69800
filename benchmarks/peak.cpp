// Prints the bytes that a load at S has allocated at most at one time. Its own allocation functions count them: a
// sampling profiler would miss the peak.

#include "sample.h"

#include <gesture_api/configuration.h>

#include <QCoreApplication>

#include <malloc.h>

#include <algorithm>
#include <cstdio>

static long allocated = 0;
static long peak = 0;

static void *counted(void *block)
{
    allocated += static_cast<long>(malloc_usable_size(block));
    peak = std::max(peak, allocated);
    return block;
}

static void *uncounted(void *block)
{
    allocated -= static_cast<long>(malloc_usable_size(block));
    return block;
}

extern "C" {
void *__libc_malloc(std::size_t size);
void *__libc_calloc(std::size_t count, std::size_t size);
void *__libc_realloc(void *block, std::size_t size);
void __libc_free(void *block);

Q_DECL_EXPORT void *malloc(std::size_t size)
{
    return counted(__libc_malloc(size));
}

Q_DECL_EXPORT void *calloc(std::size_t count, std::size_t size)
{
    return counted(__libc_calloc(count, size));
}

Q_DECL_EXPORT void *realloc(void *block, std::size_t size)
{
    return counted(__libc_realloc(uncounted(block), size));
}

Q_DECL_EXPORT void free(void *block)
{
    __libc_free(uncounted(block));
}
}

using namespace vellix::gesture;

int main(int argc, char *argv[])
{
    QCoreApplication app(argc, argv);
    const SampleTree tree(sizeS);
    const SampleFeatures features;
    QObject owner;
    const auto load = [&] {
        return Configuration::loadJson(tree.defaultFile(), &features, GestureService::predefinedZones, {}, &owner);
    };
    load(); // the first one makes what all share
    const long before = peak = allocated;
    const bool isLoaded = load().isRight();
    std::printf("%ld\n", peak - before);
    return isLoaded ? 0 : 1;
}
