#pragma once

#include <QtGlobal>

#include <functional>
#include <iosfwd>
#include <list>
#include <string>
#include <vector>

// libbaseutil: errors, logging, path prefixes and terminal text. Free of everything but plain
// C++, so that every other library may stand on it. All text is UTF-8.

namespace vellix {

/// The place in a source file where an error was made.
struct Q_DECL_EXPORT CodeLocation
{
    std::string file;
    qint32 line;

    /// The printed form, "FILE:LINE".
    static std::string toString(const std::string &file, int line);
};

/// A chain of causes, first cause first. The usual error has exactly one record.
class Q_DECL_EXPORT Error
{
public:
    struct err
    {
        CodeLocation location;
        std::string message;
    };

    /// An error without records; prints as "undefined error".
    Error() = default;
    Error(const CodeLocation &location, const std::string &message);
    Error(const CodeLocation &location, const char *message);

    std::list<err> records;
};

/// One line: "FILE:LINE: MESSAGE" of every record.
Q_DECL_EXPORT std::ostream &operator<<(std::ostream &out, const Error &error);

namespace EitherPrivate {
/// Whether an unexpected left value ends the process (see Either::getOrErr).
Q_DECL_EXPORT bool shouldExitOnError();
}

namespace utilities {
namespace log {
namespace cb {
/// Appends the body of a log line to the stream it is given and returns that stream.
using Writer = std::function<std::ostream &(std::ostream &)>;

/// One line at the level that the name says: file, line and what the writer writes.
Q_DECL_EXPORT void error(const std::string &file, int line, const std::string &function, const Writer &writer);
Q_DECL_EXPORT void warn(const std::string &file, int line, const std::string &function, const Writer &writer);
}
}
}

/// Expands the path prefixes "${USERDATA}" and "${SYSTEMDATA}" into the user's and the system's
/// data directory. Only a leading prefix counts; every other path stays as it is.
class Q_DECL_EXPORT PathResolver
{
public:
    /// A resolver with the directories as they are now.
    static PathResolver newDefault();

    std::string resolvePreffix(const std::string &path) const;
    /// Whether the expanded path names something that exists.
    bool exists(const std::string &path) const;
    /// Removes the file that the expanded path names; false when nothing was removed.
    bool remove(const std::string &path) const;

private:
    PathResolver(const std::string &userData, const std::string &systemData);

    std::string m_userData;
    std::string m_systemData;
};

namespace ansicolor {
/// The escape sequence that sets a colour: `target` 38 is the text, 48 its background, `mode` 2
/// says that `colour` is 0xRRGGBB. `enabled` 0 gives an empty text.
Q_DECL_EXPORT std::string beginSeq(int target, int mode, int colour, int enabled);
}

namespace Utf8 {
/// The lines, each padded with blanks on its right to the display width of the widest.
Q_DECL_EXPORT std::vector<std::string> alignLeftByWhitespace(const std::vector<std::string> &lines);
}

}
