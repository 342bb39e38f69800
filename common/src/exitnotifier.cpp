#include <vellix/exitnotifier.h>

#include <QCoreApplication>

#include <cstdlib>

namespace vellix {

// Plain variables: objects would be destroyed before the exit handler that reads them.
static ExitNotifier *processNotifier = nullptr;
static bool exitHandlerHasRun = false;

ExitNotifier::ExitNotifier(QObject *parent) : QObject(parent)
{
    // Called from here, atexit ties the handler to this library: it runs at the process's end or
    // when the library is unloaded, whichever comes first.
    std::atexit(runExitHandler);
}

ExitNotifier::~ExitNotifier()
{
    if (this != processNotifier)
        return;
    if (!exitHandlerHasRun)
        Q_EMIT prepareExit();
    processNotifier = nullptr;
}

ExitNotifier *ExitNotifier::instance()
{
    if (!processNotifier) {
        processNotifier = new ExitNotifier;
        processNotifier->setParent(QCoreApplication::instance());
    }
    return processNotifier;
}

void ExitNotifier::notify()
{
    Q_EMIT instance()->prepareExit();
}

void ExitNotifier::runExitHandler()
{
    exitHandlerHasRun = true;
    if (processNotifier)
        Q_EMIT processNotifier->prepareExit();
}

}
