// Calls every function of the interface in any order, also from within slots. About three bytes make a call; calls of
// slots come from the same bytes.

#include "fuzzing.h"

#include <gesture_api/gesturekindfiltermodel.h>
#include <gesture_api/gestureserviceprovider.h>

#include <vellix/exitnotifier.h>

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QHash>
#include <QPointer>
#include <QSet>
#include <QTemporaryDir>

#include <fuzzer/FuzzedDataProvider.h>

#include <cstdio>
#include <cstdlib>

using namespace vellix;
using namespace vellix::gesture;

// Takes precedence over the platform library's.
namespace vellix {
namespace utilities {
namespace log {
namespace cb {
void error(const std::string &, int, const std::string &, const std::function<std::ostream &(std::ostream &)> &) {}
void warn(const std::string &, int, const std::string &, const std::function<std::ostream &(std::ostream &)> &) {}
}
}
}
}

static constexpr int maxCalls = 256; // of one input
static constexpr int maxDepth = 4;   // of slots within slots
static unsigned long long allCalls = 0;

// The files of all calls; removed at the end of the process.
static QTemporaryDir &files()
{
    static QTemporaryDir directory;
    return directory;
}

static void writeFile(const QString &path, const QByteArray &bytes)
{
    QDir().mkpath(QFileInfo(path).path());
    QFile file(path);
    if (file.open(QIODevice::WriteOnly))
        file.write(bytes);
}

static const char *const apps[] = {"app", "other", "bad", "qmlplugindump", ""};

static QString userFile(const char *app)
{
    return files().filePath(QStringLiteral("user/vellix/gestures/apps/current/%1/cfg.json").arg(QLatin1String(app)));
}

extern "C" int LLVMFuzzerInitialize(int *argc, char ***argv)
{
    qputenv("XDG_DATA_HOME", QFile::encodeName(files().filePath(QStringLiteral("user"))));
    qputenv("XDG_DATA_DIRS", QFile::encodeName(files().filePath(QStringLiteral("system"))));
    qInstallMessageHandler([](QtMsgType, const QMessageLogContext &, const QString &) {});
    const QString defaults = files().filePath(QStringLiteral("system/vellix/config/gestures/apps/default/%1/cfg.json"));
    const QByteArray good = R"({"actions": [{"path": "a", "title": "A"}, {"path": "a/b", "titles": ["A", "B"]},
                                {"path": "light", "title": "L", "features": ["frontlight"]}],
                                "actionGroups": {"all": ["a", "a/b", "light"]},
                                "gestures": [{"id": "g", "kind": "tap", "zone": "left", "availableActions": "all",
                                              "defaultAction": "a"},
                                             {"id": "h", "kind": "swipe", "direction": "toLeft",
                                              "availableActions": ["a/b"], "defaultAction": "a/b"},
                                             {"id": "i", "kind": "hold", "zone": "whole", "availableActions": "all",
                                              "defaultAction": {"path": "inline", "title": "I"}}]})";
    writeFile(defaults.arg(QStringLiteral("app")), good);
    writeFile(defaults.arg(QStringLiteral("other")), good);
    writeFile(defaults.arg(QStringLiteral("bad")), "{");
    static QCoreApplication application(*argc, *argv);
    std::atexit([] { std::fprintf(stderr, "stat::number_of_calls: %llu\n", allCalls); });
    return 0;
}

namespace {

class World
{
public:
    World(const std::uint8_t *data, std::size_t size) : m_bytes(data, size) {}
    World(const World &) = delete;
    World &operator=(const World &) = delete;
    ~World();

    void run()
    {
        while (m_calls < maxCalls && m_bytes.remaining_bytes() > 0) {
            call();
            check();
        }
    }

private:
    template <class T>
    using Pool = QList<QPointer<T>>;

    int number(int last) { return m_bytes.ConsumeIntegralInRange(0, last); }
    bool coin() { return m_bytes.ConsumeBool(); }
    const char *app() { return apps[number(4)]; }

    // Any living one, or null.
    template <class T>
    T *any(Pool<T> &pool)
    {
        pool.removeAll(nullptr);
        return pool.isEmpty() ? nullptr : pool.at(number(pool.size() - 1)).data();
    }
    // The same, for destroying it: later calls do not find it.
    template <class T>
    T *taken(Pool<T> &pool)
    {
        pool.removeAll(nullptr);
        return pool.isEmpty() ? nullptr : pool.takeAt(number(pool.size() - 1)).data();
    }
    template <class T>
    T *kept(Pool<T> &pool, T *object)
    {
        if (object)
            pool.append(object);
        return object;
    }

    Action *anyAction()
    {
        const Gesture *gesture = coin() ? anyGesture() : nullptr;
        if (!gesture || gesture->availableActions().isEmpty())
            return any(m_actions);
        return gesture->availableActions().at(number(gesture->availableActions().size() - 1));
    }
    Gesture *anyGesture()
    {
        const GestureService *service = coin() ? anyService() : nullptr;
        if (!service || service->gestureList().isEmpty())
            return any(m_gestures);
        return service->gestureList().at(number(service->gestureList().size() - 1));
    }
    GestureService *anyService()
    {
        const GestureServiceProvider *provider = coin() ? any(m_providers) : nullptr;
        return provider && provider->service() ? provider->service() : any(m_services);
    }
    const FeaturesProvider *anyFeatures() { return number(7) ? &m_features : nullptr; }

    // Makes calls from within a slot.
    void react()
    {
        if (m_depth >= maxDepth || m_calls >= maxCalls || m_bytes.remaining_bytes() == 0)
            return;
        ++m_depth;
        for (int i = number(2); i > 0; --i)
            call();
        --m_depth;
    }
    template <class Object, class Value>
    void reactTo(Object *sender, void (Object::*signal)(Value))
    {
        QObject::connect(sender, signal, &m_slots, [this] { react(); });
    }

    void call();
    void callAction();
    void callGesture();
    void callTree();
    void makeService();
    void listenTo(GestureService *service);
    void callService();
    void callProvider();
    void callModel();
    void callNotifier();
    void writeUserFile();
    void runLoop() const;
    Gesture *adopted(Gesture *gesture);
    void destroyAction(Action *action);
    void check() const;

    FuzzedDataProvider m_bytes;
    int m_calls = 0;
    int m_depth = 0;
    fuzzing::Features m_features;
    QObject m_slots; // ends all connections
    QObject m_owner; // of objects without another owner
    Pool<Action> m_actions;
    QSet<Action *> m_dying; // must not be destroyed again
    Pool<Gesture> m_gestures;
    Pool<ActionProxyNode> m_trees;
    Pool<ActionProxyNode> m_nodes; // owned by their trees
    Pool<GestureService> m_services;
    Pool<GestureServiceProvider> m_providers;
    Pool<GestureKindFilterModel> m_models;
    // The last announced values.
    QHash<const Gesture *, Action *> m_currentActions;
    struct Told
    {
        QString appId;
        bool readonly;
        GestureService *service;
    };
    QHash<const GestureServiceProvider *, Told> m_told;
};

World::~World()
{
    m_calls = maxCalls;
    for (const auto &model : qAsConst(m_models))
        delete model;
    for (const auto &provider : qAsConst(m_providers))
        delete provider;
    for (const auto &service : qAsConst(m_services))
        delete service;
    for (const auto &gesture : qAsConst(m_gestures))
        delete gesture;
    for (const auto &tree : qAsConst(m_trees))
        delete tree;
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    for (const char *app : apps) {
        QFile::remove(userFile(app));
        QDir(QFileInfo(userFile(app)).path()).removeRecursively(); // with rejected ones
    }
}

void World::call()
{
    ++m_calls;
    ++allCalls;
    switch (number(8)) {
    case 0: return callAction();
    case 1: return callGesture();
    case 2: return callTree();
    case 3: return makeService();
    case 4: return callService();
    case 5: return callProvider();
    case 6: return callModel();
    case 7: return number(15) ? writeUserFile() : callNotifier();
    default: return runLoop();
    }
}

void World::destroyAction(Action *action)
{
    if (!action || m_dying.contains(action))
        return;
    m_dying.insert(action);
    delete action;
    m_dying.remove(action);
}

void World::callAction()
{
    static const char *const paths[] = {"a", "a/b", "a/c", "/", "", "x/y/z"};
    switch (number(5)) {
    case 0:
    case 1: {
        const QString path = QString::fromLatin1(paths[number(5)]);
        Action *action = kept(m_actions, new Action(path, path.split(QLatin1Char('/')), {}, &m_owner));
        reactTo(action, &Action::lastTitleChanged);
        break;
    }
    case 2: destroyAction(anyAction()); break;
    case 3:
        if (Action *action = anyAction())
            Q_EMIT action->titlesChanged({});
        break;
    default:
        if (const Action *action = anyAction()) {
            action->supported();
            action->toVariant();
            fuzzing::require(action->titles().isEmpty() || action->lastTitle() == action->titles().last());
        }
    }
}

Gesture *World::adopted(Gesture *gesture)
{
    m_gestures.append(gesture);
    reactTo(gesture, &Gesture::currentActionChanged);
    // Connected last, so that this gets the value after the slot before has made its calls.
    m_currentActions.insert(gesture, gesture->currentAction());
    QObject::connect(gesture, &Gesture::currentActionChanged, &m_slots,
                     [this, gesture](Action *action) { m_currentActions[gesture] = action; });
    return gesture;
}

void World::callGesture()
{
    switch (number(8)) {
    case 0:
    case 1: {
        QList<Action *> available;
        for (int i = number(4); i > 0; --i)
            available.append(anyAction());
        Action *const byDefault = coin() ? anyAction() : nullptr;
        Action *const current = coin() ? anyAction() : nullptr;
        adopted(new Gesture(QStringLiteral("g"), {}, static_cast<Gesture::Kind>(number(1)), Gesture::wholeZone,
                            Gesture::NoDirection, available, byDefault, current, {}));
        break;
    }
    case 2: delete taken(m_gestures); break;
    case 3:
        if (Gesture *gesture = any(m_gestures))
            gesture->deleteLater();
        break;
    case 4:
        if (const Gesture *gesture = anyGesture())
            adopted(gesture->clone());
        break;
    case 5: {
        Gesture *const gesture = anyGesture();
        Gesture *const other = anyGesture();
        if (gesture)
            gesture->merge(other);
        break;
    }
    case 6:
        if (Gesture *gesture = anyGesture())
            gesture->setProperty("currentAction", QVariant::fromValue(anyAction()));
        break;
    default:
        if (Gesture *gesture = anyGesture())
            gesture->setCurrentAction(number(3) ? anyAction() : nullptr);
    }
}

void World::callTree()
{
    switch (number(4)) {
    case 0: delete taken(m_trees); break;
    case 1:
        if (const Gesture *gesture = anyGesture()) {
            if (ActionProxyNode *tree = gesture->actionTree()) {
                if (!m_trees.contains(tree)) // later calls find it, and may destroy it
                    m_trees.append(tree);
            }
        }
        break;
    case 2: {
        QList<Action *> actions;
        for (int i = number(3); i > 0; --i)
            actions.append(anyAction());
        kept(m_trees, ActionProxyNode::constructTree(actions, coin() ? any(m_trees) : nullptr));
        break;
    }
    case 3:
        if (ActionProxyNode *tree = any(m_trees))
            kept(m_nodes, tree->findChildNodeOrInsert(0, QString::number(number(2)), {}, anyAction()));
        break;
    default:
        if (const ActionProxyNode *tree = coin() ? any(m_nodes) : any(m_trees)) {
            fuzzing::require(!tree->path().isEmpty());
            tree->isAnsestorOf(anyAction());
            tree->action();
        }
    }
}

void World::makeService()
{
    const char *const name = app();
    const bool readonly = coin();
    GestureService *service = nullptr;
    switch (number(2)) {
    case 0: {
        QList<Gesture *> gestures;
        for (int i = number(3); i > 0; --i)
            gestures.append(any(m_gestures));
        const auto paths = GestureServiceProvider::applicationPathsConfiguration().appPaths(QLatin1String(name));
        if (paths.isRight()) {
            service = new GestureService(paths.right(), anyFeatures(), readonly,
                                         GestureService::GestureList([gestures] { return gestures; }), coin());
        }
        break;
    }
    case 1:
        if (const GestureService *source = anyService())
            service = source->clone();
        break;
    default:
        service = GestureServiceProvider::newGestureService(anyFeatures(), QLatin1String(name), readonly)
                          .getOrWarn(nullptr);
    }
    if (kept(m_services, service))
        listenTo(service);
}

void World::listenTo(GestureService *service)
{
    if (service->property("listenedTo").toBool())
        return;
    service->setProperty("listenedTo", true);
    reactTo(service, &GestureService::gesturesChanged);
    for (Gesture *gesture : service->gestureList()) {
        if (gesture)
            reactTo(gesture, &Gesture::currentActionChanged);
    }
}

void World::callService()
{
    GestureService *const service = anyService();
    if (!service)
        return;
    switch (number(9)) {
    case 0: delete taken(m_services); break;
    case 1: listenTo(service); break;
    case 2:
    case 3: service->fastMerge(anyService()); break;
    case 4: service->fastMergeWithQObject(coin() ? static_cast<QObject *>(anyService()) : &m_owner); break;
    case 5: service->save(); break;
    case 6: service->prune(); break;
    case 7: service->findGestureAsQObject(QString(), number(4), number(4), QPointF(0.1, 0.5)); break;
    case 8: service->findGestureByZoneAsQObject(QString(), number(4), number(4), QRectF(0.1, 0.5, 0.1, 0.1)); break;
    default: {
        QString text;
        QDebug debug(&text);
        service->dump(debug, 0);
        service->containsGestureKind(number(5));
    }
    }
}

void World::callProvider()
{
    GestureServiceProvider *provider = any(m_providers);
    if (!provider || number(9) == 0) {
        provider = kept(m_providers, new GestureServiceProvider(&m_features));
        reactTo(provider, &GestureServiceProvider::appIdChanged);
        reactTo(provider, &GestureServiceProvider::readonlyChanged);
        reactTo(provider, &GestureServiceProvider::serviceChanged);
        m_told.insert(provider, {provider->appId(), provider->readonly(), nullptr});
        QObject::connect(provider, &GestureServiceProvider::appIdChanged, &m_slots,
                         [this, provider](const QString &appId) { m_told[provider].appId = appId; });
        QObject::connect(provider, &GestureServiceProvider::readonlyChanged, &m_slots,
                         [this, provider](bool readonly) { m_told[provider].readonly = readonly; });
        QObject::connect(provider, &GestureServiceProvider::serviceChanged, &m_slots,
                         [this, provider](GestureService *service) {
                             m_told[provider].service = service;
                             if (service) // the provider has a living service, whatever the slot before has done
                                 fuzzing::require(service->parent() == provider);
                         });
        return;
    }
    switch (number(9)) {
    case 0: delete taken(m_providers); break;
    case 1: provider->deleteLater(); break;
    case 2:
    case 3: provider->setAppId(QLatin1String(app())); break;
    case 4: provider->setReadonly(coin()); break;
    case 5: provider->releaseService(); break;
    case 6: provider->loadService(anyFeatures()); break;
    case 7: provider->installService(anyFeatures(), QLatin1String(app()), coin()); break;
    case 8: provider->syncApp(QLatin1String(app()), anyFeatures()); break;
    default:
        m_told[provider].service = nullptr; // no signal announces this, as intended
        delete provider->service();
    }
}

void World::callModel()
{
    GestureKindFilterModel *model = any(m_models);
    if (!model || number(9) == 0) {
        model = kept(m_models, new GestureKindFilterModel);
        reactTo(model, &GestureKindFilterModel::blackListChanged);
        reactTo(model, &GestureKindFilterModel::whiteListChanged);
        reactTo(model, &GestureKindFilterModel::noActionVisibleChanged);
        return;
    }
    switch (number(6)) {
    case 0: delete taken(m_models); break;
    case 1: model->setBlackList({number(4)}); break;
    case 2: model->setWhiteList(coin() ? QList<int>{number(4)} : QList<int>()); break;
    case 3: model->setNoActionVisible(coin()); break;
    case 4: model->setSourceModel(nullptr); break;
    case 5:
        if (const GestureService *service = anyService())
            model->setSourceModel(service->gestures());
        break;
    default:
        for (int row = 0; row < model->rowCount(); ++row)
            fuzzing::require(model->index(row, 0).data().isValid());
    }
}

void World::callNotifier()
{
    ExitNotifier *const notifier = ExitNotifier::instance();
    if (m_depth == 0 && !m_slots.property("notified").toBool()) {
        m_slots.setProperty("notified", true);
        QObject::connect(notifier, &ExitNotifier::prepareExit, &m_slots, [this] { react(); });
    }
    switch (number(3)) {
    case 0: delete ExitNotifier::instance(); break;
    case 1: Q_EMIT notifier->prepareExit(); break;
    default: ExitNotifier::notify();
    }
}

void World::writeUserFile()
{
    static const char *const texts[] = {
            R"({"version": 1, "actions": {"g": "a/b"}})", R"({"version": 1, "actions": {"g": "light", "h": "a"}})",
            R"({"version": 2, "actions": {}})", R"({"version": 1, "actions": {"g": "none"}})", "{"};
    const QString file = userFile(apps[number(2)]);
    const int which = number(5);
    if (which == 5)
        QFile::remove(file);
    else
        writeFile(file, texts[which]);
}

void World::runLoop() const
{
    QCoreApplication::processEvents();
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
}

// The invariants while no slot is under way.
void World::check() const
{
    for (const auto &gesture : m_gestures) {
        if (!gesture)
            continue;
        fuzzing::require(m_currentActions.value(gesture) == gesture->currentAction());
        for (const Action *action : gesture->availableActions())
            fuzzing::require(!action || action->path().size() >= 0);
        for (const Action *action : {gesture->defaultAction(), gesture->currentAction()})
            fuzzing::require(!action || action->path().size() >= 0);
    }
    for (const auto &provider : m_providers) {
        if (!provider)
            continue;
        const Told told = m_told.value(provider);
        fuzzing::require(told.appId == provider->appId() && told.readonly == provider->readonly()
                         && told.service == provider->service());
    }
}

}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    World(data, size).run();
    return 0;
}
