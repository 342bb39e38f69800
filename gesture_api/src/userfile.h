#pragma once

#include "atomicfile.h"
#include "bindings.h"
#include "filestate.h"

#include <gesture_api/configuration.h>

#include <memory>
#include <optional>

namespace vellix {
namespace gesture {

/// The file with a user's bindings, as one service reads and writes it. Copies, for the service's clones, share the
/// refused state: it is kept once.
class UserFile
{
public:
    using ParsingError = Configuration::ActionBindings::ParsingError;
    /// The choice for each of these gesture ids: an action's path, or nothing.
    using Choices = QMap<QString, std::optional<QString>>;

    /// `path` may have a prefix.
    explicit UserFile(const QString &path);

    /// Reads the bindings; none if there is no file. An unreadable file is refused. Only a file that is to be saved
    /// must be remembered.
    Either<ParsingError, Bindings> load(bool remember);
    /// The service cannot use the loaded bindings: the file is copied before it is overwritten.
    void refuse();

    /// Writes these bindings. A refused file that is still there is copied first.
    Either<SaveFailure, qint64> save(const Bindings &bindings);
    /// The same if the file has not changed since it was loaded or saved. Otherwise only adds `choices` to its present
    /// bindings; without any, it writes nothing and right is 0.
    Either<SaveFailure, qint64> saveUnlessChanged(const Bindings &bindings, const Choices &choices);

    /// Whether this process made it, and not the one that forked this process.
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
    FileState m_known; // the state with the service's bindings
    std::shared_ptr<std::optional<FileState>> m_refused;
};

}
}
