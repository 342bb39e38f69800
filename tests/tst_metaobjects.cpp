#include "testing.h"

#include <gesture_api/gesture.h>
#include <gesture_api/gesturekindfiltermodel.h>
#include <gesture_api/gestureservice.h>
#include <gesture_api/gestureserviceprovider.h>

#include <vellix/exitnotifier.h>

#include <QMetaMethod>
#include <QMetaProperty>

using namespace vellix;
using namespace vellix::gesture;

// The interface of every class for QML and other languages, in its order. "rw" properties are writable.
struct Expected
{
    const QMetaObject *metaObject;
    QStringList properties; // NAME: TYPE [rw]
    QStringList methods;    // signals first, then invokables: RETURN NAME(TYPE ARGUMENT, ...)
};
Q_DECLARE_METATYPE(Expected)

static QString describe(const QMetaProperty &property)
{
    return QStringLiteral("%1: %2%3")
            .arg(QLatin1String(property.name()), QLatin1String(property.typeName()),
                 property.isWritable() ? QStringLiteral(" rw") : QString());
}

static QString describe(const QMetaMethod &method)
{
    QStringList arguments;
    for (int i = 0; i < method.parameterCount(); ++i) {
        arguments.append(QString::fromLatin1(method.parameterTypes().at(i)) + QLatin1Char(' ')
                         + QString::fromLatin1(method.parameterNames().at(i)));
    }
    const QString kind =
            method.methodType() == QMetaMethod::Signal ? QStringLiteral("signal") : QLatin1String(method.typeName());
    return QStringLiteral("%1 %2(%3)")
            .arg(kind, QString::fromLatin1(method.name()), arguments.join(QStringLiteral(", ")));
}

class tst_MetaObjects : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void surface_data()
    {
        QTest::addColumn<Expected>("expected");

        QTest::newRow("Feature") << Expected{
                &Feature::staticMetaObject,
                {"name: QString", "supported: bool"},
                {"signal nameChanged(QString value)", "signal supportedChanged(bool value)"}};

        QTest::newRow("FeaturesProvider") << Expected{&FeaturesProvider::staticMetaObject, {}, {}};
        QTest::newRow("DefaultFeaturesProvider") << Expected{&DefaultFeaturesProvider::staticMetaObject, {}, {}};

        QTest::newRow("Action") << Expected{&Action::staticMetaObject,
                                            {"features: QQmlListProperty<vellix::gesture::Feature>", "path: QString",
                                             "titles: QStringList", "lastTitle: QString", "supported: bool"},
                                            {"signal pathChanged(QString value)",
                                             "signal titlesChanged(QStringList value)",
                                             "signal lastTitleChanged(QString value)",
                                             "signal featuresChanged(QQmlListProperty<vellix::gesture::Feature> value)",
                                             "signal supportedChanged(bool value)"}};

        QTest::newRow("ActionProxyNode") << Expected{
                &ActionProxyNode::staticMetaObject,
                {"childNodes: QQmlListProperty<vellix::gesture::ActionProxyNode>", "level: int", "pathSegment: QString",
                 "title: QString", "action: vellix::gesture::Action*"},
                {"signal levelChanged(int value)", "signal pathSegmentChanged(QString value)",
                 "signal titleChanged(QString value)", "signal actionChanged(vellix::gesture::Action* value)",
                 "signal childNodesChanged(QQmlListProperty<vellix::gesture::ActionProxyNode> value)",
                 "bool isAnsestorOf(vellix::gesture::Action* other)"}};

        QTest::newRow("Gesture") << Expected{
                &Gesture::staticMetaObject,
                {"id: QString", "modes: QStringList", "kind: Kind", "zone: QRectF", "direction: Direction",
                 "availableActions: QList<vellix::gesture::Action*>", "defaultAction: vellix::gesture::Action*",
                 "actionTree: vellix::gesture::ActionProxyNode*", "currentAction: vellix::gesture::Action* rw",
                 "section: QString", "features: QQmlListProperty<vellix::gesture::Feature>", "supported: bool"},
                {"signal idChanged(QString value)", "signal modesChanged(QStringList value)",
                 "signal kindChanged(Kind value)", "signal zoneChanged(QRectF value)",
                 "signal directionChanged(Direction value)",
                 "signal availableActionsChanged(QList<vellix::gesture::Action*> value)",
                 "signal defaultActionChanged(vellix::gesture::Action* value)",
                 "signal actionTreeChanged(vellix::gesture::ActionProxyNode* value)",
                 "signal currentActionChanged(vellix::gesture::Action* value)", "signal sectionChanged(QString value)",
                 "signal featuresChanged(QQmlListProperty<vellix::gesture::Feature> value)",
                 "signal supportedChanged(bool value)", "QQmlListProperty<vellix::gesture::Feature> features()"}};

        QTest::newRow("GestureSection") << Expected{
                &GestureSection::staticMetaObject, {"modes: QStringList", "kind: int"}, {}};

        QTest::newRow("GestureService") << Expected{
                &GestureService::staticMetaObject,
                {"featuresProvider: const vellix::gesture::FeaturesProvider*", "readonly: bool",
                 "gestures: vellix::components::ReadonlyLazyListModel*"},
                {"signal featuresProviderChanged(const vellix::gesture::FeaturesProvider* value)",
                 "signal readonlyChanged(bool value)",
                 "signal gesturesChanged(vellix::components::ReadonlyLazyListModel* value)",
                 "QObject* findGestureByZoneAsQObject(QString mode, int kind, int direction, QRectF zone)",
                 "QObject* findGestureAsQObject(QString mode, int kind, int direction, QPointF position)",
                 "bool containsGestureKind(int kind)", "QObject* cloneAsQObject(QObject* parent)",
                 "QObject* cloneAsQObject()", "bool fastMergeWithQObject(QObject* other)", "bool save()",
                 "bool prune()", "QString trySaveAsString()"}};

        QTest::newRow("GestureServiceProvider")
                << Expected{&GestureServiceProvider::staticMetaObject,
                            {"appId: QString rw", "readonly: bool rw", "service: vellix::gesture::GestureService*"},
                            {"signal appIdChanged(QString value)", "signal readonlyChanged(bool value)",
                             "signal serviceChanged(vellix::gesture::GestureService* value)"}};

        QTest::newRow("GestureKindFilterModel")
                << Expected{&GestureKindFilterModel::staticMetaObject,
                            {"blackList: QList<int> rw", "whiteList: QList<int> rw", "noActionVisible: bool rw"},
                            {"signal blackListChanged(QList<int> value)", "signal whiteListChanged(QList<int> value)",
                             "signal noActionVisibleChanged(bool value)"}};

        QTest::newRow("ExitNotifier") << Expected{&ExitNotifier::staticMetaObject, {}, {"signal prepareExit()"}};
    }

    void surface()
    {
        QFETCH(Expected, expected);
        const QMetaObject *meta = expected.metaObject;
        QStringList properties;
        for (int i = meta->propertyOffset(); i < meta->propertyCount(); ++i) {
            const QMetaProperty property = meta->property(i);
            properties.append(describe(property));
            if (meta == &GestureSection::staticMetaObject)
                continue;
            const QMetaMethod notify = property.notifySignal();
            QCOMPARE(notify.name(), QByteArray(property.name()) + "Changed");
            QCOMPARE(notify.parameterNames(), QList<QByteArray>{"value"});
        }
        QCOMPARE(properties.join(QLatin1Char('\n')), expected.properties.join(QLatin1Char('\n')));

        QStringList methods;
        for (int i = meta->methodOffset(); i < meta->methodCount(); ++i)
            methods.append(describe(meta->method(i)));
        QCOMPARE(methods.join(QLatin1Char('\n')), expected.methods.join(QLatin1Char('\n')));
        for (int i = meta->methodOffset(); i < meta->methodCount(); ++i) {
            QVERIFY2(meta->method(i).methodType() != QMetaMethod::Slot, meta->method(i).methodSignature().constData());
        }
    }

    void metaTypesByName_data()
    {
        QTest::addColumn<int>("flag");
        QTest::newRow("GestureSection") << int(QMetaType::IsGadget);
        QTest::newRow("vellix::gesture::Gesture*") << int(QMetaType::PointerToQObject);
        QTest::newRow("vellix::gesture::Action*") << int(QMetaType::PointerToQObject);
        QTest::newRow("vellix::gesture::ActionProxyNode*") << int(QMetaType::PointerToQObject);
        QTest::newRow("vellix::gesture::GestureService*") << int(QMetaType::PointerToQObject);
        QTest::newRow("QList<vellix::gesture::Action*>") << 0;
        QTest::newRow("const vellix::gesture::FeaturesProvider*") << 0;
        QTest::newRow("QList<int>") << 0;
    }

    void metaTypesByName()
    {
        // Some types are registered only when a property of their type is read.
        Gesture gesture({}, {}, Gesture::Tap, Gesture::wholeZone, Gesture::NoDirection, {}, nullptr, nullptr, {});
        for (const char *property : {"availableActions", "currentAction", "actionTree"})
            QVERIFY(gesture.property(property).isValid());
        const QVariant self = QVariant::fromValue(&gesture);
        GestureKindFilterModel filter;
        GestureServiceProvider provider(nullptr);
        QVERIFY(provider.property("service").isValid());
        GestureService service(ApplicationPaths({}, {}, {}), nullptr, true);
        QVERIFY(service.property("featuresProvider").isValid());

        const int type = QMetaType::type(QTest::currentDataTag());
        QVERIFY(type != QMetaType::UnknownType);
        QFETCH(int, flag);
        QVERIFY(!flag || QMetaType::typeFlags(type) & flag);
    }

    void actionListIsIterable()
    {
        Gesture gesture({}, {}, Gesture::Tap, Gesture::wholeZone, Gesture::NoDirection,
                        {new Action(QStringLiteral("a"), {}, {})}, nullptr, nullptr, {});
        const QVariant list = gesture.property("availableActions");
        QVERIFY(list.canConvert<QVariantList>());
        QCOMPARE(list.value<QVariantList>().value(0).value<Action *>(), gesture.availableActions().at(0));
    }

    void enums()
    {
        const QMetaEnum kind = QMetaEnum::fromType<Gesture::Kind>();
        const QMetaEnum direction = QMetaEnum::fromType<Gesture::Direction>();
        const char *const kinds[] = {"Tap", "Hold", "Swipe", "Drag", "Undefined"};
        const char *const directions[] = {"ToLeft", "ToRight", "ToTop", "ToBottom", "NoDirection"};
        QCOMPARE(kind.keyCount(), 5);
        QCOMPARE(direction.keyCount(), 5);
        for (int i = 0; i < 5; ++i) {
            QCOMPARE(QByteArray(kind.valueToKey(i)), QByteArray(kinds[i]));
            QCOMPARE(QByteArray(direction.valueToKey(i)), QByteArray(directions[i]));
        }
    }
};

QTEST_GUILESS_MAIN(tst_MetaObjects)
#include "tst_metaobjects.moc"
