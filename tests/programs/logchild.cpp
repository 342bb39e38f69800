// Logs its input to the platform's own log, as an error, as a warning and as an empty record: logchild FILE FUNCTION

#include <vellix/platform/baseutil.h>

#include <iostream>
#include <iterator>
#include <ostream>

using namespace vellix::utilities;

int main(int argc, char *argv[])
{
    if (argc != 3)
        return 99;
    const std::string message{std::istreambuf_iterator<char>(std::cin), std::istreambuf_iterator<char>()};
    const auto write = [&message](std::ostream &out) -> std::ostream & { return out << message; };
    log::cb::error(argv[1], 7, argv[2], write);
    log::cb::warn(argv[1], 8, argv[2], write);
    log::cb::warn(argv[1], 9, argv[2], {});
}
