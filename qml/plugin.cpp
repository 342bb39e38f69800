#include "actionmenumodel.h"
#include "configurationstate.h"
#include "gestureeditor.h"
#include "gesturefiltermodel.h"
#include "gesturelist.h"
#include "gestures.h"
#include "pagemodel.h"
#include "provider.h"
#include "translation.h"

#include <gesture_api/gesturekindfiltermodel.h>

#include <QQmlExtensionPlugin>
#include <qqml.h>

using namespace vellix::gesture;

class VellixGesturePlugin : public QQmlExtensionPlugin
{
    Q_OBJECT
    Q_PLUGIN_METADATA(IID QQmlExtensionInterface_iid)

public:
    void registerTypes(const char *uri) override
    {
        qmlRegisterType<QmlGestureServiceProvider>(uri, 1, 0, "GestureServiceProvider");
        qmlRegisterType<GestureKindFilterModel>(uri, 1, 0, "GestureKindFilterModel");

        qmlRegisterUncreatableType<GestureService>(uri, 1, 0, "GestureService",
                                                   "A GestureService comes from a GestureServiceProvider's service");
        qmlRegisterUncreatableType<Gesture>(uri, 1, 0, "Gesture",
                                            "A Gesture comes from a GestureService: its model or its find functions");
        qmlRegisterUncreatableType<Action>(
                uri, 1, 0, "GestureAction",
                "A GestureAction comes from a Gesture: its current, default and available actions");
        qmlRegisterUncreatableType<ActionProxyNode>(uri, 1, 0, "GestureActionNode",
                                                    "A GestureActionNode comes from a Gesture's actionTree");
        qmlRegisterUncreatableType<Feature>(uri, 1, 0, "GestureFeature",
                                            "A GestureFeature comes from the features of a Gesture or a GestureAction");

        qmlRegisterType<GestureEditor>(uri, 1, 0, "GestureEditor");
        qmlRegisterType<GestureFilterModel>(uri, 1, 0, "GestureFilterModel");
        qmlRegisterType<ActionMenuModel>(uri, 1, 0, "ActionMenuModel");
        qmlRegisterType<PageModel>(uri, 1, 0, "PageModel");
        qmlRegisterType<ConfigurationState>(uri, 1, 0, "ConfigurationState");
        qmlRegisterSingletonType<Gestures>(uri, 1, 0, "Gestures",
                                           [](QQmlEngine *, QJSEngine *) -> QObject * { return new Gestures; });
        qmlRegisterUncreatableType<GestureList>(uri, 1, 0, "GestureList",
                                                "A GestureList is the model of a GestureEditor");

        // Only as the types of properties.
        qmlRegisterAnonymousType<vellix::components::ReadonlyLazyListModel>(uri, 1);
        qmlRegisterAnonymousType<FeaturesProvider>(uri, 1);
    }

    void initializeEngine(QQmlEngine *, const char *) override { installTranslation(); }
};

#include "plugin.moc"
