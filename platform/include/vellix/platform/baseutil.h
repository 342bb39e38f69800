#pragma once

#include <QtGlobal>

#include <functional>
#include <iosfwd>
#include <list>
#include <string>
#include <vector>

/// @file
/// libbaseutil: errors, logging, path prefixes and terminal text. Its interface needs only the C++ standard library and
/// Qt's integer types, so that every other library can use it. All text is UTF-8.

/// The C++ interface of libgesture_api and of the device libraries.
namespace vellix {

/// The place in a source file where an error occurred.
struct Q_DECL_EXPORT CodeLocation
{
    /// The source file as printed: a path or a name.
    std::string file;
    /// The line in it, counted from 1.
    qint32 line;

    /// The printed form, "FILE:LINE".
    static std::string toString(const std::string &file, int line);
};

/// A chain of causes, first cause first. An error usually has exactly one record.
class Q_DECL_EXPORT Error
{
public:
    /// One cause.
    struct err
    {
        /// The place that detected it.
        CodeLocation location;
        /// The message in UTF-8, without the location.
        std::string message;
    };

    /// An error without records. It prints as "undefined error".
    Error() = default;
    /// An error with this one record.
    Error(const CodeLocation &location, const std::string &message);
    /// The same. A null message counts as empty.
    Error(const CodeLocation &location, const char *message);

    /// The causes, first cause first. A function can append its own.
    std::list<err> records;
};

/// Writes one line: "FILE:LINE: MESSAGE" for every record, joined by ", then ".
Q_DECL_EXPORT std::ostream &operator<<(std::ostream &out, const Error &error);

/// The device's decision about unexpected errors.
namespace EitherPrivate {
/// Whether an unexpected left value ends the process (see Either::getOrErr()).
Q_DECL_EXPORT bool shouldExitOnError();
}

/// Utilities of libbaseutil.
namespace utilities {
/// The device's log.
namespace log {
/// Logging with a callback that writes the text.
namespace cb {
/// Writes the text of a log line to the given stream and returns the stream.
using Writer = std::function<std::ostream &(std::ostream &)>;

/// Logs one line as an error: the writer's text (none if the writer is empty) and the given place.
Q_DECL_EXPORT void error(const std::string &file, int line, const std::string &function, const Writer &writer);
/// Logs one line as a warning, in the same way.
Q_DECL_EXPORT void warn(const std::string &file, int line, const std::string &function, const Writer &writer);
}
}
}

/// Expands the path prefixes "${USERDATA}" and "${SYSTEMDATA}" to the data directories of the user and the system. Only
/// a leading prefix is expanded; all other paths stay unchanged. If the names in a path lead out of its directory, it
/// becomes a path below that directory that cannot exist.
class Q_DECL_EXPORT PathResolver
{
public:
    /// A resolver with the directories as they are now.
    static PathResolver newDefault();

    /// The path with its prefix expanded. Does not access the file system.
    std::string resolvePreffix(const std::string &path) const;
    /// Whether the expanded path exists.
    bool exists(const std::string &path) const;
    /// Removes the file at the expanded path. Returns false if nothing was removed.
    bool remove(const std::string &path) const;

private:
    PathResolver(const std::string &userData, const std::string &systemData);

    std::string m_userData;
    std::string m_systemData;
};

/// Colours of a terminal.
namespace ansicolor {
/// The escape sequence that sets a colour. `target` is 38 for the text and 48 for the background. With `mode` 2,
/// `colour` is 0xRRGGBB. The result is empty if `enabled` is 0.
Q_DECL_EXPORT std::string beginSeq(int target, int mode, int colour, int enabled);
}

/// Text in columns.
namespace Utf8 {
/// The lines, padded on the right with spaces to the display width of the widest one.
Q_DECL_EXPORT std::vector<std::string> alignLeftByWhitespace(const std::vector<std::string> &lines);
}

}
