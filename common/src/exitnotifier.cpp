#include <vellix/exitnotifier.h>

#include <QCoreApplication>

#include <cstdlib>

namespace vellix {

// Plain variables: objects would be destroyed before the exit handler that reads them.
static ExitNotifier *processNotifier = nullptr;
static bool exitHandlerHasRun = false;
static bool telling = false;

static void tell(ExitNotifier *notifier)
{
    telling = true;
    Q_EMIT notifier->prepareExit();
    telling = false;
}

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
    processNotifier = nullptr; // a later instance() makes another one
    // A listener that destroys it must not be called again for that.
    if (!exitHandlerHasRun && !telling)
        tell(this);
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
    if (!telling)
        tell(instance());
}

void ExitNotifier::runExitHandler()
{
    exitHandlerHasRun = true;
    // Even if a listener ends the process: the remaining listeners must still save.
    if (processNotifier)
        tell(processNotifier);
}

}
