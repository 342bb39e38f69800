#include <vellix/platform/baseutil.h>

#include <iostream>
#include <sstream>

namespace vellix {
namespace utilities {
namespace log {
namespace cb {

static void writeLine(const char *level, const std::string &file, int line, const std::string &function,
                      const Writer &writer)
{
    std::ostringstream text;
    text << '[' << level << "] ";
    if (writer)
        writer(text);
    text << " [" << CodeLocation::toString(file, line) << ", " << function << "]\n";
    std::cerr << text.str() << std::flush;
}

void error(const std::string &file, int line, const std::string &function, const Writer &writer)
{
    writeLine("error", file, line, function, writer);
}

void warn(const std::string &file, int line, const std::string &function, const Writer &writer)
{
    writeLine("warn", file, line, function, writer);
}

}
}
}
}
