#include "fuzzing.h"

#include <gesture_api/applicationpaths.h>

using namespace vellix::gesture;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    const auto rules = ApplicationPathsConfiguration::fromVariant(fuzzing::document(data, size));
    if (rules.isLeft())
        return 0;
    for (const char *app : {"", "reader", "qmlplugindump"}) {
        const auto paths = rules.right().appPaths(QString::fromLatin1(app));
        fuzzing::require(paths.isLeft() || paths.right().currentPath().startsWith(rules.right().currentPath()));
    }
    return 0;
}
