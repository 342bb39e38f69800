#include "testing.h"

#include <gesture_api/gesturekindfiltermodel.h>
#include <gesture_api/gestureserviceprovider.h>

#include <vellix/exitnotifier.h>

#include <QEventLoop>
#include <QPointer>
#include <QSignalSpy>
#include <QTimer>

#include <functional>
#include <memory>
#include <utility>

// Slots that change or destroy the value or the sender of their signal. The address sanitizer checks most of it.

using namespace vellix;
using namespace vellix::gesture;
using GestureList = GestureService::GestureList;
using testing::DataTree;
using testing::LogCapture;

// A slot that acts, between two that listen.
template <class Object, class Value>
class Audience
{
public:
    Audience(Object *sender, void (Object::*signal)(Value), const std::function<void()> &act)
        : later(std::make_unique<QObject>())
    {
        QObject::connect(sender, signal, &m_listeners, [this](const std::decay_t<Value> &value) { before = value; });
        QObject::connect(sender, signal, &m_listeners, act);
        QObject::connect(sender, signal, later.get(), [this](const std::decay_t<Value> &value) { after = value; });
    }

    // Whether both got this value last.
    bool lastHeard(const std::decay_t<Value> &value) const { return before == value && (!later || after == value); }

    std::unique_ptr<QObject> later;
    std::decay_t<Value> before{};
    std::decay_t<Value> after{};

private:
    QObject m_listeners;
};

static Action *newAction(const char *path)
{
    return new Action(QString::fromLatin1(path), {}, {});
}

// Two gestures with the same three actions, the first of which is their current one; the second owns them.
struct Gestures
{
    Gestures() : first(newAction("first")), second(newAction("second")), third(newAction("third"))
    {
        one = new Gesture(QStringLiteral("g"), {}, Gesture::Tap, Gesture::wholeZone, Gesture::NoDirection,
                          {first, second, third}, first, nullptr, {});
        two = one->clone();
        two->setCurrentAction(second);
    }
    Gestures(const Gestures &) = delete;
    Gestures &operator=(const Gestures &) = delete;
    ~Gestures()
    {
        delete one;
        delete two;
        qDeleteAll(made);
    }

    bool isAlive(const Action *action) const { return action == first || action == second || action == third; }

    QPointer<Action> first, second, third;
    QPointer<Gesture> one, two;
    QList<Gesture *> made;
    bool acted = false;
};

using GestureAct = void (*)(Gestures &, Audience<Gesture, Action *> &);
Q_DECLARE_METATYPE(GestureAct)

// Two services of three gestures each; the second is a clone with other choices.
struct Services
{
    Services()
    {
        QList<Action *> actions;
        for (const char *path : {"first", "second"})
            actions.append(newAction(path));
        QList<Gesture *> gestures;
        for (int i = 0; i < 3; ++i) {
            gestures.append(new Gesture(QString::number(i), {}, Gesture::Tap, Gesture::wholeZone, Gesture::NoDirection,
                                        actions, actions.first(), nullptr, {}));
        }
        one = new GestureService(ApplicationPaths({}, {}, {}), nullptr, true,
                                 GestureList([gestures] { return gestures; }), false);
        two = one->clone();
        qDeleteAll(gestures);
        for (Gesture *gesture : two->gestureList())
            gesture->setCurrentAction(gesture->availableActions().last());
    }
    Services(const Services &) = delete;
    Services &operator=(const Services &) = delete;
    ~Services()
    {
        delete one;
        delete two;
    }

    static int changed(const GestureService *service)
    {
        const QList<Gesture *> &gestures = service->gestureList();
        return static_cast<int>(std::count_if(gestures.begin(), gestures.end(), [](const Gesture *gesture) {
            return gesture->currentAction()->path() == QLatin1String("second");
        }));
    }

    QPointer<GestureService> one, two;
};

using ServiceAct = void (*)(Services &);
Q_DECLARE_METATYPE(ServiceAct)

static const char *const configuration = R"({
    "actions": [{"path": "next", "title": "Next"}, {"path": "menu", "title": "Menu"}],
    "gestures": [{"id": "g", "kind": "tap", "zone": "left", "availableActions": ["next", "menu"],
                  "defaultAction": "next"}]
})";

// Of an application.
struct Provided
{
    explicit Provided(const DataTree &files) : tree(files), provider(new GestureServiceProvider(nullptr)) {}
    Provided(const Provided &) = delete;
    Provided &operator=(const Provided &) = delete;
    ~Provided() { delete provider; }

    // Bindings that no file had before.
    void writeFile() const
    {
        static int written = 0;
        testing::writeFile(tree.userFile(provider->appId()),
                           R"({"version": 1, "actions": {"g": "menu", ")" + QByteArray::number(++written)
                                   + R"(": "menu"}})");
    }

    // Until the provider has replaced its service, if there still is one, and the event loop has deleted the old one.
    bool waitForReplacement() const
    {
        const QPointer<GestureService> replaced = provider->service();
        const QPointer<GestureServiceProvider> guard = provider;
        writeFile();
        return replaced
                && QTest::qWaitFor(
                        [&] { return !guard || (!replaced && (guard->service() || guard->appId().isEmpty())); }, 30000);
    }

    const DataTree &tree;
    QPointer<GestureServiceProvider> provider;
    std::function<void()> deleteLaterListeners;
};

using ProviderStep = void (*)(Provided &);
Q_DECLARE_METATYPE(ProviderStep)

template <class Signal, class Value>
static void tryFilterModel(const char *property, Signal signal, const Value &old, const Value &value)
{
    QFETCH(QString, act);
    Services services;
    QPointer<GestureKindFilterModel> model(new GestureKindFilterModel);
    bool acted = false;
    std::unique_ptr<Audience<GestureKindFilterModel, Value>> listeners;
    listeners = std::make_unique<Audience<GestureKindFilterModel, Value>>(model, signal, [&] {
        if (acted)
            return;
        acted = true;
        if (act == QLatin1String("the model is deleted"))
            delete model;
        else if (act == QLatin1String("set back"))
            model->setProperty(property, QVariant::fromValue(old));
        else if (act == QLatin1String("the source is set"))
            model->setSourceModel(services.one->gestures());
        else if (act == QLatin1String("the next listener is deleted"))
            listeners->later.reset();
    });
    QVERIFY(model->setProperty(property, QVariant::fromValue(value)));
    QVERIFY(acted);
    if (model)
        QVERIFY(listeners->lastHeard(model->property(property).template value<Value>()));
    delete model;
}

class tst_Reentrancy : public QObject
{
    Q_OBJECT

    DataTree m_tree;

private Q_SLOTS:
    void initTestCase()
    {
        for (const QString &app :
             {QStringLiteral("app"), QStringLiteral("other"), ApplicationPathsConfiguration::currentAppId()})
            testing::writeFile(m_tree.defaultFile(app), configuration);
        LogCapture log; // there is no paths file
        GestureServiceProvider::applicationPathsConfiguration();
    }

    void cleanup()
    {
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        for (const QString &file : testing::filesBelow(m_tree.user()))
            QFile::remove(m_tree.user(file));
    }

    void currentActionChanged_data()
    {
        using Listeners = Audience<Gesture, Action *>;
        QTest::addColumn<QString>("cause");
        QTest::addColumn<GestureAct>("act");
        for (const char *cause : {"set", "merged", "destroyed"}) {
            const auto row = [cause](const char *name, GestureAct act) {
                QTest::addRow("%s: %s", cause, name) << QString::fromLatin1(cause) << act;
            };
            row("nothing", [](Gestures &, Listeners &) {});
            row("the gesture is deleted", [](Gestures &world, Listeners &) { delete world.one; });
            row("the owner of the actions is deleted", [](Gestures &world, Listeners &) { delete world.two; });
            row("all is deleted", [](Gestures &world, Listeners &) {
                delete world.two;
                delete world.one;
            });
            row("the action is deleted", [](Gestures &world, Listeners &) { delete world.one->currentAction(); });
            row("an available action is deleted", [](Gestures &world, Listeners &) { delete world.third; });
            row("the action before is set again", [](Gestures &world, Listeners &) {
                if (world.one->currentAction() != world.first)
                    world.one->setCurrentAction(world.first);
            });
            row("a third action is set",
                [](Gestures &world, Listeners &) { world.one->setCurrentAction(world.third); });
            row("no action is set", [](Gestures &world, Listeners &) { world.one->setCurrentAction(nullptr); });
            row("a third action is set and deleted", [](Gestures &world, Listeners &) {
                if (std::exchange(world.acted, true))
                    return;
                world.one->setCurrentAction(world.third);
                delete world.third;
            });
            row("another gesture is merged", [](Gestures &world, Listeners &) { world.one->merge(world.two); });
            row("the gesture is cloned", [](Gestures &world, Listeners &) { world.made.append(world.two->clone()); });
            row("a gesture is made", [](Gestures &world, Listeners &) {
                world.made.append(new Gesture({}, {}, Gesture::Tap, {}, Gesture::NoDirection, {world.first},
                                              world.first, world.first, {}));
            });
            row("the next listener is deleted", [](Gestures &, Listeners &listeners) { listeners.later.reset(); });
            row("the event loop deletes the gesture", [](Gestures &world, Listeners &) {
                QEventLoop loop;
                QObject::connect(world.one, &QObject::destroyed, &loop, &QEventLoop::quit);
                QTimer::singleShot(0, world.one, [&world] { world.one->deleteLater(); });
                loop.exec();
            });
        }
    }

    void currentActionChanged()
    {
        QFETCH(QString, cause);
        QFETCH(GestureAct, act);
        Gestures world;
        std::unique_ptr<Audience<Gesture, Action *>> listeners;
        listeners = std::make_unique<Audience<Gesture, Action *>>(world.one, &Gesture::currentActionChanged,
                                                                  [&] { act(world, *listeners); });
        if (cause == QLatin1String("set"))
            world.one->setCurrentAction(world.second);
        else if (cause == QLatin1String("merged"))
            QVERIFY(world.one->merge(world.two));
        else
            delete world.first;

        QList<Gesture *> living = world.made;
        for (Gesture *gesture : {world.one.data(), world.two.data()}) {
            if (gesture)
                living.append(gesture);
        }
        for (const Gesture *gesture : qAsConst(living)) {
            for (const Action *action : gesture->availableActions())
                QVERIFY(world.isAlive(action));
            for (const Action *action : {gesture->defaultAction(), gesture->currentAction()})
                QVERIFY(!action || world.isAlive(action));
        }
        if (world.one)
            QVERIFY(listeners->lastHeard(world.one->currentAction()));
    }

    // A value that a slot sets elsewhere is announced only there.
    void otherSender()
    {
        Gestures all;
        Audience<Gesture, Action *> audience(all.one, &Gesture::currentActionChanged,
                                             [&all] { all.two->setCurrentAction(all.third); });
        all.one->setCurrentAction(all.second);
        QVERIFY(audience.lastHeard(all.second));
        QCOMPARE(all.two->currentAction(), all.third);
    }

    void everybodyHearsOfADestroyedAction()
    {
        Gestures world;
        world.two->setCurrentAction(world.first);
        // Each tries to keep it in the other.
        connect(world.one, &Gesture::currentActionChanged, [&] { world.two->setCurrentAction(world.first); });
        connect(world.two, &Gesture::currentActionChanged, [&] { world.one->setCurrentAction(world.first); });
        QSignalSpy one(world.one, &Gesture::currentActionChanged);
        QSignalSpy two(world.two, &Gesture::currentActionChanged);
        delete world.first;
        QCOMPARE(one.size(), 1);
        QCOMPARE(two.size(), 1);
        QCOMPARE(world.one->currentAction(), nullptr);
        QCOMPARE(world.two->currentAction(), nullptr);
    }

    void fastMerge_data()
    {
        QTest::addColumn<ServiceAct>("act");
        QTest::addColumn<bool>("merged");
        QTest::addColumn<int>("changed"); // of the service, if it still exists
        const auto row = [](const char *name, bool merged, int changed, ServiceAct act) {
            QTest::newRow(name) << act << merged << changed;
        };
        row("nothing", true, 3, [](Services &) {});
        row("the service is deleted", false, 0, [](Services &services) { delete services.one; });
        row("the other service is deleted", false, 2, [](Services &services) { delete services.two; });
        row("both are deleted", false, 0, [](Services &services) {
            delete services.one;
            delete services.two;
        });
        row("a later gesture is deleted", true, -1,
            [](Services &services) { delete services.one->gestureList().last(); });
        row("a later gesture of the other is deleted", true, 2,
            [](Services &services) { delete services.two->gestureList().last(); });
        row("the gesture is deleted", true, -1, [](Services &services) { delete services.one->gestureList().at(1); });
        row("merged again", true, 3, [](Services &services) { services.one->fastMerge(services.two); });
        row("merged back", true, 2, [](Services &services) { services.two->fastMerge(services.one); });
        row("cloned", true, 3, [](Services &services) { delete services.one->clone(); });
    }

    // The slot belongs to the second gesture of three.
    void fastMerge()
    {
        QFETCH(ServiceAct, act);
        QFETCH(bool, merged);
        QFETCH(int, changed);
        Services services;
        QSignalSpy told(services.one, &GestureService::gesturesChanged);
        bool acted = false;
        connect(services.one->gestureList().at(1), &Gesture::currentActionChanged, [&] {
            if (!acted) {
                acted = true;
                act(services);
            }
        });
        QCOMPARE(services.one->fastMerge(services.two), merged);
        if (!merged)
            QCOMPARE(told.size(), 0);
        else
            QVERIFY(!told.isEmpty());
        if (services.one && changed >= 0)
            QCOMPARE(Services::changed(services.one), changed);
    }

    // A settings screen merges into the provider's service and asks something in between.
    void fastMergeWhileTheUsersFileChanges()
    {
        Provided world(m_tree);
        world.provider->setAppId(QStringLiteral("app"));
        GestureService *service = world.provider->service();
        const std::unique_ptr<GestureService> copy(service->clone());
        Gesture *edited = copy->gestureList().first();
        edited->setCurrentAction(edited->availableActions().last());
        bool replaced = false;
        connect(service->gestureList().first(), &Gesture::currentActionChanged,
                [&] { replaced = world.waitForReplacement(); });
        QVERIFY(!service->fastMerge(copy.get()));
        QVERIFY(replaced);
        QVERIFY(world.provider->service() != service);
    }

    void gesturesChanged_data()
    {
        QTest::addColumn<ServiceAct>("act");
        const auto row = [](const char *name, ServiceAct act) { QTest::newRow(name) << act; };
        row("nothing", [](Services &) {});
        row("the service is deleted", [](Services &services) { delete services.one; });
        row("the other service is deleted", [](Services &services) { delete services.two; });
        row("merged again", [](Services &services) {
            static bool inside = false;
            const bool outside = !inside;
            inside = true;
            if (outside)
                services.one->fastMerge(services.two);
            inside = !outside;
        });
        row("cloned", [](Services &services) { delete services.one->clone(); });
    }

    void gesturesChanged()
    {
        QFETCH(ServiceAct, act);
        Services services;
        connect(services.one, &GestureService::gesturesChanged, [&] { act(services); });
        QSignalSpy told(services.one, &GestureService::gesturesChanged);
        QVERIFY(services.one->fastMerge(services.two));
        QVERIFY(!services.one || !told.isEmpty());
    }

    void provider_data()
    {
        QTest::addColumn<QString>("signal");
        QTest::addColumn<ProviderStep>("cause");
        QTest::addColumn<ProviderStep>("act");
        using Step = std::pair<const char *, ProviderStep>;
        const Step setAppId{"appId", [](Provided &world) { world.provider->setAppId(QStringLiteral("other")); }};
        const Step setReadonly{"readonly", [](Provided &world) { world.provider->setReadonly(false); }};
        const std::vector<Step> causes{
                setAppId,
                setReadonly,
                {"release", [](Provided &world) { world.provider->releaseService(); }},
                {"load",
                 [](Provided &world) {
                     delete world.provider->service();
                     world.provider->loadService(nullptr);
                 }},
                {"install",
                 [](Provided &world) { world.provider->installService(nullptr, QStringLiteral("app"), true); }},
                {"the first turn of the loop",
                 [](Provided &world) {
                     delete world.provider->service();
                     QCoreApplication::processEvents();
                 }},
                {"the user's file",
                 [](Provided &world) {
                     QCoreApplication::processEvents();
                     world.waitForReplacement();
                 }},
        };
        const std::vector<Step> acts{
                {"nothing", [](Provided &) {}},
                {"the provider is deleted", [](Provided &world) { delete world.provider; }},
                {"a third application is set",
                 [](Provided &world) { world.provider->setAppId(ApplicationPathsConfiguration::currentAppId()); }},
                {"the first application is set",
                 [](Provided &world) { world.provider->setAppId(QStringLiteral("app")); }},
                {"no application is set", [](Provided &world) { world.provider->setAppId(QString()); }},
                {"the switch is turned",
                 [](Provided &world) { world.provider->setReadonly(!world.provider->readonly()); }},
                {"released", [](Provided &world) { world.provider->releaseService(); }},
                {"loaded", [](Provided &world) { world.provider->loadService(nullptr); }},
                {"released and loaded",
                 [](Provided &world) {
                     world.provider->releaseService();
                     world.provider->loadService(nullptr);
                 }},
                {"installed",
                 [](Provided &world) {
                     world.provider->installService(nullptr, world.provider->appId(), world.provider->readonly());
                 }},
                {"watched", [](Provided &world) { world.provider->syncApp(world.provider->appId(), nullptr); }},
                {"the user's file changes in an event loop",
                 [](Provided &world) {
                     if (world.provider->service())
                         world.waitForReplacement();
                 }},
                {"the next listeners are deleted", [](Provided &world) { world.deleteLaterListeners(); }},
        };
        const auto row = [](const char *signal, const Step &cause, const Step &act) {
            QTest::addRow("%s by %s: %s", signal, cause.first, act.first)
                    << QString::fromLatin1(signal) << cause.second << act.second;
        };
        for (const Step &act : acts) {
            for (const Step &cause : causes)
                row("serviceChanged", cause, act);
            row("appIdChanged", setAppId, act);
            row("readonlyChanged", setReadonly, act);
        }
        // At any other time no signal announces that.
        for (const Step &cause : causes) {
            row("serviceChanged", cause,
                {"the service is deleted", [](Provided &world) { delete world.provider->service(); }});
        }
    }

    // The slot acts once, so that it settles. No listener may get an old value last; the service belongs to the last
    // values that were set.
    void provider()
    {
        QFETCH(QString, signal);
        QFETCH(ProviderStep, cause);
        QFETCH(ProviderStep, act);
        Provided world(m_tree);
        world.provider->setAppId(QStringLiteral("app"));
        QVERIFY(world.provider->service());

        bool acted = false;
        const auto actOf = [&](const char *name) {
            return signal == QLatin1String(name) ? std::function<void()>([&] {
                if (!acted) {
                    acted = true;
                    act(world);
                }
            })
                                                 : std::function<void()>([] {});
        };
        Audience<GestureServiceProvider, GestureService *> services(
                world.provider, &GestureServiceProvider::serviceChanged, actOf("serviceChanged"));
        Audience<GestureServiceProvider, QString> appIds(world.provider, &GestureServiceProvider::appIdChanged,
                                                         actOf("appIdChanged"));
        Audience<GestureServiceProvider, bool> switches(world.provider, &GestureServiceProvider::readonlyChanged,
                                                        actOf("readonlyChanged"));
        switches.before = switches.after = true;
        appIds.before = appIds.after = QStringLiteral("app");
        world.deleteLaterListeners = [&] {
            services.later.reset();
            appIds.later.reset();
            switches.later.reset();
        };
        cause(world);
        QVERIFY(acted);
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        if (!world.provider)
            return;

        GestureService *service = world.provider->service();
        QVERIFY(appIds.lastHeard(world.provider->appId()));
        QVERIFY(switches.lastHeard(world.provider->readonly()));
        QVERIFY(!services.later || services.after == service);
        const auto made = world.provider->findChildren<GestureService *>(QString(), Qt::FindDirectChildrenOnly);
        QCOMPARE(made, service ? QList<GestureService *>{service} : QList<GestureService *>());
        if (world.provider->appId().isEmpty())
            QVERIFY(!service);
        if (service) {
            QCOMPARE(services.before, service);
            QCOMPARE(service->paths().appId(), world.provider->appId());
            QCOMPARE(service->readonly(), world.provider->readonly());
            QVERIFY(world.waitForReplacement()); // the watch is also of this application
        }
    }

    void filterModel_data()
    {
        QTest::addColumn<QString>("property");
        QTest::addColumn<QString>("act");
        for (const char *property : {"blackList", "whiteList", "noActionVisible"}) {
            for (const char *act :
                 {"nothing", "the model is deleted", "set back", "the source is set", "the next listener is deleted"})
                QTest::addRow("%s: %s", property, act) << QString::fromLatin1(property) << QString::fromLatin1(act);
        }
    }

    void filterModel()
    {
        QFETCH(QString, property);
        using Model = GestureKindFilterModel;
        const QList<int> kinds{1, 2};
        if (property == QLatin1String("blackList"))
            tryFilterModel("blackList", &Model::blackListChanged, QList<int>(), kinds);
        else if (property == QLatin1String("whiteList"))
            tryFilterModel("whiteList", &Model::whiteListChanged, QList<int>(), kinds);
        else
            tryFilterModel("noActionVisible", &Model::noActionVisibleChanged, false, true);
    }

    void prepareExit_data()
    {
        QTest::addColumn<bool>("destroyed"); // or notified by a client
        QTest::addColumn<QString>("act");
        for (const bool destroyed : {false, true}) {
            for (const char *act : {"the instance is deleted", "the next listener is deleted", "notified again",
                                    "the service is deleted", "a service is made"})
                QTest::addRow("%s: %s", destroyed ? "destroyed" : "notified", act)
                        << destroyed << QString::fromLatin1(act);
        }
        // A listener that destroys it must not be called again for that.
        QTest::newRow("notified: the notifier is deleted") << false << "the notifier is deleted";
    }

    void prepareExit()
    {
        QFETCH(bool, destroyed);
        QFETCH(QString, act);
        delete ExitNotifier::instance();
        const ApplicationPaths paths(QStringLiteral("app"), m_tree.userFile(QStringLiteral("app")),
                                     m_tree.defaultFile(QStringLiteral("app")));
        int told = 0;
        std::unique_ptr<GestureService> service;
        std::unique_ptr<GestureService> made;
        ExitNotifier *notifier = ExitNotifier::instance();
        const auto context = std::make_unique<QObject>();
        auto next = std::make_unique<QObject>();
        connect(notifier, &ExitNotifier::prepareExit, context.get(), [&] {
            ++told;
            if (act == QLatin1String("the instance is deleted"))
                delete ExitNotifier::instance();
            else if (act == QLatin1String("the notifier is deleted"))
                delete notifier;
            else if (act == QLatin1String("the next listener is deleted"))
                next.reset();
            else if (act == QLatin1String("notified again"))
                ExitNotifier::notify();
            else if (act == QLatin1String("the service is deleted"))
                service.reset();
            else
                made = std::make_unique<GestureService>(paths, nullptr, false);
        });
        connect(notifier, &ExitNotifier::prepareExit, next.get(), [] {});
        service = std::make_unique<GestureService>(paths, nullptr, false);
        if (destroyed)
            delete notifier;
        else
            ExitNotifier::notify();
        QCOMPARE(told, 1);
        if (service && !act.endsWith(QLatin1String("is deleted")))
            QVERIFY(service->saved());
        if (made && destroyed) { // it listens to the next notifier
            ExitNotifier::notify();
            QVERIFY(made->saved());
        }
    }

    void lastTitleChanged()
    {
        QPointer<Action> action(newAction("a"));
        connect(action, &Action::lastTitleChanged, [action] { delete action; });
        Q_EMIT action->titlesChanged({});
        QVERIFY(!action);
    }
};

QTEST_GUILESS_MAIN(tst_Reentrancy)
#include "tst_reentrancy.moc"
