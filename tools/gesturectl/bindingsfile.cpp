#include "bindingsfile.h"

#include <fcntl.h>
#include <sys/file.h>
#include <unistd.h>

#include <algorithm>

using namespace vellix;
using namespace vellix::gesture;
using ActionBindings = Configuration::ActionBindings;

namespace gesturectl {

BindLock::BindLock(const ApplicationPaths &paths)
    : m_descriptor(open(qPrintable(resolved(paths.defaultPath())), O_RDONLY | O_NONBLOCK | O_CLOEXEC))
{
    if (m_descriptor >= 0)
        flock(m_descriptor, LOCK_EX);
}

BindLock::~BindLock()
{
    if (m_descriptor >= 0)
        close(m_descriptor);
}

Result<ExitStatus> writeBindings(const ApplicationPaths &paths, const Gestures &gestures, const Bindings &bindings)
{
    Gestures bound;
    for (Gesture *gesture : gestures) {
        if (!bindings.contains(gesture->id()))
            continue;
        gesture->setCurrentAction(gesture->defaultAction());
        bound.append(gesture);
    }
    const auto written = ActionBindings::saveJson(paths.currentPath(), bound);
    if (written.isLeft())
        return Left(Failure{BadFiles, written.left()});
    if (written.right() < 0)
        return Left(Failure{BadFiles, resolved(paths.currentPath()) + QStringLiteral(": could not be written")});
    return Right(Success);
}

Result<Bindings> bindingsOfFile(const ApplicationPaths &paths)
{
    if (!paths.currentPathExists())
        return Left(Failure{BadFiles, resolved(paths.currentPath()) + QStringLiteral(": No such file or directory")});
    return bindingsOf(paths);
}

Gesture *gestureById(const Gestures &gestures, const QString &id)
{
    const auto found = std::find_if(gestures.cbegin(), gestures.cend(),
                                    [&id](const Gesture *gesture) { return gesture->id() == id; });
    return found == gestures.cend() ? nullptr : *found;
}

}
