#include "tool.h"

#include <gesture_api/gestureserviceprovider.h>

#include <QDir>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

using namespace vellix::gesture;
using testing::Run;

static const char *const actions = R"("actions": [
    {"path": "next", "title": "Next"},
    {"path": "back", "title": "Back"},
    {"path": "speak", "title": "Speak", "features": ["tts"]},
    {"path": "glow", "title": "Glow", "features": ["tts", "smartlight"]}
])";

// Why a touch matches a gesture or does not, and the source of the action, in the output of the program.
class tst_Explain : public testing::Tool
{
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        Tool::init();
        QVERIFY(QDir().mkpath(programs()));
        qputenv("PATH", QFile::encodeName(programs())); // the only directory in which a speech engine is looked for
    }

    void testsInTheirOrder_data()
    {
        QTest::addColumn<QString>("touch");
        QTest::addColumn<QString>("outcome");
        QTest::addColumn<QByteArray>("failed"); // and the gesture's requirement
        const auto row = [](const char *name, const char *touch, const char *outcome, const char *failed) {
            QTest::newRow(name) << touch << outcome << QByteArray(failed);
        };
        const char *const mode = R"("failed": "mode", "wanted": ["notes", "reading"])";
        const char *const kind = R"("failed": "kind", "wanted": "swipe")";
        const char *const direction = R"("failed": "direction", "wanted": "toLeft")";
        const char *const zone = R"("failed": "zone", "wanted": {"x": 0, "y": 0.2, "w": 0.25, "h": 0.6})";
        row("all hold", "notes swipe toLeft 0.1,0.5", "matches: wins", R"("failed": null, "wanted": null)");
        row("mode", "menu swipe toLeft 0.1,0.5", "mode: expected notes or reading, got menu", mode);
        row("letter case of the mode", "Notes swipe toLeft 0.1,0.5", "mode: expected notes or reading, got Notes",
            mode);
        row("mode before kind", "menu tap toLeft 0.1,0.5", "mode: expected notes or reading, got menu", mode);
        row("kind", "reading tap toLeft 0.1,0.5", "kind: expected swipe, got tap", kind);
        row("kind before direction", "reading drag toTop 0.1,0.5", "kind: expected swipe, got drag", kind);
        row("direction", "reading swipe toRight 0.1,0.5", "direction: expected toLeft, got toRight", direction);
        row("direction before zone", "reading swipe no 0.9,0.5", "direction: expected toLeft, got no", direction);
        row("zone", "reading swipe toLeft 0.9,0.5", "zone left (0, 0.2, 0.25, 0.6) does not contain 0.9,0.5", zone);
        row("zone, just past its edge", "reading swipe toLeft 0.25000000001,0.5",
            "zone left (0, 0.2, 0.25, 0.6) does not contain 0.25000000001,0.5", zone);
        row("zone, on its edge", "reading swipe toLeft 0.25,0.2", "matches: wins", R"("failed": null, "wanted": null)");
    }

    void testsInTheirOrder()
    {
        QFETCH(QString, touch);
        QFETCH(QString, outcome);
        QFETCH(QByteArray, failed);
        configure(R"([{"id": "one", "modes": ["reading", "notes"], "kind": "swipe", "direction": "toLeft",
                       "zone": "left", "defaultAction": "next"}])");
        const bool matches = outcome.startsWith("matches");
        const Run run = explain(touch);
        QCOMPARE(run.out,
                 "one  " + outcome
                         + (matches ? "\n\ngesture  one\naction   next\nfrom     the file's 'defaultAction'\n"
                                    : "\n\nno gesture matches\n"));
        QCOMPARE(run.exitCode, matches ? 0 : 1);
        QCOMPARE(run.err, QString());
        QCOMPARE(json(touch).value("gestures"),
                 QJsonValue(QJsonDocument::fromJson("[{\"id\": \"one\", " + failed + "}]").array()));
    }

    void zonesByTheirNames_data()
    {
        QTest::addColumn<QByteArray>("zone");
        QTest::addColumn<QString>("outcome");
        QTest::newRow("of this file") << QByteArray(R"("zone": "edge")")
                                      << "zone edge (0, 0, 0.1, 1) does not contain 0.5,0.5";
        QTest::newRow("an alias, as the gesture calls it")
                << QByteArray(R"("zone": "alias")") << "zone alias (0, 0.2, 0.25, 0.6) does not contain 0.5,0.5";
        QTest::newRow("predefined, whatever the file says")
                << QByteArray(R"("zone": "top")") << "zone top (0.25, 0, 0.5, 0.2) does not contain 0.5,0.5";
        QTest::newRow("a rectangle has none") << QByteArray(R"("zone": {"x": 0, "y": 0.2, "w": 0.25, "h": 0.6})")
                                              << "zone (0, 0.2, 0.25, 0.6) does not contain 0.5,0.5";
        QTest::newRow("without a width") << QByteArray(R"("zone": {"x": 0.5, "y": 0, "w": 0, "h": 1})")
                                         << "zone (0.5, 0, 0, 1) has no area and does not contain 0.5,0.5";
        QTest::newRow("without a height") << QByteArray(R"("zone": {"x": 0, "y": 0.5, "w": 1, "h": 0})")
                                          << "zone (0, 0.5, 1, 0) has no area and does not contain 0.5,0.5";
        QTest::newRow("of a negative size") << QByteArray(R"("zone": {"x": 1, "y": 1, "w": -0.4, "h": -0.4})")
                                            << "zone (1, 1, -0.4, -0.4) does not contain 0.5,0.5";
    }

    void zonesByTheirNames()
    {
        QFETCH(QByteArray, zone);
        QFETCH(QString, outcome);
        configure(R"([{"id": "one", "kind": "tap", "defaultAction": "next", )" + zone + "}]",
                  R"("zones": {"edge": {"x": 0, "y": 0, "w": 0.1, "h": 1}, "alias": "left", "top": "whole"})");
        QCOMPARE(explain("m tap no 0.5,0.5").out, "one  " + outcome + "\n\nno gesture matches\n");
    }

    void wholeOutput()
    {
        configure(R"([
            {"id": "early", "kind": "hold", "zone": "whole", "defaultAction": "back"},
            {"id": "narrow", "modes": ["m"], "kind": "tap", "zone": "left", "defaultAction": "next"},
            {"id": "whole", "kind": "tap", "zone": "whole", "defaultAction": "back"},
            {"id": "other", "modes": ["n"], "kind": "tap", "zone": "whole", "defaultAction": "back"},
            {"id": "last", "kind": "tap", "zone": "leftVerticalLine", "defaultAction": "back"}
        ])");
        QCOMPARE(explain("m tap no 0.1,0.5").out,
                 QString("early   kind: expected hold, got tap\n"
                         "narrow  matches: wins\n"
                         "whole   matches: hidden by narrow\n"
                         "other   mode: expected n, got m\n"
                         "last    matches: hidden by narrow\n"
                         "\n"
                         "gesture  narrow\n"
                         "action   next\n"
                         "from     the file's 'defaultAction'\n"
                         "hides    whole, last\n"));
        QCOMPARE(json("m tap no 0.1,0.5"),
                 QJsonDocument::fromJson(R"({
            "touch": {"mode": "m", "kind": "tap", "direction": "no", "at": {"x": 0.1, "y": 0.5}},
            "gestures": [
                {"id": "early", "failed": "kind", "wanted": "hold"},
                {"id": "narrow", "failed": null, "wanted": null},
                {"id": "whole", "failed": null, "wanted": null},
                {"id": "other", "failed": "mode", "wanted": ["n"]},
                {"id": "last", "failed": null, "wanted": null}
            ],
            "gesture": "narrow", "action": "next",
            "origin": {"from": "defaultAction", "skipped": [], "default": "next", "binding": null},
            "missing": {"gesture": [], "action": []},
            "hides": ["whole", "last"]
        })")
                         .object());
        QCOMPARE(explain("m drag no 0.1,0.5").exitCode, 1);
        QCOMPARE(json("m drag no 0.1,0.5", 1),
                 QJsonDocument::fromJson(R"({
            "touch": {"mode": "m", "kind": "drag", "direction": "no", "at": {"x": 0.1, "y": 0.5}},
            "gestures": [
                {"id": "early", "failed": "kind", "wanted": "hold"},
                {"id": "narrow", "failed": "kind", "wanted": "tap"},
                {"id": "whole", "failed": "kind", "wanted": "tap"},
                {"id": "other", "failed": "mode", "wanted": ["n"]},
                {"id": "last", "failed": "kind", "wanted": "tap"}
            ],
            "gesture": null, "action": null, "origin": null, "missing": null, "hides": []
        })")
                         .object());
    }

    void noGestures()
    {
        configure("[]");
        const Run run = explain("m tap no 0.1,0.5");
        QCOMPARE(run.out, QString("no gesture matches\n"));
        QCOMPARE(run.exitCode, 1);
    }

    void origin_data()
    {
        QTest::addColumn<QByteArray>("entry");
        QTest::addColumn<QByteArray>("bindings");
        QTest::addColumn<bool>("speaks"); // whether the device has "tts"
        QTest::addColumn<QString>("conclusion");
        QTest::addColumn<QByteArray>("expected");
        const auto row = [](const char *name, const char *entry, const char *bindings, bool speaks,
                            const char *conclusion, const char *expected) {
            QTest::newRow(name) << QByteArray(entry) << QByteArray(bindings) << speaks << conclusion
                                << QByteArray(expected);
        };
        row("a default", R"("defaultAction": "next")", "", false,
            "action   next\nfrom     the file's 'defaultAction'\n",
            R"({"from": "defaultAction", "skipped": [], "default": "next", "binding": null})");
        row("a default that the device does not support", R"("defaultAction": "speak")", "", false,
            "action   speak  [not on this device: no tts]\nfrom     the file's 'defaultAction'\n",
            R"({"from": "defaultAction", "skipped": [], "default": "speak", "binding": null})");
        row("the same where it does", R"("defaultAction": "speak")", "", true,
            "action   speak\nfrom     the file's 'defaultAction'\n",
            R"({"from": "defaultAction", "skipped": [], "default": "speak", "binding": null})");
        row("the second of a list", R"("defaultAction": ["speak", "next", "glow"])", "", false,
            "action   next\nfrom     the fallback list in the file's 'defaultAction'\n"
            "skipped  speak  [not on this device: no tts]\n",
            R"({"from": "fallback", "skipped": [{"path": "speak", "missing": ["tts"]}], "default": "next",
                "binding": null})");
        row("the first of a list", R"("defaultAction": ["speak", "next"])", "", true,
            "action   speak\nfrom     the fallback list in the file's 'defaultAction'\n",
            R"({"from": "fallback", "skipped": [], "default": "speak", "binding": null})");
        row("past two of a list", R"("defaultAction": ["glow", "speak", "back", "next"])", "", false,
            "action   back\nfrom     the fallback list in the file's 'defaultAction'\n"
            "skipped  glow  [not on this device: no smartlight, no tts]\n"
            "skipped  speak  [not on this device: no tts]\n",
            R"({"from": "fallback", "skipped": [{"path": "glow", "missing": ["smartlight", "tts"]},
                {"path": "speak", "missing": ["tts"]}], "default": "back", "binding": null})");
        row("past one defined in the list",
            R"("defaultAction": [{"path": "own", "title": "Own", "features": ["tts"]}, "next"])", "", false,
            "action   next\nfrom     the fallback list in the file's 'defaultAction'\n"
            "skipped  own  [not on this device: no tts]\n",
            R"({"from": "fallback", "skipped": [{"path": "own", "missing": ["tts"]}], "default": "next",
                "binding": null})");
        row("a current action", R"("currentAction": "next")", "", false,
            "action   next\nfrom     the file's 'currentAction'\n",
            R"({"from": "currentAction", "skipped": [], "default": null, "binding": null})");
        row("a current action before a default", R"("currentAction": "next", "defaultAction": ["speak", "back"])", "",
            false, "action   next\nfrom     the file's 'currentAction'\n",
            R"({"from": "currentAction", "skipped": [], "default": "back", "binding": null})");
        row("a current action before a binding", R"("currentAction": "next")", R"("one": "back")", false,
            "action   next\nfrom     the file's 'currentAction'; it hides the user's binding to back\n",
            R"({"from": "currentAction", "skipped": [], "default": null, "binding": "back"})");
        row("a binding", R"("defaultAction": "next")", R"("one": "back")", false,
            "action   back\nfrom     the user's binding; it replaces the file's default next\n",
            R"({"from": "binding", "skipped": [], "default": "next", "binding": "back"})");
        row("a binding of another gesture", R"("defaultAction": "next")", R"("two": "back")", false,
            "action   next\nfrom     the file's 'defaultAction'\n",
            R"({"from": "defaultAction", "skipped": [], "default": "next", "binding": null})");
        row("a binding to the default", R"("defaultAction": "next")", R"("one": "next")", false,
            "action   next\nfrom     the user's binding; the file's default is the same\n",
            R"({"from": "binding", "skipped": [], "default": "next", "binding": "next"})");
        row("a binding in place of a list", R"("defaultAction": ["speak", "next"])", R"("one": "back")", false,
            "action   back\nfrom     the user's binding; it replaces the file's default next\n",
            R"({"from": "binding", "skipped": [], "default": "next", "binding": "back"})");
        row("a binding to what the device does not support", R"("defaultAction": "next")", R"("one": "speak")", false,
            "action   speak  [not on this device: no tts]\n"
            "from     the user's binding; it replaces the file's default next\n",
            R"({"from": "binding", "skipped": [], "default": "next", "binding": "speak"})");
        row("a binding in place of a default that is not defined", R"("defaultAction": "gone")", R"("one": "back")",
            false,
            "action   back\n"
            "from     the user's binding; the file has no default for it: action 'gone' not defined\n",
            R"({"from": "binding", "skipped": [], "default": null, "binding": "back"})");
        row("a binding in place of a list without a supported action", R"("defaultAction": ["speak", "glow"])",
            R"("one": "back")", false,
            "action   back\n"
            "from     the user's binding; the file has no default for it: the device supports no action of its list\n",
            R"({"from": "binding", "skipped": [], "default": null, "binding": "back"})");
    }

    void origin()
    {
        QFETCH(QByteArray, entry);
        QFETCH(QByteArray, bindings);
        QFETCH(bool, speaks);
        QFETCH(QString, conclusion);
        QFETCH(QByteArray, expected);
        if (entry.contains("glow") && hasColouredLight())
            QSKIP("this machine has a front light whose colour can be changed");
        // Not the first of the file: the entries must be counted.
        configure(R"([{"id": "zero", "kind": "hold", "zone": "whole", "defaultAction": "back"},
                      {"id": "one", "kind": "tap", "zone": "whole", )"
                  + entry + "}]");
        if (!bindings.isEmpty())
            testing::writeFile(m_tree->userFile("app"), R"({"version": 1, "actions": {)" + bindings + "}}");
        if (speaks)
            addSpeechEngine();
        QCOMPARE(explain("m tap no 0.5,0.5").out,
                 "zero  kind: expected hold, got tap\none   matches: wins\n\ngesture  one\n" + conclusion);
        QCOMPARE(json("m tap no 0.5,0.5").value("origin"), QJsonValue(QJsonDocument::fromJson(expected).object()));
    }

    void unsupportedGestureWins()
    {
        configure(R"([
            {"id": "one", "kind": "tap", "zone": "whole", "defaultAction": "speak", "features": ["tts"]},
            {"id": "two", "kind": "tap", "zone": "whole", "defaultAction": "next"}
        ])");
        const QString table = "one  matches: wins\ntwo  matches: hidden by one\n\n";
        QCOMPARE(explain("m tap no 0.5,0.5").out,
                 table
                         + "gesture  one  [not on this device: no tts]\n"
                           "action   speak  [not on this device: no tts]\n"
                           "from     the file's 'defaultAction'\n"
                           "hides    two\n");
        QCOMPARE(json("m tap no 0.5,0.5").value("missing"),
                 QJsonValue(QJsonDocument::fromJson(R"({"gesture": ["tts"], "action": ["tts"]})").object()));
        addSpeechEngine();
        QCOMPARE(explain("m tap no 0.5,0.5").out,
                 table + "gesture  one\naction   speak\nfrom     the file's 'defaultAction'\nhides    two\n");
    }

    void missingForTheGestureAlone()
    {
        configure(R"([{"id": "one", "kind": "tap", "zone": "whole", "defaultAction": "next", "features": ["tts"]}])");
        QCOMPARE(json("m tap no 0.5,0.5").value("missing"),
                 QJsonValue(QJsonDocument::fromJson(R"({"gesture": ["tts"], "action": []})").object()));
    }

    void badFiles()
    {
        testing::writeFile(m_tree->defaultFile("app"), "{}");
        const Run run = explain("m tap no 0.5,0.5");
        QCOMPARE(run.exitCode, 3);
        QCOMPARE(run.out, QString());
        QCOMPARE(run.err, "gesturectl: " + m_tree->defaultFile("app") + ":1:1: 'gestures' is obligatory field\n");
    }

    void winsWhatTheServiceFinds_data()
    {
        QTest::addColumn<QString>("mode");
        for (const char *mode : {"reading", "selecting", "menu", "other"})
            QTest::newRow(mode) << mode;
    }

    void winsWhatTheServiceFinds()
    {
        QFETCH(QString, mode);
        const QString sample = "vellix/config/gestures/apps/default/reader/cfg.json";
        testing::writeFile(m_tree->defaultFile("app"), testing::readFile(SOURCE_DIR "/examples/data/" + sample));
        const DefaultFeaturesProvider features;
        const GestureService service(ApplicationPaths("app", m_tree->userFile("app"), m_tree->defaultFile("app")),
                                     &features, true);
        int matches = 0;
        for (const char *kind : {"tap", "hold", "swipe", "drag"}) {
            for (const char *direction : {"no", "toLeft", "toBottom"}) {
                for (const QPointF &at : {QPointF(0.05, 0.95), QPointF(0.9, 0.1), QPointF(0.5, 0.5)}) {
                    const Gesture *found = service.findGesture(mode, Gesture::kindFromVariant(kind).right(),
                                                               Gesture::directionFromVariant(direction).right(), at);
                    const QString touch =
                            QStringLiteral("%1 %2 %3 %4,%5").arg(mode, kind, direction).arg(at.x()).arg(at.y());
                    const QJsonObject explained = json(touch, found ? 0 : 1);
                    QCOMPARE(explained.value("gesture").toString(), found ? found->id() : QString());
                    QCOMPARE(explained.value("action").toString(), found ? found->currentAction()->path() : QString());
                    matches += found ? 1 : 0;
                }
            }
        }
        QVERIFY(matches > 0);
    }

private:
    QString programs() const { return m_tree->root() + "/programs"; }

    void addSpeechEngine() const
    {
        const QString engine = programs() + "/espeak-ng";
        testing::writeFile(engine, "#!/bin/sh\n");
        QVERIFY(QFile::setPermissions(engine, QFile::ReadOwner | QFile::ExeOwner));
    }

    static bool hasColouredLight()
    {
        const DefaultFeaturesProvider features;
        return features.featuresByNames({"smartlight"}).right().first()->supported();
    }

    void configure(const QByteArray &gestures, const QByteArray &zones = "\"zones\": {}") const
    {
        testing::writeFile(m_tree->defaultFile("app"),
                           '{' + zones + ',' + actions + ", \"gestures\": " + gestures + '}');
    }

    // A touch is "MODE KIND DIRECTION X,Y".
    Run explain(const QString &touch, const QStringList &more = {}) const
    {
        const QStringList words = touch.split(' ');
        return gesturectl(QStringList({"explain", "--app", "app", "--mode", words.value(0), "--kind", words.value(1),
                                       "--direction", words.value(2), "--at", words.value(3)})
                          + more);
    }

    // Empty if the status is another one.
    QJsonObject json(const QString &touch, int status = -1) const
    {
        const Run run = explain(touch, {"--json"});
        return status < 0 || run.exitCode == status ? QJsonDocument::fromJson(run.out.toUtf8()).object()
                                                    : QJsonObject();
    }
};

QTEST_GUILESS_MAIN(tst_Explain)
#include "tst_explain.moc"
