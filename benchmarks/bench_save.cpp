#include "bench.h"

#include <gesture_api/gestureservice.h>

#include <QFile>
#include <QJsonDocument>
#include <QJsonObject>

#include <fcntl.h>
#include <unistd.h>

using namespace vellix::gesture;

static bool synced(int descriptor)
{
    return descriptor >= 0 && fsync(descriptor) == 0 && close(descriptor) == 0;
}

// The necessary work for a file that is whole after any crash, for this one file.
static double saveByHand(const QString &fileName, const QList<Gesture *> &gestures)
{
    const QByteArray file = QFile::encodeName(fileName);
    const QByteArray temporary = file + ".new";
    const QByteArray directory = file.left(file.lastIndexOf('/'));
    return nanoseconds([&] {
        QMap<QString, QString> choices;
        for (const Gesture *gesture : gestures)
            choices.insert(gesture->id(), gesture->currentAction()->path());
        QJsonObject actions; // in order: each insertion moves all later members
        for (auto choice = choices.cbegin(); choice != choices.cend(); ++choice)
            actions.insert(choice.key(), *choice);
        const QByteArray text = QJsonDocument(QJsonObject{{"actions", actions}, {"version", 1}}).toJson();
        const int descriptor = open(temporary, O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0666);
        const bool saved = write(descriptor, text, static_cast<std::size_t>(text.size())) == text.size()
                && synced(descriptor) && rename(temporary, file) == 0
                && synced(open(directory, O_RDONLY | O_DIRECTORY | O_CLOEXEC));
        if (!saved)
            qFatal("can not save %s", file.constData());
        return saved;
    });
}

static Comparison saveBesideHand(const Size &size, int turns)
{
    const SampleTree tree(size);
    const SampleFeatures features;
    GestureService service(ApplicationPaths({}, tree.userFile(), tree.defaultFile()), &features, false);
    writeFile(tree.userFile(), R"({"actions": {}, "version": 1})");
    const QString byHand = tree.userFile() + ".by-hand";
    const QList<Gesture *> &gestures = service.gestureList();
    const Comparison comparison = compare([&] { return nanoseconds([&] { return service.save(); }); },
                                          [&] { return saveByHand(byHand, gestures); }, turns);

    QFile ours(tree.userFile());
    QFile theirs(byHand);
    if (!ours.open(QIODevice::ReadOnly) || !theirs.open(QIODevice::ReadOnly) || ours.readAll() != theirs.readAll())
        qFatal("the two sides save different files");
    service.prune(); // nothing to save at exit
    return comparison;
}

std::vector<Row> benchSave()
{
    const QString byHand = "by hand";
    return {
            ratioRow("save at S", byHand, saveBesideHand(sizeS, 101), 1.1),
            ratioRow("save at M", byHand, saveBesideHand(sizeM, 51), 1.1),
            ratioRow("save at L", byHand, saveBesideHand(sizeL, 21), 1.1),
    };
}
