#pragma once

#include <QByteArray>
#include <QString>

namespace vellix {
namespace gesture {

/// The state of a path at one moment, for comparison with its state later.
class FileState
{
public:
    enum Kind {
        Unknown, // equal to nothing, not even to itself
        Absent,
        NoFile, // a directory, a pipe, a device
        Unreadable,
        Regular // of this size and these bytes
    };

    FileState() = default;
    /// The state of a path. Never waits, not even for a pipe.
    static FileState at(const QString &path);
    /// The state of an open file, read from its start to its end.
    static FileState of(int descriptor);
    /// The state of a file with these bytes.
    static FileState with(const QByteArray &bytes);

    Kind kind() const { return m_kind; }
    bool operator==(const FileState &other) const;
    bool operator!=(const FileState &other) const { return !(*this == other); }

private:
    explicit FileState(Kind kind) : m_kind(kind) {}

    Kind m_kind = Unknown;
    qint64 m_size = 0;
    QByteArray m_hash;
};

}
}
