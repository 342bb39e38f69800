#include "rejectedfile.h"

#include "descriptor.h"

#include <QFile>

#include <cerrno>

namespace vellix {
namespace gesture {

static constexpr int maxRejected = 8;

static Left<SaveFailure> notKept()
{
    return Left(SaveFailure{SaveFailure::Other, QStringLiteral("the rejected file can not be kept beside it")});
}

static Either<SaveFailure, bool> copyBeside(const QString &path, int original, const FileState &state)
{
    for (int number = 1; number <= maxRejected; ++number) {
        const QString copy = path + QStringLiteral(".rejected")
                + (number == 1 ? QString() : QLatin1Char('.') + QString::number(number));
        const int error = copyToNew(original, copy, [&state](int file) { return FileState::of(file) == state; });
        if (error != EEXIST)
            return error == 0 ? Either<SaveFailure, bool>(Right(true)) : notKept();
    }
    return Left(SaveFailure{SaveFailure::Other, QStringLiteral("eight rejected files are beside it already")});
}

Either<SaveFailure, bool> keepRejected(const QString &path, const FileState &refused)
{
    const std::string file = QFile::encodeName(path).toStdString();
    const Descriptor writable(openFile(file, O_WRONLY | O_NONBLOCK));
    if (!writable.isOpen() && errno != ENOENT)
        return Left(SaveFailure{SaveFailure::Opening, qt_error_string(errno)});

    const Descriptor original(openFile(file, O_RDONLY | O_NONBLOCK));
    if (!original.isOpen())
        return errno == ENOENT ? Either<SaveFailure, bool>(Right(false)) : notKept();
    const FileState state = FileState::of(original);
    if (state.kind() == FileState::Unreadable)
        return notKept();
    // A file that could not be read then may be this one.
    const bool unseen = refused.kind() == FileState::Unknown || refused.kind() == FileState::Unreadable;
    if (state.kind() != FileState::Regular || (!unseen && state != refused))
        return Right(false);
    return copyBeside(path, original, state);
}

}
}
