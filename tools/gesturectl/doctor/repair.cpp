#include "repair.h"

#include <gesturectl/bindingsfile.h>

#include <QFile>
#include <QFileInfo>

#include <fcntl.h>
#include <unistd.h>

using namespace vellix;
using namespace vellix::gesture;

namespace gesturectl {

static Failure failed(const QFile &file)
{
    return {BadFiles, file.fileName() + QStringLiteral(": ") + file.errorString()};
}

// Opens the first free one of FILE.old, FILE.old2 and so on.
static bool openBeside(const QString &file, QFile *copy)
{
    for (int number = 1;; ++number) {
        copy->setFileName(file + QStringLiteral(".old") + (number == 1 ? QString() : QString::number(number)));
        if (copy->open(QIODevice::WriteOnly | QIODevice::NewOnly))
            return true;
        const QFileInfo taken(copy->fileName());
        if (!taken.exists() && !taken.isSymLink())
            return false;
    }
}

// A copy, since the file may be written in place. On disk before anything else is written.
static Result<QString> keepBeside(const QString &file)
{
    QFile source(file);
    if (!source.open(QIODevice::ReadOnly))
        return Left(failed(source));
    const QByteArray bytes = source.readAll();
    QFile copy;
    if (!openBeside(file, &copy))
        return Left(failed(copy));
    const bool isKept = copy.setPermissions(source.permissions()) && copy.write(bytes) == bytes.size() && copy.flush()
            && fsync(copy.handle()) == 0;
    if (!isKept) {
        const Failure failure = failed(copy);
        copy.close();
        QFile::remove(copy.fileName()); // the object would not, after an error
        return Left(failure);
    }
    const int directory = open(qPrintable(QFileInfo(file).path()), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    fsync(directory);
    close(directory);
    return Right(copy.fileName());
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
    // A write that fails halfway may have cost the file; then the copy is all there is.
    if (!isSame || contentOf(file) == contentOf(keptAs.right())) {
        QFile::remove(keptAs.right());
        return Left(written.left());
    }
    return Left(
            Failure{BadFiles, written.left().message + QStringLiteral("; the old file is kept as ") + keptAs.right()});
}

}
