// Performs one step for each argument, and then returns from main: for tests of the save at a process's end.
//
//     service            a writable service of the application "app"
//     reader             a read-only one
//     provider           a writable provider and its service, loaded from the event loop
//     use N              the Nth service, from 0, for the next steps
//     load               loads the gestures
//     choose G A         sets the current action of gesture G to A
//     clear G            sets it to none
//     destroy A          destroys the action A
//     cling A            likewise, and its gesture tries to keep it
//     clone              a clone, for the next steps
//     merge              the clone into its original service
//     save, prune        as the service does
//     delete             deletes the service
//     bind G A           acts as another program: writes a file with this binding only
//     bytes TEXT, remove likewise
//     safe               saves when the event loop ends
//     quit               runs the event loop and quits it at once
//     delete-provider    deletes the provider
//     loop               runs the event loop until it has nothing to do
//     notify             ExitNotifier::notify()
//     second             another exit notifier
//     fork S...          a child that does the remaining steps; this process waits for it and returns
//     exit, thread-exit  exit(0), from here or from another thread
//     pause              writes a line and waits for one
//     mark               a system call that a tracer finds

#include <gesture_api/gestureserviceprovider.h>

#include <vellix/exitnotifier.h>
#include <vellix/resolvedpath.h>

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QTimer>

#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <thread>

using namespace vellix;
using namespace vellix::gesture;

// Still referenced, only never deleted: a leak checker must not report it.
static QList<GestureService *> &services = *new QList<GestureService *>;
static GestureService *current = nullptr;
static GestureService *cloned = nullptr;
static DefaultFeaturesProvider *features = nullptr;
static GestureServiceProvider *provider = nullptr;

static ApplicationPaths appPaths()
{
    return ApplicationPathsConfiguration::newDefault().appPaths(QStringLiteral("app")).right();
}

static QString userFile()
{
    return resolvedPath(appPaths().currentPath());
}

[[noreturn]] static void give(const char *reason)
{
    std::fprintf(stderr, "stepschild: %s\n", reason);
    std::_Exit(99);
}

static Gesture *gestureOf(const QString &id)
{
    for (Gesture *gesture : current->gestureList()) {
        if (gesture->id() == id)
            return gesture;
    }
    give("no such gesture");
}

static Action *actionOf(const Gesture *gesture, const QString &path)
{
    for (Action *action : gesture->availableActions()) {
        if (action->path() == path)
            return action;
    }
    give("no such action");
}

static void add(GestureService *service)
{
    services.append(service);
    current = service;
}

static void writeFile(const QByteArray &bytes)
{
    QFileInfo(userFile()).dir().mkpath(QStringLiteral("."));
    QFile file(userFile() + QStringLiteral(".new"));
    if (!file.open(QIODevice::WriteOnly) || file.write(bytes) != bytes.size())
        give("can not write");
    file.close();
    if (std::rename(qPrintable(file.fileName()), qPrintable(userFile())) != 0)
        give("can not rename");
}

static void makeProvider()
{
    features = new DefaultFeaturesProvider;
    provider = new GestureServiceProvider(features);
    provider->setReadonly(false);
    provider->setAppId(QStringLiteral("app"));
    QCoreApplication::processEvents();
    add(provider->service());
    current->gestureList();
}

static void runLoop()
{
    for (int i = 0; i < 100; ++i)
        QCoreApplication::processEvents(QEventLoop::AllEvents, 10);
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    if (provider)
        current = provider->service();
}

static int run(QStringList steps)
{
    while (!steps.isEmpty()) {
        const QString step = steps.takeFirst();
        const auto is = [&step](const char *name) { return step == QLatin1String(name); };
        if (is("service"))
            add(new GestureService(appPaths(), nullptr, false));
        else if (is("reader"))
            add(new GestureService(appPaths(), nullptr, true));
        else if (is("provider"))
            makeProvider();
        else if (is("use"))
            current = services.at(steps.takeFirst().toInt());
        else if (is("load"))
            current->gestureList();
        else if (is("choose")) {
            Gesture *gesture = gestureOf(steps.takeFirst());
            gesture->setCurrentAction(actionOf(gesture, steps.takeFirst()));
        } else if (is("clear"))
            gestureOf(steps.takeFirst())->setCurrentAction(nullptr);
        else if (is("destroy"))
            delete actionOf(current->gestureList().first(), steps.takeFirst());
        else if (is("cling")) {
            Gesture *gesture = current->gestureList().first();
            Action *action = actionOf(gesture, steps.takeFirst());
            QObject::connect(gesture, &Gesture::currentActionChanged,
                             [gesture, action] { gesture->setCurrentAction(action); });
            delete action;
        } else if (is("clone"))
            current = cloned = current->clone();
        else if (is("merge")) {
            current = services.last();
            current->fastMerge(cloned);
        } else if (is("save"))
            current->save();
        else if (is("prune"))
            current->prune();
        else if (is("delete"))
            delete current;
        else if (is("bind")) {
            const QString id = steps.takeFirst();
            writeFile(QStringLiteral("{\"version\": 1, \"actions\": {\"%1\": \"%2\"}}")
                              .arg(id, steps.takeFirst())
                              .toUtf8());
        } else if (is("bytes"))
            writeFile(steps.takeFirst().toUtf8());
        else if (is("remove"))
            QFile::remove(userFile());
        else if (is("safe"))
            QObject::connect(QCoreApplication::instance(), &QCoreApplication::aboutToQuit, &ExitNotifier::notify);
        else if (is("quit")) {
            QTimer::singleShot(0, QCoreApplication::instance(), &QCoreApplication::quit);
            QCoreApplication::exec();
        } else if (is("delete-provider"))
            delete provider;
        else if (is("loop"))
            runLoop();
        else if (is("notify"))
            ExitNotifier::notify();
        else if (is("second"))
            new ExitNotifier(QCoreApplication::instance());
        else if (is("mark"))
            getsid(0);
        else if (is("exit"))
            std::exit(0);
        else if (is("thread-exit")) {
            std::thread([] { std::exit(0); }).join();
        } else if (is("pause")) {
            std::puts("paused");
            std::fflush(stdout);
            char line[10];
            if (!std::fgets(line, sizeof line, stdin))
                give("nobody answers");
        } else if (is("fork")) {
            const pid_t child = fork();
            if (child != 0) {
                int status = 0;
                waitpid(child, &status, 0);
                return WIFEXITED(status) ? WEXITSTATUS(status) : 98;
            }
        } else {
            give("unknown step");
        }
    }
    return 0;
}

int main(int argc, char *argv[])
{
    QCoreApplication app(argc, argv);
    return run(QCoreApplication::arguments().mid(1));
}
