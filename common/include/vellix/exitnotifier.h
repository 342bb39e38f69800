#pragma once

#include <vellix/export.h>

#include <QObject>

namespace vellix {

/// Announces, just before the process ends, that state must be saved: a process exit handler emits
/// `prepareExit`. The event loop no longer runs, so a listener does its work within the slot.
///
/// The process-wide notifier is a child of the application object. If the application object is destroyed before the
/// exit handler runs, the notifier emits `prepareExit` from its destructor. GUI thread only.
class GESTURE_API_EXPORT ExitNotifier : public QObject
{
    Q_OBJECT

public:
    /// Creates a separate notifier; services listen to instance(). Each construction registers the exit handler once
    /// more.
    explicit ExitNotifier(QObject *parent = nullptr);
    /// Emits `prepareExit` if this is the process-wide notifier, unless the exit handler has run or an emission is
    /// under way.
    ~ExitNotifier() override;

    /// The process-wide notifier. Creates it if there is none.
    static ExitNotifier *instance();
    /// Emits `prepareExit` of the process-wide notifier. The exit handler later emits it again. Does nothing if called
    /// from a slot of this signal. A listener that destroys the notifier ends the emission.
    static void notify();

Q_SIGNALS:
    /// Asks every listener to save within its slot. A process may emit it more than once.
    void prepareExit();

private:
    static void runExitHandler();
};

}
