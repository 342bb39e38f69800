#include <vellix/platform/baseutil.h>

#include <QString>
#include <QVector>

#include <locale.h>
#include <wchar.h>

#include <algorithm>

namespace vellix {
namespace ansicolor {

std::string beginSeq(int target, int mode, int colour, int enabled)
{
    if (!enabled)
        return {};
    const auto channel = [colour](int shift) { return std::to_string((colour >> shift) & 0xff); };
    return "\033[" + std::to_string(target) + ";" + std::to_string(mode) + ";" + channel(16) + ";" + channel(8) + ";"
            + channel(0) + "m";
}

}

namespace Utf8 {

// In a UTF-8 locale the C library knows the width of every character. This locale comes with it and is in use for one
// call only, whatever locale the process has.
class Utf8Locale
{
public:
    Utf8Locale() : m_locale(newlocale(LC_CTYPE_MASK, "C.UTF-8", nullptr)), m_previous(uselocale(m_locale)) {}
    ~Utf8Locale()
    {
        uselocale(m_previous);
        if (m_locale)
            freelocale(m_locale);
    }
    Utf8Locale(const Utf8Locale &) = delete;
    Utf8Locale &operator=(const Utf8Locale &) = delete;

private:
    locale_t m_locale;
    locale_t m_previous;
};

static int displayWidth(const std::string &line)
{
    int width = 0;
    const QVector<uint> characters = QString::fromStdString(line).toUcs4();
    for (const uint character : characters)
        width += std::max(0, wcwidth(static_cast<wchar_t>(character)));
    return width;
}

std::vector<std::string> alignLeftByWhitespace(const std::vector<std::string> &lines)
{
    const Utf8Locale locale;
    std::vector<int> widths;
    std::transform(lines.begin(), lines.end(), std::back_inserter(widths), displayWidth);
    const int widest = widths.empty() ? 0 : *std::max_element(widths.begin(), widths.end());

    std::vector<std::string> aligned = lines;
    for (std::size_t i = 0; i < aligned.size(); ++i)
        aligned[i].append(static_cast<std::size_t>(widest - widths[i]), ' ');
    return aligned;
}

}
}
