#include "bench.h"

#include <gesture_api/gestureservice.h>

#include <QFile>

#include <fcntl.h>
#include <unistd.h>

using namespace vellix::gesture;

static bool synced(int descriptor)
{
    return descriptor >= 0 && fsync(descriptor) == 0 && close(descriptor) == 0;
}

// The necessary system calls for a file that is whole after any crash, for this one file.
static double systemCalls(const QString &fileName, const QByteArray &text)
{
    const QByteArray file = QFile::encodeName(fileName);
    const QByteArray temporary = file + ".new";
    const QByteArray directory = file.left(file.lastIndexOf('/'));
    return nanoseconds([&] {
        const int descriptor = open(temporary, O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0666);
        const bool saved = write(descriptor, text, static_cast<std::size_t>(text.size())) == text.size()
                && synced(descriptor) && rename(temporary, file) == 0
                && synced(open(directory, O_RDONLY | O_DIRECTORY | O_CLOEXEC));
        if (!saved)
            qFatal("can not save %s", file.constData());
        return saved;
    });
}

static Comparison saveBesideSystemCalls(const Size &size, int turns)
{
    const SampleTree tree(size);
    const SampleFeatures features;
    GestureService service(ApplicationPaths({}, tree.userFile(), tree.defaultFile()), &features, false);
    writeFile(tree.userFile(), R"({"actions": {}, "version": 1})");
    service.save();
    QFile saved(tree.userFile());
    if (!saved.open(QIODevice::ReadOnly))
        qFatal("nothing was saved");
    const QByteArray text = saved.readAll();
    const QString other = tree.userFile() + ".by-hand";
    const Comparison comparison = compare([&] { return nanoseconds([&] { return service.save(); }); },
                                          [&] { return systemCalls(other, text); }, turns);
    service.prune(); // nothing to save at exit
    return comparison;
}

std::vector<Row> benchSave()
{
    const QString calls = "its system calls alone";
    return {
            shown(ratioRow("save at S", calls, saveBesideSystemCalls(sizeS, 201), 1.05)),
            shown(ratioRow("save at M", calls, saveBesideSystemCalls(sizeM, 101), 1.05)),
            shown(ratioRow("save at L", calls, saveBesideSystemCalls(sizeL, 41), 1.05)),
    };
}
