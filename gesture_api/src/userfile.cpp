#include "userfile.h"

#include "rejectedfile.h"
#include "savelock.h"

#include <vellix/resolvedpath.h>

namespace vellix {
namespace gesture {

using Written = Either<SaveFailure, qint64>;

UserFile::UserFile(const QString &path)
    : m_path(path), m_process(::getpid()), m_refused(std::make_shared<std::optional<FileState>>())
{
}

bool UserFile::isOwn() const
{
    return m_process == ::getpid();
}

QString UserFile::path() const
{
    return resolvedPath(m_path);
}

static Either<UserFile::ParsingError, Bindings> readBindings(const QString &path)
{
    if (!PathResolver::newDefault().exists(path.toStdString()))
        return Right(Bindings());
    return Configuration::ActionBindings::loadJson(path);
}

// The loader reads the file by itself: if the state before and after is the same, both have seen the same bytes.
UserFile::Content UserFile::read(bool remember) const
{
    if (!remember)
        return {FileState(), readBindings(m_path)};
    FileState before = FileState::at(path());
    for (int attempt = 0; attempt < 10; ++attempt) {
        const auto bindings = readBindings(m_path);
        const FileState after = FileState::at(path());
        if (before == after)
            return {after, bindings};
        before = after;
    }
    return {FileState(), readBindings(m_path)};
}

Either<UserFile::ParsingError, Bindings> UserFile::load(bool remember)
{
    const Content content = read(remember);
    m_known = content.state;
    if (content.bindings.isLeft())
        refuse();
    return content.bindings;
}

void UserFile::refuse()
{
    *m_refused = m_known;
}

Written UserFile::save(const Bindings &bindings)
{
    makeDirectoriesFor(path()); // for the lock
    const SaveLock lock(path());
    return write(bindings);
}

Written UserFile::saveUnlessChanged(const Bindings &bindings, const Choices &choices)
{
    const SaveLock lock(path());
    if (FileState::at(path()) == m_known)
        return write(bindings);
    if (choices.isEmpty())
        return Right<qint64>(0);

    const Content now = read(true);
    if (now.bindings.isLeft())
        *m_refused = now.state;
    Bindings merged = now.bindings.isRight() ? now.bindings.right() : Bindings();
    for (auto choice = choices.cbegin(); choice != choices.cend(); ++choice) {
        if (*choice)
            merged.insert(choice.key(), **choice);
        else
            merged.remove(choice.key());
    }
    const Written written = write(merged);
    m_known = FileState(); // some of the bindings are not the service's
    return written;
}

Written UserFile::write(const Bindings &bindings)
{
    const QString file = path();
    if (*m_refused) {
        const auto kept = keepRejected(file, **m_refused);
        if (kept.isLeft())
            return Left(kept.left());
        m_refused->reset();
    }
    const QByteArray text = bindingsText(bindings);
    makeDirectoriesFor(file);
    const Written written = writeAtomically(file, text);
    if (written.isRight())
        m_known = FileState::with(text);
    return written;
}

}
}
