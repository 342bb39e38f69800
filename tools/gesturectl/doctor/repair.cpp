#include "repair.h"

#include <gesturectl/bindingsfile.h>

#include <gesture_api/src/atomicfile.h>
#include <gesture_api/src/descriptor.h>

#include <QFile>

using namespace vellix;
using namespace vellix::gesture;

namespace gesturectl {

static Failure failed(const QString &file, int error)
{
    return {BadFiles, file + QStringLiteral(": ") + qt_error_string(error)};
}

// A copy, since the file may be written in place: the first free one of FILE.old, FILE.old2 and so on.
static Result<QString> keepBeside(const QString &file)
{
    const Descriptor source(openFile(QFile::encodeName(file).toStdString(), O_RDONLY));
    if (!source.isOpen())
        return Left(failed(file, errno));
    const auto isGood = [](int) { return true; }; // the caller compares its bindings
    for (int number = 1;; ++number) {
        const QString copy = file + QStringLiteral(".old") + (number == 1 ? QString() : QString::number(number));
        const int error = copyToNew(source, copy, isGood);
        if (error == 0)
            return Right(copy);
        if (error != EEXIST)
            return Left(failed(copy, error));
    }
}

Result<Repair> repaired(const ApplicationPaths &paths, const Bindings &bindings, const QStringList &dropped,
                        const FeaturesProvider *features)
{
    if (dropped.isEmpty())
        return Right(Repair());
    Bindings rest = bindings;
    for (const QString &id : dropped)
        rest.remove(id);
    QObject owner;
    const auto gestures = gesturesOf(paths, features, rest, &owner);
    if (gestures.isLeft())
        return Left(gestures.left());

    const QString file = resolved(paths.currentPath());
    const auto keptAs = keepBeside(file);
    if (keptAs.isLeft())
        return Left(keptAs.left());
    // Programs save without the lock: the judged bindings must be the ones that are copied and replaced.
    const auto kept = bindingsOf(ApplicationPaths(paths.appId(), keptAs.right(), paths.defaultPath()));
    const bool isSame = kept.isRight() && kept.right() == bindings;
    const auto written = isSame ? writeBindings(paths, gestures.right(), rest)
                                : Left(Failure{BadFiles, file + QStringLiteral(": changed meanwhile, try again")});
    if (written.isRight())
        return Right(Repair{dropped, keptAs.right()});
    // A write that fails halfway may destroy the file: then only the copy is left.
    if (!isSame || contentOf(file) == contentOf(keptAs.right())) {
        QFile::remove(keptAs.right());
        return Left(written.left());
    }
    return Left(
            Failure{BadFiles, written.left().message + QStringLiteral("; the old file is kept as ") + keptAs.right()});
}

}
