#include <vellix/platform/baseutil.h>

#include <cstdio>
#include <sstream>

namespace vellix {
namespace utilities {
namespace log {
namespace cb {

// The length of the character at this byte; 0 for a control character and for invalid UTF-8.
static std::size_t printableLength(const std::string &text, std::size_t at)
{
    const auto byte = [&text](std::size_t i) { return i < text.size() ? static_cast<unsigned char>(text[i]) : 0U; };
    const unsigned lead = byte(at);
    if (lead < 0x80)
        return lead >= 0x20 && lead != 0x7f ? 1 : 0;
    const std::size_t length = lead >> 5 == 6 ? 2 : lead >> 4 == 14 ? 3 : lead >> 3 == 30 ? 4 : 0;
    unsigned code = lead & (0x7fU >> length);
    for (std::size_t i = 1; i < length; ++i) {
        if (byte(at + i) >> 6 != 2)
            return 0;
        code = code << 6 | (byte(at + i) & 0x3f);
    }
    static const unsigned least[] = {0x110000, 0, 0xa0, 0x800, 0x10000}; // below 0xa0 are control characters
    const bool isCharacter = code >= least[length] && code < 0x110000 && (code < 0xd800 || code > 0xdfff);
    return isCharacter ? length : 0;
}

// One record is one line without control sequences: other bytes are escaped.
static std::string printable(const std::string &text)
{
    static const char *const digits = "0123456789abcdef";
    std::string all;
    for (std::size_t i = 0; i < text.size();) {
        const std::size_t length = printableLength(text, i);
        const auto byte = static_cast<unsigned char>(text[i]);
        all += length > 0 ? text.substr(i, length) : std::string("\\x") + digits[byte >> 4] + digits[byte & 15];
        i += length > 0 ? length : 1;
    }
    return all;
}

static void writeLine(const char *level, const std::string &file, int line, const std::string &function,
                      const Writer &writer)
{
    std::ostringstream text;
    text << '[' << level << "] ";
    if (writer)
        writer(text);
    text << " [" << CodeLocation::toString(file, line) << ", " << function << ']';
    // Not std::cerr: its header would set up the streams and locales of every program that starts.
    const std::string record = printable(text.str()) + '\n';
    std::fwrite(record.data(), 1, record.size(), stderr);
    std::fflush(stderr);
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
