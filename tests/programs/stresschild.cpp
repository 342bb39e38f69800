// Edits the bindings of "app" at random while it watches them: stresschild SEED EDITS [IN-PLACE]
// With IN-PLACE some edits are plain writes; without it all writes are saves, and an invalid document is a torn one.
// Prints "done" (or "torn") after the edits, then for each line of input whether its service shows the content of the
// file.

#include <gesture_api/configuration.h>
#include <gesture_api/gestureserviceprovider.h>

#include <vellix/resolvedpath.h>

#include <QCoreApplication>
#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QFileInfo>
#include <QJsonDocument>
#include <QRandomGenerator>
#include <QSocketNotifier>
#include <QTimer>

#include <cstdio>
#include <iostream>
#include <string>

using namespace vellix::gesture;
using ActionBindings = Configuration::ActionBindings;

static const ApplicationPaths &paths()
{
    static const ApplicationPaths paths =
            GestureServiceProvider::applicationPathsConfiguration().appPaths(QStringLiteral("app")).right();
    return paths;
}

static QString userFile()
{
    return vellix::resolvedPath(paths().currentPath());
}

static QString currentAction(const GestureService &service)
{
    const Gesture *gesture = service.gestureList().value(0);
    return gesture && gesture->currentAction() ? gesture->currentAction()->path() : QString();
}

static void writeInPlace(const QByteArray &bytes)
{
    QFile file(userFile());
    if (file.open(QIODevice::WriteOnly))
        file.write(bytes);
}

static bool isTorn()
{
    QFile file(userFile());
    return file.open(QIODevice::ReadOnly) && QJsonDocument::fromJson(file.readAll()).isNull();
}

static void edit(QRandomGenerator &random, bool inPlace)
{
    switch (random.bounded(inPlace ? 0 : 1, 8)) {
    case 0: writeInPlace("{\"version\": 1, \"actions\": {\"g\": \"menu\"}}"); break;
    case 1: QFile::remove(userFile()); break;
    case 2: QFile::rename(userFile(), userFile() + QStringLiteral(".away")); break;
    case 3: QDir(QFileInfo(userFile()).path() + QStringLiteral("/..")).removeRecursively(); break;
    default: {
        GestureService service(paths(), nullptr, false);
        Gesture *gesture = service.gestureList().value(0);
        if (gesture) {
            gesture->setCurrentAction(gesture->availableActions().at(random.bounded(3)));
            ActionBindings::saveJson(paths().currentPath(), service.gestureList());
        }
    }
    }
}

int main(int argc, char *argv[])
{
    QCoreApplication app(argc, argv);
    if (argc < 3)
        return 99;
    const bool inPlace = argc > 3;
    bool torn = false;
    QRandomGenerator random(QByteArray(argv[1]).toUInt());
    int edits = QByteArray(argv[2]).toInt();

    GestureServiceProvider provider(nullptr);
    provider.setAppId(QStringLiteral("app"));
    // Read at once, as a running application would at its next touch.
    QObject::connect(&provider, &GestureServiceProvider::serviceChanged, [](GestureService *service) {
        if (service)
            service->gestureList();
    });
    provider.service()->gestureList();

    QTimer editing;
    QObject::connect(&editing, &QTimer::timeout, [&] {
        torn = torn || (!inPlace && isTorn());
        edit(random, inPlace);
        if (--edits > 0)
            return;
        editing.stop();
        std::puts(torn ? "torn" : "done");
        std::fflush(stdout);
    });
    editing.start(0);

    QSocketNotifier input(0, QSocketNotifier::Read);
    QObject::connect(&input, &QSocketNotifier::activated, [&] {
        std::string line;
        if (!std::getline(std::cin, line))
            return app.quit();
        QElapsedTimer waited;
        waited.start();
        bool same = false;
        while (!same && waited.elapsed() < 5000) {
            QCoreApplication::processEvents(QEventLoop::ExcludeSocketNotifiers, 10);
            input.setEnabled(false);
            QCoreApplication::processEvents(QEventLoop::AllEvents, 10);
            input.setEnabled(true);
            const GestureService fresh(paths(), nullptr, true);
            same = provider.service() && currentAction(*provider.service()) == currentAction(fresh);
        }
        std::puts(same ? "same" : "different");
        std::fflush(stdout);
    });
    return app.exec();
}
