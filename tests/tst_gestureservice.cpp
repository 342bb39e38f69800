#include "testing.h"

#include <gesture_api/configuration.h>
#include <gesture_api/gestureservice.h>
#include <gesture_api/zones.h>

#include <vellix/exitnotifier.h>

#include <QAbstractItemModelTester>
#include <QDir>
#include <QFileInfo>
#include <QProcess>
#include <QRandomGenerator>
#include <QSignalSpy>

#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cmath>
#include <csignal>

using namespace vellix;
using namespace vellix::gesture;
using components::ReadonlyLazyListModel;
using testing::DataTree;
using testing::LogCapture;
using GestureList = GestureService::GestureList;

static const char *const configuration = R"({
    "actions": [
        {"path": "next", "title": "Next"},
        {"path": "previous", "title": "Previous"},
        {"path": "menu", "title": "Menu"}
    ],
    "gestures": [
        {"modes": ["reader"], "kind": "tap", "zone": "left", "availableActions": ["previous", "next", "menu"],
         "defaultAction": "previous"},
        {"kind": "tap", "zone": "right", "availableActions": ["next", "previous"], "defaultAction": "next"},
        {"modes": ["reader"], "kind": "swipe", "direction": "toLeft", "availableActions": ["next"],
         "defaultAction": "next"}
    ]
})";

static ApplicationPaths appPaths()
{
    return ApplicationPathsConfiguration::newDefault().appPaths(QStringLiteral("app")).right();
}

static Gesture *newGesture(const QString &id, Gesture::Kind kind, const QRectF &zone, Gesture::Direction direction,
                           const QStringList &modes = {}, Action *action = nullptr)
{
    return new Gesture(id, modes, kind, zone, direction, {}, action, nullptr, {}, nullptr);
}

static QString idOf(const Gesture *gesture)
{
    return gesture ? gesture->id() : QStringLiteral("none");
}

class tst_GestureService : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase()
    {
        // The model tester shows everything as text.
        QMetaType::registerConverter<Gesture *, QString>([](Gesture *gesture) { return gesture->id(); });
    }

    void init()
    {
        m_tree.reset(new DataTree);
        testing::writeFile(m_tree->defaultFile(QStringLiteral("app")), configuration);
    }

    void cleanup() { m_tree.reset(); }

    // --- loading

    void nothingIsReadBeforeTheFirstNeed()
    {
        QVERIFY(QFile::remove(defaultFile()));
        LogCapture log;
        GestureService service(appPaths(), nullptr, true);
        ReadonlyLazyListModel *model = service.gestures();
        QVERIFY(log.lines.isEmpty());
        testing::writeFile(defaultFile(), configuration);
        QCOMPARE(model->rowCount(), 3);
        QVERIFY(log.lines.isEmpty());
    }

    void loadsOnce()
    {
        GestureService service(appPaths(), nullptr, true);
        QCOMPARE(service.gestureList().size(), 3);
        testing::writeFile(defaultFile(), R"({"gestures": []})");
        QCOMPARE(service.gestureList().size(), 3);
        for (const Gesture *gesture : service.gestureList())
            QCOMPARE(gesture->parent(), &service);
    }

    void userBindingsComeOnTop()
    {
        writeUserFile(R"({"version": 1, "actions": {"ReaderTapLeftNoDirection": "menu"}})");
        GestureService service(appPaths(), nullptr, true);
        QCOMPARE(service.gestureList().at(0)->currentAction()->path(), QStringLiteral("menu"));
        QCOMPARE(service.gestureList().at(0)->defaultAction()->path(), QStringLiteral("menu"));
        QCOMPARE(service.gestureList().at(1)->currentAction()->path(), QStringLiteral("next"));
    }

    void missingUserFileIsNoError()
    {
        LogCapture log;
        GestureService service(appPaths(), nullptr, true);
        QCOMPARE(service.gestureList().size(), 3);
        QVERIFY(log.lines.isEmpty() && log.qtMessages.isEmpty());
    }

    void userFileOfAnotherVersionIsIgnoredWithAWarning()
    {
        writeUserFile(R"({"version": 2, "actions": {"ReaderTapLeftNoDirection": "menu"}})");
        LogCapture log;
        GestureService service(appPaths(), nullptr, true);
        QCOMPARE(service.gestureList().at(0)->currentAction()->path(), QStringLiteral("previous"));
        QCOMPARE(log.qtMessages,
                 QStringList(QStringLiteral("warning default: [warn] version not match: found: 2 needed: 1")));
        QVERIFY(log.lines.isEmpty());
    }

    void brokenUserFileIsReported()
    {
        writeUserFile("{");
        LogCapture log;
        GestureService service(appPaths(), nullptr, true);
        QCOMPARE(service.gestureList().size(), 3);
        QCOMPARE(log.lines.size(), 1);
        QCOMPARE(log.lines[0].level, QStringLiteral("error"));
        QVERIFY(log.lines[0].body.startsWith(QStringLiteral("expected right but OtherError(")));
    }

    void brokenDefaultFileGivesNoGestures()
    {
        testing::writeFile(defaultFile(), "{}");
        LogCapture log;
        GestureService service(appPaths(), nullptr, true);
        QVERIFY(service.gestureList().isEmpty());
        QCOMPARE(log.lines.size(), 1);
        QVERIFY(log.lines[0].body.endsWith(QStringLiteral("configuration:76: 'gestures' is obligatory field")));
        QCOMPARE(service.findGesture(QString(), Gesture::Tap, Gesture::NoDirection, QPointF(0.1, 0.5)), nullptr);
        QCOMPARE(service.findGestureByZone(QString(), Gesture::Tap, Gesture::NoDirection, QRectF()), nullptr);
        QVERIFY(!service.containsGestureKind(Gesture::Tap));
    }

    void userFileIsReadBeforeTheDefaultFile()
    {
        writeUserFile("{");
        testing::writeFile(defaultFile(), "[");
        LogCapture log;
        GestureService service(appPaths(), nullptr, true);
        QVERIFY(service.gestureList().isEmpty());
        QCOMPARE(log.lines.size(), 2);
        QVERIFY(log.lines[0].body.contains(QStringLiteral("OtherError")));
        QVERIFY(!log.lines[1].body.contains(QStringLiteral("OtherError")));
    }

    void featuresProviderReachesTheLoader()
    {
        testing::writeFile(defaultFile(), R"({
            "actions": [{"path": "light", "title": "Light", "features": ["frontlight"]}],
            "gestures": [{"kind": "tap", "zone": "left", "defaultAction": "light", "features": ["tts"]}]})");
        DefaultFeaturesProvider provider;
        GestureService service(appPaths(), &provider, true);
        QCOMPARE(service.gestureList().size(), 1);
        QCOMPARE(service.gestureList().at(0)->featureList(), QList<Feature *>{provider.allFeatures().at(2)});
    }

    // --- lookup

    void findGesture_data()
    {
        QTest::addColumn<QString>("mode");
        QTest::addColumn<int>("kind");
        QTest::addColumn<int>("direction");
        QTest::addColumn<QPointF>("position");
        QTest::addColumn<QString>("expected");
        const int tap = Gesture::Tap;
        const int none = Gesture::NoDirection;
        QTest::newRow("empty modes match any mode") << "whatever" << tap << none << QPointF(0.9, 0.5) << "any";
        QTest::newRow("its mode") << "reader" << tap << none << QPointF(0.1, 0.5) << "reader";
        QTest::newRow("any of its modes")
                << "second" << int(Gesture::Swipe) << none << QPointF(0.5, 0.5) << "two modes";
        QTest::newRow("case of a mode matters") << "Reader" << tap << none << QPointF(0.1, 0.5) << "none";
        QTest::newRow("another kind") << "reader" << int(Gesture::Hold) << none << QPointF(0.1, 0.5) << "none";
        QTest::newRow("another direction") << "reader" << tap << int(Gesture::ToLeft) << QPointF(0.1, 0.5) << "none";
        QTest::newRow("right edge counts") << "reader" << tap << none << QPointF(0.25, 0.5) << "reader";
        QTest::newRow("bottom edge counts") << "reader" << tap << none << QPointF(0.1, 0.75) << "reader";
        QTest::newRow("outside") << "reader" << tap << none << QPointF(0.26, 0.5) << "none";
        QTest::newRow("no width contains nothing") << "x" << tap << none << QPointF(0.5, 0.5) << "none";
        QTest::newRow("no height contains nothing") << "x" << tap << none << QPointF(0.6, 0.9) << "none";
        QTest::newRow("negative size is turned round") << "x" << tap << none << QPointF(0.45, 0.05) << "turned";
        QTest::newRow("the earlier of two") << "x" << int(Gesture::Drag) << none << QPointF(0.5, 0.5) << "early";
        QTest::newRow("a kind that is none") << "x" << 77 << none << QPointF(0.5, 0.5) << "none";
    }

    void findGesture()
    {
        GestureService service(appPaths(), nullptr, true, lookupGestures(), false);
        QFETCH(QString, mode);
        QFETCH(int, kind);
        QFETCH(int, direction);
        QFETCH(QPointF, position);
        QTEST(idOf(service.findGesture(mode, static_cast<Gesture::Kind>(kind),
                                       static_cast<Gesture::Direction>(direction), position)),
              "expected");
        QTEST(idOf(qobject_cast<Gesture *>(service.findGestureAsQObject(mode, kind, direction, position))), "expected");
    }

    void findGestureByZone_data()
    {
        QTest::addColumn<int>("kind");
        QTest::addColumn<QRectF>("zone");
        QTest::addColumn<QString>("expected");
        QTest::newRow("the large zone listed first wins over the equal one")
                << int(Gesture::Drag) << QRectF(0.4, 0.4, 0.1, 0.1) << "early";
        QTest::newRow("fuzzily equal") << int(Gesture::Tap) << QRectF(0.75, 0.25, 0.25 + 1e-14, 0.5) << "any";
        QTest::newRow("not quite equal") << int(Gesture::Tap) << QRectF(0.75, 0.25, 0.25 + 1e-9, 0.5) << "none";
        QTest::newRow("inside") << int(Gesture::Tap) << QRectF(0.8, 0.3, 0.1, 0.1) << "any";
        QTest::newRow("across") << int(Gesture::Tap) << QRectF(0.7, 0.3, 0.1, 0.1) << "none";
        QTest::newRow("an empty zone equals itself") << int(Gesture::Tap) << QRectF(0.5, 0.4, 0, 0.2) << "thin";
    }

    void findGestureByZone()
    {
        GestureService service(appPaths(), nullptr, true, lookupGestures(), false);
        QFETCH(int, kind);
        QFETCH(QRectF, zone);
        QTEST(idOf(service.findGestureByZone(QStringLiteral("x"), static_cast<Gesture::Kind>(kind),
                                             Gesture::NoDirection, zone)),
              "expected");
        QTEST(idOf(qobject_cast<Gesture *>(
                      service.findGestureByZoneAsQObject(QStringLiteral("x"), kind, Gesture::NoDirection, zone))),
              "expected");
    }

    // Compares with the definition of a lookup: the list from the front, every test on every gesture.
    void lookupAnswersAsAWalkWould()
    {
        QRandomGenerator random(7);
        const QList<double> edges{-0.25, 0, 0.25, 0.5, 0.5, 1, 1.25};
        const auto edge = [&] { return edges.at(random.bounded(edges.size())); };
        const QStringList modes{"reader", "menu", "Reader", ""};
        const auto anyModes = [&] {
            QStringList some;
            for (int count = random.bounded(4); count > 0; --count)
                some.append(modes.at(random.bounded(modes.size())));
            return some;
        };
        const auto anyKind = [&] { return static_cast<Gesture::Kind>(random.bounded(-1, 6)); };
        const auto anyDirection = [&] { return static_cast<Gesture::Direction>(random.bounded(-1, 3)); };

        QObject owner;
        QList<Gesture *> gestures;
        for (int i = 0; i < 300; ++i) {
            const QRectF zone(edge(), edge(), edge(), edge()); // some empty, some with negative sides
            gestures.append(i % 10 ? newGesture(QString::number(i), anyKind(), zone, anyDirection(), anyModes())
                                   : nullptr);
            if (gestures.last())
                gestures.last()->setParent(&owner);
        }
        const GestureService service(appPaths(), nullptr, true, GestureList([&] { return gestures; }), false);

        int found = 0;
        for (int i = 0; i < 5000; ++i) {
            const QString mode = i % 5 ? modes.at(random.bounded(modes.size())) : QStringLiteral("elsewhere");
            const Gesture::Kind kind = anyKind();
            const Gesture::Direction direction = anyDirection();
            const QPointF point(edge(), edge());
            const QRectF zone(edge(), edge(), edge(), edge());
            const auto first = [&](const auto &test) {
                for (const Gesture *gesture : qAsConst(gestures)) {
                    if (gesture && (gesture->modes().isEmpty() || gesture->modes().contains(mode))
                        && gesture->kind() == kind && gesture->direction() == direction && test(gesture->zone()))
                        return gesture->id();
                }
                return QStringLiteral("none");
            };
            const QString byPoint = first([&](const QRectF &outer) { return outer.contains(point); });
            QCOMPARE(idOf(service.findGesture(mode, kind, direction, point)), byPoint);
            const QString byZone =
                    first([&](const QRectF &outer) { return outer == zone || Zones::contains(outer, zone); });
            QCOMPARE(idOf(service.findGestureByZone(mode, kind, direction, zone)), byZone);
            found += byPoint != QLatin1String("none");
        }
        QVERIFY2(found > 500 && found < 4500, qPrintable(QString::number(found)));
    }

    // So many of one kind that the index divides the screen; with edges on and beside those of its parts.
    void lookupAmongManyAnswersAsAWalkWould()
    {
        QRandomGenerator random(8);
        const auto coordinate = [&] {
            switch (random.bounded(24)) {
            case 0: return qQNaN();
            case 1: return qInf();
            case 2: return -random.generateDouble();
            case 3: return 1 + random.generateDouble();
            case 4: return std::nextafter(random.bounded(17) / 16.0, random.bounded(2));
            default: return random.bounded(2) ? random.bounded(17) / 16.0 : random.bounded(11) / 10.0;
            }
        };
        const auto side = [&] {
            switch (random.bounded(24)) {
            case 0: return qQNaN();
            case 1: return qInf();
            case 2: return 0.0;
            case 3: return -random.bounded(16) / 16.0;
            default: return random.bounded(1, 8) / (random.bounded(2) ? 16.0 : 50.0);
            }
        };
        for (int list = 0; list < 100; ++list) {
            QObject owner;
            QList<Gesture *> gestures;
            for (int i = 0; i < 1 + list * 2; ++i) {
                const QRectF zone(coordinate(), coordinate(), side(), side());
                gestures.append(newGesture(QString::number(i), Gesture::Tap, zone, Gesture::NoDirection,
                                           i % 3 ? QStringList() : QStringList("reader")));
                gestures.last()->setParent(&owner);
            }
            const GestureService service(appPaths(), nullptr, true, GestureList([&] { return gestures; }), false);
            for (int i = 0; i < 1000; ++i) {
                const QPointF point(coordinate(), coordinate());
                const QString mode = i % 2 ? "reader" : "other";
                const auto hit = std::find_if(gestures.cbegin(), gestures.cend(), [&](const Gesture *gesture) {
                    return (gesture->modes().isEmpty() || gesture->modes().contains(mode))
                            && gesture->zone().contains(point);
                });
                QCOMPARE(idOf(service.findGesture(mode, Gesture::Tap, Gesture::NoDirection, point)),
                         hit == gestures.cend() ? QString("none") : (*hit)->id());
            }
        }
    }

    // Such as a predicate that looks up the touch: the list that it gets is not the final one.
    void lookupFromWithinTheLoad()
    {
        testing::writeFile(m_tree->user(QStringLiteral("curious.json")), R"({
            "actions": [{"path": "light", "title": "Light", "features": ["curious"]}],
            "actionGroups": {"all": ["light"]},
            "gestures": [{"kind": "tap", "zone": "whole", "availableActions": "all", "defaultAction": "light"}]
        })");
        class Provider : public FeaturesProvider
        {
        public:
            QList<Feature *> allFeatures() const override { return {feature}; }
            const GestureService *service = nullptr;
            bool asked = false;
            Feature *const feature = new Feature(
                    QStringLiteral("curious"),
                    [this] {
                        if (!asked) {
                            asked = true;
                            service->findGesture({}, Gesture::Tap, Gesture::NoDirection, {0.5, 0.5});
                        }
                        return true;
                    },
                    this);
        } provider;
        const GestureService service(ApplicationPaths({}, {}, m_tree->user(QStringLiteral("curious.json"))), &provider,
                                     true);
        provider.service = &service;
        QCOMPARE(service.gestureList().size(), 1);
        QVERIFY(provider.asked);
        QCOMPARE(service.findGesture({}, Gesture::Tap, Gesture::NoDirection, {0.5, 0.5}),
                 service.gestureList().first());
    }

    void containsGestureKind()
    {
        GestureService service(appPaths(), nullptr, true);
        QVERIFY(service.containsGestureKind(Gesture::Tap));
        QVERIFY(service.containsGestureKind(Gesture::Swipe));
        QVERIFY(!service.containsGestureKind(Gesture::Drag));
        QVERIFY(!service.containsGestureKind(-1));
    }

    // --- model

    void modelShowsTheGestures()
    {
        GestureService service(appPaths(), nullptr, true);
        ReadonlyLazyListModel *model = service.gestures();
        QAbstractItemModelTester tester(model, QAbstractItemModelTester::FailureReportingMode::QtTest);
        QCOMPARE(service.gestures(), model);
        QCOMPARE(service.property("gestures").value<ReadonlyLazyListModel *>(), model);
        QCOMPARE(model->parent(), &service);
        QCOMPARE(model->rowCount(), 3);
        const QVariant item = model->data(model->index(1), Qt::DisplayRole);
        QCOMPARE(QByteArray(item.typeName()), QByteArray("vellix::gesture::Gesture*"));
        QCOMPARE(item.value<Gesture *>(), service.gestureList().at(1));
        QCOMPARE(model->data(model->index(1), Qt::UserRole), QVariant());
        QCOMPARE(model->rowCount(model->index(0)), 0);
    }

    void modelDiesBeforeTheListItReads()
    {
        auto *service = new GestureService(appPaths(), nullptr, true);
        ReadonlyLazyListModel *model = service->gestures();
        int rows = -1;
        connect(model, &QObject::destroyed, [&] { rows = service->gestureList().size(); });
        QCOMPARE(model->rowCount(), 3);
        delete service;
        QCOMPARE(rows, 3);
    }

    // --- saving

    void saveWritesEveryCurrentAction()
    {
        GestureService service(appPaths(), nullptr, false);
        service.gestureList().at(0)->setCurrentAction(service.gestureList().at(0)->availableActions().at(2));
        QVERIFY(!service.saved());
        QVERIFY(service.save());
        QVERIFY(service.saved());
        QCOMPARE(testing::readFile(userFile()), QByteArray(R"({
    "actions": {
        "ReaderSwipeNotSetToLeft": "next",
        "ReaderTapLeftNoDirection": "menu",
        "TapRightNoDirection": "next"
    },
    "version": 1
}
)"));
    }

    void readonlyServiceWritesNothing()
    {
        GestureService service(appPaths(), nullptr, true);
        QVERIFY(!service.save());
        QVERIFY(service.saved());
        QVERIFY(!QFileInfo::exists(m_tree->user()));
    }

    void prunedServiceWritesNothing()
    {
        GestureService service(appPaths(), nullptr, false);
        QVERIFY(service.save());
        QVERIFY(service.prune());
        QVERIFY(!QFileInfo::exists(userFile()));
        QVERIFY(!service.save());
        QVERIFY(!QFileInfo::exists(userFile()));
        QVERIFY(!service.prune());
        QCOMPARE(service.gestureList().size(), 3);
    }

    void pruneStopsLaterClonesOnly()
    {
        GestureService service(appPaths(), nullptr, false);
        const QScopedPointer<GestureService> before(service.clone());
        service.prune();
        const QScopedPointer<GestureService> after(service.clone());
        QVERIFY(!after->save());
        QVERIFY(before->save());
    }

    void failedSaveIsReportedAndStillTrue()
    {
        QVERIFY(QDir().mkpath(userFile()));
        GestureService service(appPaths(), nullptr, false);
        LogCapture log;
        QVERIFY(service.save());
        QVERIFY2(log.qtMessages.filter(QStringLiteral("can not open file: Is a directory (path: ") + userFile()
                                       + QLatin1Char(')'))
                                 .size()
                         == 1,
                 qPrintable(log.qtMessages.join(QLatin1Char('\n'))));
    }

    // Any failure is one line of the log, and the reason in the result.
    void failedSave_data()
    {
        QTest::addColumn<QString>("situation");
        QTest::addColumn<QString>("reason"); // before the path
        QTest::addColumn<QString>("line");
        QTest::newRow("can not be opened") << "directory"
                                           << "can not open file: Is a directory"
                                           << "can not open file: Is a directory (path: ";
        QTest::newRow("can not be written") << "limit"
                                            << "can not write file: File too large"
                                            << "[error] not saved: \"can not write file: File too large (path: ";
        QTest::newRow("can not be kept") << "refused"
                                         << "the rejected file can not be kept beside it"
                                         << "[error] not saved: \"the rejected file can not be kept beside it (path: ";
        QTest::newRow("eight are kept") << "eight"
                                        << "eight rejected files are beside it already"
                                        << "[error] not saved: \"eight rejected files are beside it already (path: ";
        QTest::newRow("can not be loaded") << "provider"
                                           << "the gestures are not loaded"
                                           << "[error] not saved: \"the gestures are not loaded (path: ";
    }

    void failedSave()
    {
        QFETCH(QString, situation);
        QFETCH(QString, reason);
        QFETCH(QString, line);
        const bool limited = situation == QLatin1String("limit");
        auto *provider = new DefaultFeaturesProvider;
        LogCapture log;
        GestureService service(appPaths(), situation == QLatin1String("provider") ? provider : nullptr, false);
        if (situation == QLatin1String("directory"))
            QVERIFY(QDir().mkpath(userFile()));
        if (situation == QLatin1String("refused") || situation == QLatin1String("eight"))
            writeUserFile("garbage");
        if (situation != QLatin1String("provider"))
            service.gestureList();
        for (int number = 1; situation == QLatin1String("eight") && number <= 8; ++number) {
            const QString end = number == 1 ? QString() : QLatin1Char('.') + QString::number(number);
            testing::writeFile(userFile() + QStringLiteral(".rejected") + end, "kept");
        }
        delete provider;

        rlimit before;
        QCOMPARE(getrlimit(RLIMIT_FSIZE, &before), 0);
        const rlimit limit{limited ? 10 : situation == QLatin1String("refused") ? 1 : before.rlim_cur, before.rlim_max};
        const auto previous = std::signal(SIGXFSZ, SIG_IGN);
        QCOMPARE(setrlimit(RLIMIT_FSIZE, &limit), 0);
        log.qtMessages.clear();
        const bool tried = service.save();
        const QString lines = log.qtMessages.join('\n');
        log.qtMessages.clear();
        const auto saved = service.trySave();
        const int linesOfTry = log.qtMessages.size();
        const QString text = service.trySaveAsString();
        QCOMPARE(setrlimit(RLIMIT_FSIZE, &before), 0);
        std::signal(SIGXFSZ, previous);

        QVERIFY(tried);
        QVERIFY2(lines.contains(line) && !lines.contains('\n'), qPrintable(lines));
        QVERIFY(saved.isLeft());
        QCOMPARE(saved.left(), reason + QStringLiteral(" (path: ") + userFile() + QLatin1Char(')'));
        QCOMPARE(linesOfTry, 0);
        QCOMPARE(text, saved.left());
        QCOMPARE(log.qtMessages,
                 QStringList(QStringLiteral("critical default: [error] not saved: \"") + text + QLatin1Char('"')));
    }

    void trySaveSaysHowItWent()
    {
        GestureService service(appPaths(), nullptr, false);
        LogCapture log;
        const auto saved = service.trySave();
        QVERIFY(saved.isRight());
        QCOMPARE(saved.right(), qint64(testing::readFile(userFile()).size()));
        QVERIFY(service.saved());
        QCOMPARE(service.trySaveAsString(), QString());
        QString text;
        QVERIFY(QMetaObject::invokeMethod(&service, "trySaveAsString", Q_RETURN_ARG(QString, text)));
        QCOMPARE(text, QString());
        service.prune();
        QCOMPARE(service.trySave().left(), QStringLiteral("the service is pruned"));
        GestureService readonly(appPaths(), nullptr, true);
        QCOMPARE(readonly.trySave().left(), QStringLiteral("the service is read-only"));
        QVERIFY(readonly.saved());
        QCOMPARE(log.qtMessages, QStringList());
        QVERIFY(!QFileInfo::exists(userFile()));
    }

    void prepareExitSaves()
    {
        GestureService writable(appPaths(), nullptr, false);
        ExitNotifier::notify();
        QVERIFY(QFileInfo::exists(userFile()));
        QVERIFY(QFile::remove(userFile()));
        writable.prune();
        ExitNotifier::notify();
        QVERIFY(!QFileInfo::exists(userFile()));
    }

    void cloneNeverSavesByItself()
    {
        GestureService source(appPaths(), nullptr, true);
        GestureService copy(appPaths(), nullptr, false,
                            source.clone(&source)->gestureList().isEmpty() ? GestureList() : GestureList([&source] {
                                return source.gestureList();
                            }),
                            false);
        ExitNotifier::notify();
        QVERIFY(!QFileInfo::exists(userFile()));
        QVERIFY(copy.save());
        QVERIFY(QFileInfo::exists(userFile()));
    }

    void rejectedUserFileIsKept_data()
    {
        QTest::addColumn<QByteArray>("text");
        QTest::addColumn<QByteArray>("defaults");
        QTest::addColumn<bool>("kept");
        const QByteArray good = configuration;
        QTest::newRow("another version") << QByteArray(R"({"version": 2, "actions": {}})") << good << true;
        QTest::newRow("not JSON") << QByteArray("garbage") << good << true;
        QTest::newRow("empty") << QByteArray() << good << true;
        QTest::newRow("wrong types") << QByteArray(R"({"version": 1, "actions": {"a": 1}})") << good << true;
        QTest::newRow("choices that failed defaults would empty")
                << QByteArray(R"({"version": 1, "actions": {"a": "b"}})") << QByteArray("{}") << true;
        QTest::newRow("a choice that fails the defaults")
                << QByteArray(R"({"version": 1, "actions": {"TapRightNoDirection": "gone"}})") << good << true;
        QTest::newRow("no choices to lose")
                << QByteArray(R"({"version": 1, "actions": {}})") << QByteArray("{}") << false;
        QTest::newRow("taken over") << QByteArray(R"({"version": 1, "actions": {}})") << good << false;
    }

    void rejectedUserFileIsKept()
    {
        QFETCH(QByteArray, text);
        QFETCH(QByteArray, defaults);
        QFETCH(bool, kept);
        writeUserFile(text);
        testing::writeFile(defaultFile(), defaults);
        testing::writeFile(userFile() + QStringLiteral(".rejected"), "an earlier one");
        LogCapture log;
        GestureService service(appPaths(), nullptr, false);
        // The second save overwrites the service's own file.
        for (int saves = 0; saves < 2; ++saves) {
            QVERIFY(service.save());
            QCOMPARE(testing::readFile(userFile() + QStringLiteral(".rejected")), QByteArray("an earlier one"));
            QCOMPARE(testing::readFile(userFile() + QStringLiteral(".rejected.2")),
                     kept ? text : QByteArray("(no file)"));
            VERIFY_RIGHT(components::VariantLoader::loadJson(userFile()));
        }
        QCOMPARE(testing::filesBelow(QFileInfo(userFile()).path()).size(), kept ? 3 : 2);
    }

    void cloneAndSourceKeepARejectedFileOnce()
    {
        writeUserFile("garbage");
        LogCapture log;
        GestureService service(appPaths(), nullptr, false);
        const QScopedPointer<GestureService> copy(service.clone());
        QVERIFY(copy->save());
        QVERIFY(service.save());
        QCOMPARE(testing::readFile(userFile() + QStringLiteral(".rejected")), QByteArray("garbage"));
    }

    void rejectedFileThatIsGoneIsNotReplacedByOurs()
    {
        writeUserFile("garbage");
        testing::writeFile(userFile() + QStringLiteral(".rejected"), "an earlier one");
        LogCapture log;
        GestureService service(appPaths(), nullptr, false);
        service.gestureList();
        QVERIFY(QFile::remove(userFile()));
        QVERIFY(service.save());
        QVERIFY(service.save());
        QCOMPARE(testing::readFile(userFile() + QStringLiteral(".rejected")), QByteArray("an earlier one"));
    }

    void choicesSurviveADeadFeaturesProvider()
    {
        testing::writeFile(defaultFile(), R"({
            "actions": [{"path": "light", "title": "Light", "features": ["frontlight"]}, {"path": "a", "title": "A"}],
            "gestures": [{"id": "g", "kind": "tap", "zone": "left", "defaultAction": "a"}]})");
        const QByteArray choice = R"({"version": 1, "actions": {"g": "light"}})";
        writeUserFile(choice);
        auto *provider = new DefaultFeaturesProvider;
        GestureService service(appPaths(), provider, false);
        delete provider;
        LogCapture log;
        ExitNotifier::notify();
        QCOMPARE(testing::readFile(userFile()), choice);
        QCOMPARE(testing::filesBelow(m_tree->user()).size(), 1);
        QVERIFY(log.qtMessages.isEmpty());
        // Not by hand either; that was an attempt, and the log has the reason.
        QVERIFY(service.save());
        QCOMPARE(log.qtMessages.size(), 1);
        const QString reason = QStringLiteral("the gestures are not loaded (path: ") + userFile() + QLatin1Char(')');
        QVERIFY2(log.qtMessages[0].contains(reason), qPrintable(log.qtMessages[0]));
        const auto saved = service.trySave();
        QCOMPARE(saved.isLeft() ? saved.left() : QString(), reason);
        QCOMPARE(testing::readFile(userFile()), choice);
    }

    // Anything in place of the user's file: one line reports it, nothing waits, nothing is lost.
    void strangeUserFile_data()
    {
        QTest::addColumn<QString>("what");
        QTest::addColumn<QString>("reading");
        QTest::addColumn<QString>("saving");
        QTest::newRow("a pipe") << "pipe"
                                << "Not a regular file"
                                << "No such device or address";
        QTest::newRow("a directory") << "directory"
                                     << "Is a directory"
                                     << "Is a directory";
        QTest::newRow("a device") << "device"
                                  << "Not a regular file"
                                  << "";
        QTest::newRow("100 MB of brackets") << "brackets"
                                            << "too deeply nested document"
                                            << "";
        QTest::newRow("100 MB in one text") << "text"
                                            << ""
                                            << "";
    }

    void strangeUserFile()
    {
        QFETCH(QString, what);
        QFETCH(QString, reading);
        QFETCH(QString, saving);
        QVERIFY(QDir().mkpath(QFileInfo(userFile()).path()));
        if (what == QLatin1String("pipe"))
            QCOMPARE(mkfifo(qPrintable(userFile()), 0600), 0);
        else if (what == QLatin1String("directory"))
            QVERIFY(QDir().mkpath(userFile()));
        else if (what == QLatin1String("device"))
            QVERIFY(QFile::link(QStringLiteral("/dev/zero"), userFile()));
        else if (what == QLatin1String("brackets"))
            writeUserFile(QByteArray(100 * 1024 * 1024, '['));
        else
            writeUserFile("{\"version\": 1, \"actions\": {\"g\": \"" + QByteArray(100 * 1024 * 1024, 'x') + "\"}}");

        LogCapture log;
        GestureService service(appPaths(), nullptr, false);
        QCOMPARE(service.gestureList().size(), 3);
        QCOMPARE(log.lines.size(), reading.isEmpty() ? 0 : 1);
        QVERIFY(reading.isEmpty() || log.lines[0].body.contains(reading));
        QVERIFY(service.save());
        QCOMPARE(log.qtMessages.size(), saving.isEmpty() ? 0 : 1);
        QVERIFY(saving.isEmpty() || log.qtMessages[0].contains(saving));
    }

    void directoryThatCanNotBeMadeIsReported()
    {
        testing::writeFile(m_tree->user(QStringLiteral("gestures")), "in the way");
        GestureService service(appPaths(), nullptr, false);
        LogCapture log;
        QVERIFY(service.save());
        QCOMPARE(log.qtMessages.size(), 1);
        QVERIFY(log.qtMessages[0].contains(QStringLiteral("can not open file: Not a directory (path: ")));
    }

    void failedSaveAtExitIsReported()
    {
        testing::writeFile(m_tree->user(QStringLiteral("gestures")), "in the way");
        GestureService service(appPaths(), nullptr, false);
        QCOMPARE(service.gestureList().size(), 3);
        LogCapture log;
        ExitNotifier::notify();
        QCOMPARE(log.qtMessages.size(), 1);
        QVERIFY(log.qtMessages[0].contains(QStringLiteral("can not open file: Not a directory (path: ")));
    }

    void unkeptFileIsNotOverwritten()
    {
        writeUserFile("garbage");
        // The name of the copy is too long for a file.
        const QString file = QFileInfo(userFile()).path() + QLatin1Char('/') + QString(250, QLatin1Char('x'));
        QVERIFY(QFile::rename(userFile(), file));
        LogCapture log;
        GestureService service(ApplicationPaths(QStringLiteral("app"), file, appPaths().defaultPath()), nullptr, false);
        QVERIFY(service.save());
        QCOMPARE(testing::readFile(file), QByteArray("garbage"));
        QCOMPARE(log.qtMessages.size(), 1);
        QVERIFY(log.qtMessages[0].startsWith(
                QStringLiteral(
                        "critical default: [error] not saved: \"the rejected file can not be kept beside it (path: ")
                + file));
        QCOMPARE(testing::filesBelow(QFileInfo(file).path()).size(), 1);
    }

    // As a user who may read the file and the directory, but write to neither.
    void rejectedFileThatCanNotBeWrittenIsLeftAlone()
    {
        writeUserFile("garbage");
        const QString directory = QFileInfo(userFile()).path();
        LogCapture log;
        GestureService service(appPaths(), nullptr, false);
        QCOMPARE(chmod(qPrintable(m_tree->root()), 0755), 0);
        QCOMPARE(chmod(qPrintable(userFile()), 0444), 0);
        QCOMPARE(chmod(qPrintable(directory), 0555), 0);
        const bool isRoot = getuid() == 0;
        if (isRoot)
            QCOMPARE(setresuid(65534, 65534, 0), 0);
        const bool tried = service.save();
        if (isRoot)
            QCOMPARE(setresuid(0, 0, 0), 0);
        QCOMPARE(chmod(qPrintable(directory), 0755), 0);
        QVERIFY(tried);
        QCOMPARE(testing::filesBelow(directory), QStringList(QFileInfo(userFile()).fileName()));
        QCOMPARE(testing::readFile(userFile()), QByteArray("garbage"));
        QVERIFY(log.qtMessages.last().contains(QStringLiteral("can not open file: Permission denied")));
    }

    void pruneAndSaveJsonKeepNothing()
    {
        writeUserFile("garbage");
        LogCapture log;
        GestureService service(appPaths(), nullptr, false);
        VERIFY_RIGHT(Configuration::ActionBindings::saveJson(appPaths().currentPath(), service.gestureList())
                             .mapLeft([](const QString &s) {
                                 return Error({"", 0}, s.toStdString());
                             }));
        writeUserFile("garbage");
        QVERIFY(service.prune());
        QCOMPARE(testing::filesBelow(m_tree->user()), QStringList());
    }

    // --- clone and merge

    void cloneCopiesEveryGesture()
    {
        GestureService service(appPaths(), nullptr, false);
        const QScopedPointer<QObject> copy(service.cloneAsQObject());
        auto *clone = qobject_cast<GestureService *>(copy.data());
        QVERIFY(clone);
        QCOMPARE(clone->parent(), nullptr);
        QCOMPARE(clone->readonly(), false);
        QCOMPARE(clone->gestureList().size(), 3);
        for (int i = 0; i < 3; ++i) {
            QVERIFY(clone->gestureList().at(i) != service.gestureList().at(i));
            QCOMPARE(clone->gestureList().at(i)->id(), service.gestureList().at(i)->id());
            QCOMPARE(clone->gestureList().at(i)->currentAction(), service.gestureList().at(i)->currentAction());
            QCOMPARE(clone->gestureList().at(i)->parent(), clone);
        }
        QObject parent;
        QCOMPARE(service.cloneAsQObject(&parent)->parent(), &parent);
    }

    void cloneKeepsProviderAndReadonly()
    {
        DefaultFeaturesProvider provider;
        GestureService service(appPaths(), &provider, true);
        const QScopedPointer<GestureService> copy(service.clone());
        QCOMPARE(copy->featuresProvider(), &provider);
        QCOMPARE(copy->readonly(), true);
        QCOMPARE(copy->paths().appId(), QStringLiteral("app"));
    }

    void nullEntriesSurvive()
    {
        const QScopedPointer<Gesture> one(
                newGesture(QStringLiteral("one"), Gesture::Tap, QRectF(0, 0, 1, 1), Gesture::NoDirection));
        const GestureList list([&] { return QList<Gesture *>{nullptr, one.data(), nullptr}; });
        GestureService service(appPaths(), nullptr, false, list, false);
        QCOMPARE(service.gestureList().size(), 3);
        QCOMPARE(service.gestureList().at(0), nullptr);
        QCOMPARE(service.gestures()->rowCount(), 3);
        QCOMPARE(idOf(service.findGesture(QString(), Gesture::Tap, Gesture::NoDirection, QPointF(0.5, 0.5))),
                 QStringLiteral("one"));
        QVERIFY(service.containsGestureKind(Gesture::Tap));
        QVERIFY(service.save());
        const QScopedPointer<GestureService> copy(service.clone());
        QCOMPARE(copy->gestureList().size(), 3);
        QCOMPARE(copy->gestureList().at(2), nullptr);
        QVERIFY(service.fastMerge(copy.data()));
        // A null on one side only is also skipped.
        const QScopedPointer<Gesture> other(
                newGesture(QStringLiteral("other"), Gesture::Hold, QRectF(0, 0, 1, 1), Gesture::NoDirection));
        GestureService full(appPaths(), nullptr, true, GestureList([&] {
                                return QList<Gesture *>{other.data(), one.data()};
                            }),
                            false);
        QVERIFY(service.fastMerge(&full));
        QVERIFY(full.fastMerge(&service));
        QVERIFY(testing::debugText([&](QDebug &out) {
                    QCOMPARE(&service.dump(out, 1), &out);
                }).startsWith(QStringLiteral("   gestures:\n      ") + QStringLiteral("  null\n")));
    }

    void fastMergeTakesCurrentActionsByPosition()
    {
        GestureService service(appPaths(), nullptr, false);
        const QScopedPointer<GestureService> copy(service.clone());
        Action *chosen = copy->gestureList().at(0)->availableActions().at(2);
        copy->gestureList().at(0)->setCurrentAction(chosen);
        QSignalSpy changed(&service, &GestureService::gesturesChanged);
        QVERIFY(service.fastMerge(copy.data()));
        QCOMPARE(service.gestureList().at(0)->currentAction(), chosen);
        QCOMPARE(changed.size(), 1);
        QCOMPARE(changed.at(0).at(0).value<ReadonlyLazyListModel *>(), service.gestures());
    }

    void fastMergeOfUnequalLengths()
    {
        const auto taps = [](int count) {
            QList<Gesture *> gestures;
            for (int i = 0; i < count; ++i)
                gestures.append(newGesture(QString::number(i), Gesture::Tap, QRectF(0, 0, 1, 1), Gesture::NoDirection,
                                           {}, new Action(QString::number(count), {}, {})));
            return gestures;
        };
        const QList<Gesture *> three = taps(3);
        const QList<Gesture *> five = taps(5);
        {
            GestureService a(appPaths(), nullptr, true, GestureList([&] { return three; }), false);
            GestureService b(appPaths(), nullptr, true, GestureList([&] { return five; }), false);
            QVERIFY(a.fastMerge(&b));
            for (const Gesture *gesture : a.gestureList())
                QCOMPARE(gesture->currentAction()->path(), QStringLiteral("5"));
            QVERIFY(b.fastMerge(&a));
        }
        qDeleteAll(three);
        qDeleteAll(five);
    }

    void fastMergeStopsAtTheFirstRefusal()
    {
        Action *old = new Action(QStringLiteral("old"), {}, {});
        Action *fresh = new Action(QStringLiteral("fresh"), {}, {});
        const QRectF whole(0, 0, 1, 1);
        const auto make = [&](Gesture::Kind second, Action *action) {
            return QList<Gesture *>{
                    newGesture(QStringLiteral("1"), Gesture::Tap, whole, Gesture::NoDirection, {}, action),
                    newGesture(QStringLiteral("2"), second, whole, Gesture::NoDirection, {}, action),
                    newGesture(QStringLiteral("3"), Gesture::Tap, whole, Gesture::NoDirection, {}, action)};
        };
        const QList<Gesture *> mine = make(Gesture::Tap, old);
        const QList<Gesture *> theirs = make(Gesture::Hold, fresh);
        {
            GestureService a(appPaths(), nullptr, true, GestureList([&] { return mine; }), false);
            GestureService b(appPaths(), nullptr, true, GestureList([&] { return theirs; }), false);
            QSignalSpy changed(&a, &GestureService::gesturesChanged);
            QVERIFY(!a.fastMerge(&b));
            QCOMPARE(a.gestureList().at(0)->currentAction(), fresh);
            QCOMPARE(a.gestureList().at(1)->currentAction(), old);
            QCOMPARE(a.gestureList().at(2)->currentAction(), old);
            QVERIFY(changed.isEmpty());
        }
        qDeleteAll(mine);
        qDeleteAll(theirs);
    }

    void fastMergeWithSomethingElse()
    {
        GestureService service(appPaths(), nullptr, true);
        QObject other;
        QSignalSpy changed(&service, &GestureService::gesturesChanged);
        QVERIFY(!service.fastMergeWithQObject(&other));
        QVERIFY(!service.fastMergeWithQObject(nullptr));
        QVERIFY(!service.fastMerge(nullptr));
        QVERIFY(changed.isEmpty());
        QVERIFY(service.fastMergeWithQObject(&service));
    }

    void dumpOfNoGestures()
    {
        GestureService service(appPaths(), nullptr, true, GestureList(), false);
        QCOMPARE(testing::debugText([&](QDebug &out) { service.dump(out, 0); }), QStringLiteral(" gestures:\n "));
    }

    void dumpIndentsGestures()
    {
        GestureService service(appPaths(), nullptr, true);
        const QString text = testing::debugText([&](QDebug &out) { service.dump(out, 1); });
        const QString first = testing::debugText([&](QDebug &out) { service.gestureList().at(0)->dump(out, 2); });
        QVERIFY(text.startsWith(QStringLiteral("   gestures:\n ") + first));
    }

    void featuresProviderIsReadableFromAVariant()
    {
        DefaultFeaturesProvider provider;
        GestureService service(appPaths(), &provider, true);
        QCOMPARE(service.property("featuresProvider").value<const FeaturesProvider *>(), &provider);
        QCOMPARE(service.property("readonly").toBool(), true);
    }

    // --- exit

    void exit_data()
    {
        QTest::addColumn<QString>("scenario");
        QTest::addColumn<int>("exitCode");
        QTest::addColumn<QByteArray>("bound"); // the first gesture's binding afterwards
        const QByteArray none;
        QTest::newRow("application on the stack") << "stack" << 0 << QByteArray("next");
        QTest::newRow("application on the heap") << "heap" << 0 << QByteArray("next");
        QTest::newRow("static application") << "static" << 0 << QByteArray("next");
        QTest::newRow("application deleted early") << "deleted early" << 0 << QByteArray("next");
        QTest::newRow("no application at all") << "no application" << 0 << QByteArray("next");
        QTest::newRow("exit()") << "exit" << 0 << QByteArray("next");
        QTest::newRow("exit switch") << "exit switch" << 255 << QByteArray("next");
        QTest::newRow("not loaded before") << "not loaded" << 0 << QByteArray("previous");
        QTest::newRow("a clone does not save") << "clone" << 0 << none;
        QTest::newRow("pruned") << "pruned" << 0 << none;
    }

    void exit()
    {
        QFETCH(QString, scenario);
        QFETCH(QByteArray, bound);
        QProcess child;
        child.start(QStringLiteral(TEST_PROGRAMS "/exitchild"), {scenario});
        QVERIFY(child.waitForFinished(testing::patience));
        QCOMPARE(child.exitStatus(), QProcess::NormalExit);
        QTEST(child.exitCode(), "exitCode");
        if (bound.isEmpty())
            QVERIFY(!QFileInfo::exists(userFile()));
        else
            QVERIFY(testing::readFile(userFile()).contains("\"ReaderTapLeftNoDirection\": \"" + bound + '"'));
    }

    void uncaughtTerminateSavesNothing()
    {
        QProcess child;
        child.start(QStringLiteral(TEST_PROGRAMS "/exitchild"), {QStringLiteral("terminate")});
        QVERIFY(child.waitForFinished(testing::patience));
        QCOMPARE(child.exitStatus(), QProcess::CrashExit);
        QCOMPARE(child.exitCode(), SIGABRT);
        QVERIFY(!QFileInfo::exists(userFile()));
    }

    // A program that opens the library through a module, and closes the module before it ends.
    void closedModuleStillSavesAtExit()
    {
        QProcess child;
        // Nothing in the module points to the service any more: a leak checker reports it as lost.
        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        environment.insert(QStringLiteral("ASAN_OPTIONS"), QStringLiteral("detect_leaks=0"));
        child.setProcessEnvironment(environment);
        child.start(QStringLiteral(TEST_PROGRAMS "/dlopenchild"), {QStringLiteral(EXIT_PLUGIN)});
        QVERIFY(child.waitForFinished(testing::patience));
        QCOMPARE(child.exitStatus(), QProcess::NormalExit);
        QVERIFY2(child.exitCode() == 0, child.readAllStandardError());
        QVERIFY(testing::readFile(userFile()).contains("\"ReaderTapLeftNoDirection\": \"next\""));
    }

    void exitWhileLoadingSavesNothing()
    {
        // With the exit switch on, a failed load ends the process from within the load.
        writeUserFile(R"({"version": 1, "actions": {"TapRightNoDirection": "gone"}})");
        const QByteArray before = testing::readFile(userFile());
        QProcess child;
        child.start(QStringLiteral(TEST_PROGRAMS "/exitchild"), {QStringLiteral("exit switch while loading")});
        QVERIFY(child.waitForFinished(testing::patience));
        QCOMPARE(child.exitStatus(), QProcess::NormalExit);
        QCOMPARE(child.exitCode(), 255);
        QCOMPARE(testing::readFile(userFile()), before);
        QCOMPARE(testing::filesBelow(m_tree->user()).size(), 1);
    }

private:
    QString userFile() const { return m_tree->userFile(QStringLiteral("app")); }
    QString defaultFile() const { return m_tree->defaultFile(QStringLiteral("app")); }
    void writeUserFile(const QByteArray &text) { testing::writeFile(userFile(), text); }

    GestureList lookupGestures()
    {
        const QStringList reader{QStringLiteral("reader")};
        const auto add = [this](const char *id, Gesture::Kind kind, const QRectF &zone, const QStringList &modes = {}) {
            m_lookup.append(QSharedPointer<Gesture>(
                    newGesture(QString::fromLatin1(id), kind, zone, Gesture::NoDirection, modes)));
        };
        m_lookup.clear();
        add("reader", Gesture::Tap, QRectF(0, 0.25, 0.25, 0.5), reader);
        add("any", Gesture::Tap, QRectF(0.75, 0.25, 0.25, 0.5));
        add("thin", Gesture::Tap, QRectF(0.5, 0.4, 0, 0.2));
        add("flat", Gesture::Tap, QRectF(0.55, 0.9, 0.1, 0));
        add("turned", Gesture::Tap, QRectF(0.5, 0.1, -0.1, -0.1));
        add("two modes", Gesture::Swipe, QRectF(0, 0, 1, 1), {QStringLiteral("first"), QStringLiteral("second")});
        add("early", Gesture::Drag, QRectF(0, 0, 1, 1));
        add("late", Gesture::Drag, QRectF(0.4, 0.4, 0.1, 0.1));
        QList<Gesture *> gestures;
        for (const auto &gesture : qAsConst(m_lookup))
            gestures.append(gesture.data());
        return GestureList([gestures] { return gestures; });
    }

    QScopedPointer<DataTree> m_tree;
    QList<QSharedPointer<Gesture>> m_lookup;
};

QTEST_GUILESS_MAIN(tst_GestureService)
#include "tst_gestureservice.moc"
