#pragma once

#include <QtGlobal>

#include <functional>
#include <iosfwd>
#include <list>
#include <string>
#include <vector>

/// @file
/// libbaseutil: errors, logging, path prefixes and terminal text. Free of everything but plain
/// C++, so that every other library may stand on it. All text is UTF-8.

/// Everything that libgesture_api and the device libraries offer to C++.
namespace vellix {

/// The place in a source file where an error was made.
struct Q_DECL_EXPORT CodeLocation
{
    /// The source file as it is printed: a path or only a name.
    std::string file;
    /// Counted from 1.
    qint32 line;

    /// The printed form, "FILE:LINE".
    static std::string toString(const std::string &file, int line);
};

/// A chain of causes, first cause first. The usual error has exactly one record.
class Q_DECL_EXPORT Error
{
public:
    /// One cause.
    struct err
    {
        /// The place that found it.
        CodeLocation location;
        /// What is wrong, in UTF-8, without the location.
        std::string message;
    };

    /// An error without records; prints as "undefined error".
    Error() = default;
    /// An error with this one record.
    Error(const CodeLocation &location, const std::string &message);
    /// The same; a null message is an empty one.
    Error(const CodeLocation &location, const char *message);

    /// The causes, first cause first; a function that knows more may append its own.
    std::list<err> records;
};

/// One line: "FILE:LINE: MESSAGE" of every record, joined by ", then ".
Q_DECL_EXPORT std::ostream &operator<<(std::ostream &out, const Error &error);

/// The switch that says what an unexpected left value does to the process.
namespace EitherPrivate {
/// Whether an unexpected left value ends the process (see Either::getOrErr).
Q_DECL_EXPORT bool shouldExitOnError();
}

/// What libbaseutil offers for the work of every day.
namespace utilities {
/// The device's log.
namespace log {
/// Log lines whose text a callback writes.
namespace cb {
/// Appends the body of a log line to the stream it is given and returns that stream.
using Writer = std::function<std::ostream &(std::ostream &)>;

/// Logs one line as an error: what the writer writes (nothing for an empty one) and the place that it comes from.
Q_DECL_EXPORT void error(const std::string &file, int line, const std::string &function, const Writer &writer);
/// Logs one line as a warning, likewise.
Q_DECL_EXPORT void warn(const std::string &file, int line, const std::string &function, const Writer &writer);
}
}
}

/// Expands the path prefixes "${USERDATA}" and "${SYSTEMDATA}" into the user's and the system's
/// data directory. Only a leading prefix counts; every other path stays as it is. A path that would lead
/// out of its directory, by the names in it, becomes one below that cannot exist.
class Q_DECL_EXPORT PathResolver
{
public:
    /// A resolver with the directories as they are now.
    static PathResolver newDefault();

    /// The path with its prefix expanded; nothing is asked of the file system.
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

/// Colours of a terminal.
namespace ansicolor {
/// The escape sequence that sets a colour: `target` 38 is the text, 48 its background, `mode` 2
/// says that `colour` is 0xRRGGBB. `enabled` 0 gives an empty text.
Q_DECL_EXPORT std::string beginSeq(int target, int mode, int colour, int enabled);
}

/// Text in columns.
namespace Utf8 {
/// The lines, each padded with blanks on its right to the display width of the widest.
Q_DECL_EXPORT std::vector<std::string> alignLeftByWhitespace(const std::vector<std::string> &lines);
}

}
