// A module that makes a writable service with an edit, for a program that is not linked to the library.

#include <gesture_api/gestureservice.h>

using namespace vellix::gesture;

extern "C" Q_DECL_EXPORT void editService()
{
    static GestureService *service = nullptr;
    const ApplicationPaths paths = ApplicationPathsConfiguration::newDefault().appPaths(QStringLiteral("app")).right();
    service = new GestureService(paths, nullptr, false);
    Gesture *gesture = service->gestureList().value(0);
    gesture->setCurrentAction(gesture->availableActions().value(1));
}
