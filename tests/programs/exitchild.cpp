// Ends in the way that its arguments name, for tests of the effects.

#include <gesture_api/configuration.h>
#include <gesture_api/gestureservice.h>
#include <gesture_api/gestureserviceprovider.h>

#include <vellix/either.h>
#include <vellix/exitnotifier.h>
#include <vellix/platform/host.h>

#include <QCoreApplication>

#include <cstdio>
#include <cstring>
#include <exception>

using namespace vellix;
using namespace vellix::gesture;

static void sayPrepareExit()
{
    std::puts("prepareExit");
    std::fflush(stdout);
}

static int extract(const QString &extractor, bool exitOnError)
{
    ExitNotifier *notifier = ExitNotifier::instance();
    QObject::connect(notifier, &ExitNotifier::prepareExit, sayPrepareExit);
    EitherPrivate::setExitOnError(exitOnError);
    const Either<Error, int> failed = Left(Error({"dir/file", 12}, "a message"));
    if (extractor == QLatin1String("getOrErr"))
        return failed.getOrErr(0);
    if (extractor == QLatin1String("qGetOrErr"))
        return failed.qGetOrErr(0);
    return failed.getOrWarn(0);
}

// Still referenced, only never deleted: a leak checker must not report it.
static QCoreApplication *heapApplication = nullptr;
static GestureService *lastService = nullptr;

// A writable service with an unsaved edit.
static GestureService *editedService(QObject *parent)
{
    const ApplicationPaths paths = ApplicationPathsConfiguration::newDefault().appPaths(QStringLiteral("app")).right();
    lastService = new GestureService(paths, nullptr, false, parent);
    Gesture *gesture = lastService->gestureList().value(0);
    if (gesture)
        gesture->setCurrentAction(gesture->availableActions().value(1));
    return lastService;
}

int main(int argc, char *argv[])
{
    const QString scenario = QString::fromLocal8Bit(argc > 1 ? argv[1] : "");
    const auto is = [&scenario](const char *name) { return scenario == QLatin1String(name); };
    if (argc > 2) {
        heapApplication = new QCoreApplication(argc, argv); // still exists when the exit handler runs
        return extract(scenario, std::strcmp(argv[2], "on") == 0);
    }

    if (is("stack")) {
        QCoreApplication app(argc, argv);
        editedService(nullptr);
        return 0;
    }
    if (is("heap")) {
        heapApplication = new QCoreApplication(argc, argv);
        editedService(nullptr);
        return 0;
    }
    if (is("static")) {
        static QCoreApplication app(argc, argv);
        editedService(nullptr);
        return 0;
    }
    if (is("deleted early")) {
        auto *app = new QCoreApplication(argc, argv);
        editedService(nullptr);
        delete app;
        return 0;
    }
    if (is("no application")) {
        editedService(nullptr);
        return 0;
    }
    if (is("exit")) {
        QCoreApplication app(argc, argv);
        editedService(nullptr);
        std::exit(0);
    }
    if (is("exit switch")) {
        QCoreApplication app(argc, argv);
        editedService(nullptr);
        EitherPrivate::setExitOnError(true);
        return Either<Error, int>(Left(Error({"dir/file", 12}, "a message"))).getOrErr(0);
    }
    if (is("terminate")) {
        QCoreApplication app(argc, argv);
        editedService(nullptr);
        std::terminate();
    }
    if (is("exit switch while loading")) {
        QCoreApplication app(argc, argv);
        EitherPrivate::setExitOnError(true);
        editedService(nullptr);
        return 0;
    }
    if (is("not loaded")) {
        QCoreApplication app(argc, argv);
        lastService = new GestureService(
                ApplicationPathsConfiguration::newDefault().appPaths(QStringLiteral("app")).right(), nullptr, false);
        return 0;
    }
    if (is("clone")) {
        QCoreApplication app(argc, argv);
        const GestureService *service = editedService(nullptr);
        lastService = service->clone(nullptr);
        delete service;
        return 0;
    }
    if (is("pruned")) {
        QCoreApplication app(argc, argv);
        editedService(nullptr)->prune();
        return 0;
    }
    if (is("notified twice")) {
        heapApplication = new QCoreApplication(argc, argv);
        QObject::connect(ExitNotifier::instance(), &ExitNotifier::prepareExit, sayPrepareExit);
        static ExitNotifier second;
        return 0;
    }
    if (is("application gone")) {
        {
            QCoreApplication app(argc, argv);
            QObject::connect(ExitNotifier::instance(), &ExitNotifier::prepareExit, sayPrepareExit);
        }
        std::puts("application is gone");
        return 0;
    }
    if (is("notify by hand")) {
        QCoreApplication app(argc, argv);
        ExitNotifier::notify();
        QObject::connect(ExitNotifier::instance(), &ExitNotifier::prepareExit, sayPrepareExit);
        ExitNotifier::notify();
        return 0;
    }
    if (is("a new notifier")) {
        {
            QCoreApplication app(argc, argv);
            ExitNotifier::instance();
        }
        QObject::connect(ExitNotifier::instance(), &ExitNotifier::prepareExit, sayPrepareExit);
        return 0;
    }
    std::fprintf(stderr, "unknown scenario\n");
    return 99;
}
