#pragma once

#include <algorithm>
#include <string_view>

namespace vellix {

/// Takes the first name off a list of names. Not a string stream: the first one of a process sets up all locales.
inline std::string_view takeFirst(std::string_view &list, char separator)
{
    const std::size_t length = std::min(list.find(separator), list.size());
    const std::string_view first = list.substr(0, length);
    list.remove_prefix(std::min(length + 1, list.size()));
    return first;
}

}
