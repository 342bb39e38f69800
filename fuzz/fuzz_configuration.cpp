#include "fuzzing.h"

using namespace vellix::gesture;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    static const fuzzing::Features features;
    QObject owner;
    const auto gestures =
            Configuration::fromVariant(fuzzing::document(data, size), &features, GestureService::predefinedZones,
                                       {{QStringLiteral("g"), QStringLiteral("a")}}, &owner);
    if (gestures.isRight())
        fuzzing::use(gestures.right());
    return 0;
}
