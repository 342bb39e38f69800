#pragma once

#include <vellix/export.h>

#include <QObject>

namespace vellix {

/// Tells once more, before the process ends, that state must be saved: `prepareExit` is emitted from
/// a process exit handler. A listener does its work within the slot; no event loop runs any more.
///
/// The process-wide notifier is a child of the application object. Should that object die before the
/// exit handler has run, the notifier emits `prepareExit` as it goes. GUI thread only.
class GESTURE_API_EXPORT ExitNotifier : public QObject
{
    Q_OBJECT

public:
    /// For a notifier of one's own; instance() is what a service listens to. Every notifier made has the exit handler
    /// run once more.
    explicit ExitNotifier(QObject *parent = nullptr);
    /// The process-wide notifier emits `prepareExit` as it goes, unless the exit handler has run.
    ~ExitNotifier() override;

    /// The process-wide notifier, made when there is none.
    static ExitNotifier *instance();
    /// Emits `prepareExit` of the process-wide notifier. The exit handler does so again at the end. Does nothing while
    /// it is being emitted; a listener that destroys the notifier ends that.
    static void notify();

Q_SIGNALS:
    /// Asks every listener to save within its slot. May come more than once in a process's life.
    void prepareExit();

private:
    static void runExitHandler();
};

}
