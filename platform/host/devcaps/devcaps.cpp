#include <vellix/platform/devcaps.h>
#include <vellix/platform/host.h>

#include <dirent.h>

#include <algorithm>
#include <cctype>
#include <initializer_list>
#include <vector>

// The kernel lists a front light as a backlight or as an LED with such a name. One with adjustable colour has separate
// warm and cold channels.

namespace vellix {
namespace devcaps {

static std::vector<std::string> entries(const std::string &directory)
{
    std::vector<std::string> names;
    DIR *const stream = opendir(directory.c_str());
    while (const dirent *entry = stream ? readdir(stream) : nullptr) {
        std::string name = entry->d_name;
        if (name == "." || name == "..")
            continue;
        std::transform(name.begin(), name.end(), name.begin(), [](unsigned char c) { return std::tolower(c); });
        names.push_back(name);
    }
    if (stream)
        closedir(stream);
    return names;
}

static bool hasWord(const std::string &name, std::initializer_list<const char *> words)
{
    return std::any_of(words.begin(), words.end(),
                       [&name](const char *word) { return name.find(word) != std::string::npos; });
}

static std::vector<std::string> frontlightChannels(const std::string &sysClass)
{
    std::vector<std::string> channels = entries(sysClass + "/backlight");
    for (const std::string &led : entries(sysClass + "/leds")) {
        if (hasWord(led, {"frontlight", "front-light", "front_light"}))
            channels.push_back(led);
    }
    return channels;
}

bool hasFrontlight(const std::string &sysClass)
{
    return !frontlightChannels(sysClass).empty();
}

// "warm white" is not a cold channel.
bool hasColourFrontlight(const std::string &sysClass)
{
    const auto isWarm = [](const std::string &name) { return hasWord(name, {"warm", "amber", "orange"}); };
    const auto isCold = [&isWarm](const std::string &name) {
        return !isWarm(name) && hasWord(name, {"cold", "cool", "white"});
    };
    const std::vector<std::string> channels = frontlightChannels(sysClass);
    return std::any_of(channels.begin(), channels.end(), isWarm)
            && std::any_of(channels.begin(), channels.end(), isCold);
}

}
}

static const char *const sysClass = "/sys/class";

bool device_has_frontlight(void)
{
    return vellix::devcaps::hasFrontlight(sysClass);
}

int hw_is_frontlight_color_supported(void)
{
    return vellix::devcaps::hasColourFrontlight(sysClass) ? 1 : 0;
}
