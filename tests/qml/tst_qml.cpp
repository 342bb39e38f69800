// Runs the tst_*.qml beside it: the module and the pages of the example programs.

#include "testtree.h"

#include <exampleapplication.h>

#include <QQmlEngine>
#include <QtQuickTest>

class Setup : public QObject
{
    Q_OBJECT

public Q_SLOTS:
    void applicationAvailable()
    {
        qputenv("QT_QUICK_BACKEND", "software");
        TestTree::useForThisProcess();
        installExampleTranslation();
        qmlRegisterSingletonType<TestTree>("Vellix.Test", 1, 0, "TestTree",
                                           [](QQmlEngine *, QJSEngine *) -> QObject * { return new TestTree; });
    }

    void qmlEngineAvailable(QQmlEngine *engine) { engine->addImportPath(QML_IMPORT_PATH); }
};

QUICK_TEST_MAIN_WITH_SETUP(qml, Setup)
#include "tst_qml.moc"
