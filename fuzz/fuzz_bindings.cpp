#include "fuzzing.h"

#include <sstream>

using namespace vellix::gesture;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    const auto bindings = Configuration::ActionBindings::fromVariant(fuzzing::document(data, size).toMap());
    if (bindings.isLeft()) {
        std::ostringstream out;
        out << bindings.left();
        fuzzing::require(!out.str().empty());
        return 0;
    }
    QObject owner;
    QList<Gesture *> gestures;
    for (auto binding = bindings.right().cbegin(); binding != bindings.right().cend(); ++binding) {
        gestures.append(new Gesture(binding.key(), {}, Gesture::Tap, Gesture::wholeZone, Gesture::NoDirection, {},
                                    new Action(*binding, {}, {}), nullptr, {}, &owner));
    }
    fuzzing::roundTrip(gestures);
    return 0;
}
