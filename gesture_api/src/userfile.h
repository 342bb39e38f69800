#pragma once

#include "atomicfile.h"
#include "bindings.h"
#include "filestate.h"

#include <gesture_api/configuration.h>

#include <memory>
#include <optional>

namespace vellix {
namespace gesture {

/// The file with a user's bindings, as one service reads and writes it. Copies, of the service's clones, share what was
/// refused: it is kept once.
class UserFile
{
public:
    using ParsingError = Configuration::ActionBindings::ParsingError;
    /// What was chosen for the gestures of these ids: an action's path, or nothing.
    using Choices = QMap<QString, std::optional<QString>>;

    /// `path` may have a prefix.
    explicit UserFile(const QString &path);

    /// Reads the bindings; none if there is no file. What can not be read is refused. A file that is never
    /// saved need not be remembered.
    Either<ParsingError, Bindings> load(bool remember);
    /// The service can not use what it has loaded: it is kept before it is overwritten.
    void refuse();

    /// Writes these bindings. What was refused, and still stands there, is kept first.
    Either<SaveFailure, qint64> save(const Bindings &bindings);
    /// The same as long as nobody else has changed the file since it was loaded or saved. Else only `choices` are
    /// put on top of what stands there now; without any, nothing is written, and right is 0.
    Either<SaveFailure, qint64> saveUnlessChanged(const Bindings &bindings, const Choices &choices);

    /// Whether this process has made it, and not one that has forked it since.
    bool isOwn() const;
    /// The path without a prefix.
    QString path() const;

private:
    struct Content
    {
        FileState state;
        Either<ParsingError, Bindings> bindings;
    };
    Content read(bool remember) const;
    Either<SaveFailure, qint64> write(const Bindings &bindings);

    QString m_path;
    int m_process;
    FileState m_known; // what the service's bindings are
    std::shared_ptr<std::optional<FileState>> m_refused;
};

}
}
