#include "tool.h"

#include <QDir>
#include <QFileInfo>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

#include <linux/capability.h>
#include <sys/prctl.h>
#include <sys/stat.h>
#include <unistd.h>

using testing::Run;

static const char *const definitions = R"(
    {"path": "a", "title": "A"}, {"path": "b", "title": "B"}, {"path": "c", "title": "C"},
    {"path": "speak", "title": "Speak", "features": ["tts"]})";

static QByteArray configuration(const QByteArray &gestures)
{
    return QByteArray("{\"actions\": [") + definitions + "], \"gestures\": [" + gestures + "]}";
}

// A tap that does "a" and offers "a" and "b".
static QByteArray tap(const char *id, const char *zone, const char *more = "")
{
    return QByteArray("{\"kind\": \"tap\", \"defaultAction\": \"a\", \"availableActions\": [\"a\", \"b\"], \"id\": \"")
            + id + "\", \"zone\": " + zone + more + '}';
}

static const char *const leftHalf = R"({"x": 0, "y": 0, "w": 0.5, "h": 1})";
static const char *const rightHalf = R"({"x": 0.5, "y": 0, "w": 0.5, "h": 1})";
static const char *const middle = R"({"x": 0.2, "y": 0, "w": 0.6, "h": 1})";

namespace {
// Root may write everywhere: this one then obeys the permissions. It stays root, since other users may not execute
// files in a private home.
class Process : public QProcess
{
public:
    bool isRestricted = false;

protected:
    void setupChildProcess() override
    {
        if (isRestricted && geteuid() == 0 && prctl(PR_CAPBSET_DROP, CAP_DAC_OVERRIDE) != 0)
            _exit(99);
    }
};
}

// The effect of an update on the user's choices, in the program's output and in the files that it writes.
class tst_Doctor : public testing::Tool
{
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        Tool::init();
        QCOMPARE(chmod(qPrintable(m_directory->path()), 0755), 0);
        // One choice of each state.
        testing::writeFile("old.json",
                           configuration(tap("kept", "\"left\"") + ',' + tap("gone", "\"top\"") + ','
                                         + tap("stale", "\"bottom\"") + ',' + tap("hidden", "\"right\"")));
        testing::writeFile("new.json",
                           configuration(tap("kept", "\"left\"") + ',' + tap("thief", "\"right\"") + ','
                                         + tap("stale", "\"bottom\"") + ',' + tap("hidden", "\"right\"")));
        testing::writeFile("user.json", m_mixed);
    }

    void states_data()
    {
        QTest::addColumn<QByteArray>("before");
        QTest::addColumn<QByteArray>("after");
        QTest::addColumn<QByteArray>("bindings");
        QTest::addColumn<int>("status");
        QTest::addColumn<QByteArray>("out");
        const auto row = [](const char *name, const QByteArray &before, const QByteArray &after,
                            const QByteArray &bindings, int status, const QByteArray &out) {
            QTest::newRow(name) << before << after << bindings << status << out;
        };
        const QByteArray t = tap("t", "\"left\"");
        const QByteArray bound = R"("t": "b")";
        const char *const offersA = R"("kind": "tap", "zone": "left", "id": "t", "defaultAction": "a",
                                       "availableActions": ["a"]})";

        row("nothing bound", t, t, "", 0, "user.json: no bindings\n");
        row("kept", t, t, bound, 0, "kept  t  b  -\n");
        row("sorted by gesture, columns aligned", t + ',' + tap("a long one", "\"top\""),
            t + ',' + tap("a long one", "\"top\""), R"("t": "b", "a long one": "b")", 0,
            "kept  a long one  b  -\nkept  t           b  -\n");

        // Notes on kept choices.
        row("the default changed", t, QByteArray(t).replace("\"defaultAction\": \"a\"", "\"defaultAction\": \"c\""),
            bound, 0, "kept  t  b  the default changed from 'a' to 'c', the choice stays\n");
        row("the default changed from the choice", QByteArray(t).replace("n\": \"a\"", "n\": \"b\""), t, bound, 0,
            "kept  t  b  the default changed from 'b' to 'a', the choice stays\n");
        row("the new default repeated", t, QByteArray(t).replace("n\": \"a\"", "n\": \"b\""), bound, 0,
            "kept  t  b  only repeats the new default; the old one was 'a'\n");
        row("the old default repeated", t, t, R"("t": "a")", 0, "kept  t  a  only repeats the default\n");
        row("there was no default", QByteArray(t).replace("defaultAction", "currentAction"), t, bound, 0,
            "kept  t  b  the default changed from none to 'a', the choice stays\n");
        row("there is no default any more, and what is fixed hides the choice", t,
            QByteArray(t).replace("defaultAction", "currentAction"), bound, 0,
            "kept  t  b  hidden by the fixed 'currentAction' 'a'; the default changed from 'a' to none, the choice "
            "stays\n");
        row("no longer offered", t, QByteArray("{") + offersA, bound, 0,
            "kept  t  b  no longer offered but defined: the menu cannot show it\n");
        row("not offered before either", QByteArray("{") + offersA, QByteArray("{") + offersA, bound, 0,
            "kept  t  b  not offered but defined: the menu cannot show it\n");
        row("hidden by what is fixed", t, tap("t", "\"left\"", R"(, "currentAction": "c")"), bound, 0,
            "kept  t  b  hidden by the fixed 'currentAction' 'c'\n");
        row("the choice is what is fixed", t, tap("t", "\"left\"", R"(, "currentAction": "b")"), bound, 0,
            "kept  t  b  -\n");
        row("not supported", QByteArray(t).replace("\"b\"]", "\"speak\"]"),
            QByteArray(t).replace("\"b\"]", "\"speak\"]"), R"("t": "speak")", 0,
            "kept  t  speak  not supported on this device\n");
        row("the gesture is new", tap("o", "\"top\""), t, bound, 0, "kept  t  b  the gesture is new\n");

        // Files that would not load.
        row("stale", t + ',' + tap("u", "\"top\""), t + ',' + tap("u", "\"top\""), R"("t": "b", "u": "gone")", 1,
            "kept   t  b     -\n"
            "stale  u  gone  action 'gone' not defined: rejected, and the application would have NO gestures\n");
        row("every choice stale", t + ',' + tap("u", "\"top\""), t + ',' + tap("u", "\"top\""), R"("t": "x", "u": "y")",
            1,
            "stale  t  x  action 'x' not defined: rejected, and the application would have NO gestures\n"
            "stale  u  y  action 'y' not defined: rejected, and the application would have NO gestures\n");
        row("stale: offered, but defined in the gesture only", t,
            QByteArray(t).replace("\"b\"]", R"({"path": "own", "title": "Own"}])"), R"("t": "own")", 1,
            "stale  t  own  action 'own' not defined: rejected, and the application would have NO gestures\n");
        row("stale goes before shadowed", t, tap("thief", "\"left\"") + ',' + t, R"("t": "gone")", 1,
            "stale  t  gone  action 'gone' not defined: rejected, and the application would have NO gestures\n");

        // Missing files.
        row("unknown", t, tap("u", "\"top\""), bound, 1, "unknown  t  b  the gesture no longer exists\n");
        row("unknown to both", t, t, R"("x": "b")", 1,
            "unknown  x  b  unknown gesture, also in the old configuration\n");
        row("unknown in both though its action is gone, too", t, t, R"("x": "gone")", 1,
            "unknown  x  gone  unknown gesture, also in the old configuration\n");
        row("renamed", t, tap("renamed", "\"left\""), bound, 1,
            "unknown  t  b  the gesture no longer exists, perhaps now 'renamed'\n");
        row("renamed: of two at the place, the new one", t + ',' + tap("o", "\"left\""),
            tap("o", "\"left\"") + ',' + tap("renamed", "\"left\""), bound, 1,
            "unknown  t  b  the gesture no longer exists, perhaps now 'renamed'\n");
        row("renamed: what stood there already", t + ',' + tap("o", "\"left\""), tap("o", "\"left\""), bound, 1,
            "unknown  t  b  the gesture no longer exists, perhaps now 'o'\n");
        row("not renamed: another kind", t, QByteArray(tap("u", "\"left\"")).replace("tap", "hold"), bound, 1,
            "unknown  t  b  the gesture no longer exists\n");
        row("not renamed: another direction", t, tap("u", "\"left\"", R"(, "direction": "toTop")"), bound, 1,
            "unknown  t  b  the gesture no longer exists\n");
        row("not renamed: another mode", t, tap("u", "\"left\"", R"(, "modes": ["m"])"), bound, 1,
            "unknown  t  b  the gesture no longer exists\n");

        // Gestures out of reach.
        const QByteArray halves = tap("l", leftHalf) + ',' + tap("r", rightHalf) + ',';
        const QByteArray inM = tap("t", "\"left\"", R"(, "modes": ["m"])");
        const QByteArray inMAndN = tap("t", "\"left\"", R"(, "modes": ["m", "n"])");
        const QByteArray thiefInM = tap("thief", "\"left\"", R"(, "modes": ["m"])") + ',';
        const QByteArray thiefInN = tap("other thief", "\"left\"", R"(, "modes": ["n"])") + ',';
        row("newly shadowed by one", t, tap("thief", "\"left\"") + ',' + t, bound, 1,
            "newly shadowed  t  b  no touch reaches it any more: all of its zone goes to 'thief'\n");
        row("newly shadowed by two", tap("t", middle), halves + tap("t", middle), bound, 1,
            "newly shadowed  t  b  no touch reaches it any more: all of its zone goes to 'l', 'r'\n");
        row("newly shadowed in all its modes", inMAndN, thiefInN + thiefInM + inMAndN, bound, 1,
            "newly shadowed  t  b  no touch reaches it any more: all of its zone goes to 'thief', 'other thief'\n");
        row("newly shadowed in two modes by one", inMAndN, tap("thief", "\"left\"") + ',' + inMAndN, bound, 1,
            "newly shadowed  t  b  no touch reaches it any more: all of its zone goes to 'thief'\n");
        row("newly shadowed, and hidden", t,
            tap("thief", "\"left\"") + ',' + tap("t", "\"left\"", R"(, "currentAction": "c")"), bound, 1,
            "newly shadowed  t  b  no touch reaches it any more: all of its zone goes to 'thief'; hidden by the fixed "
            "'currentAction' 'c'\n");
        row("off the screen", t, tap("t", R"({"x": 2, "y": 0, "w": 1, "h": 1})"), bound, 1,
            "newly shadowed  t  b  no touch reaches it any more: its zone is not on the screen\n");
        row("shadowed already", tap("thief", "\"left\"") + ',' + t, tap("thief", "\"left\"") + ',' + t, bound, 0,
            "kept  t  b  -\n");
        row("shadowed and new", tap("o", "\"top\""), tap("thief", "\"left\"") + ',' + t, bound, 0,
            "kept  t  b  the gesture is new\n");
        row("a later gesture takes nothing", t, t + ',' + tap("later", "\"left\""), bound, 0, "kept  t  b  -\n");
        row("another kind takes nothing", t, QByteArray(tap("o", "\"left\"")).replace("tap", "hold") + ',' + t, bound,
            0, "kept  t  b  -\n");
        row("another mode takes nothing", inM, thiefInN + inM, bound, 0, "kept  t  b  -\n");

        // Gestures that lose a part.
        row("a part", tap("t", middle), tap("l", leftHalf) + ',' + tap("t", middle), bound, 0,
            "kept  t  b  now loses 50 % to 'l'\n");
        row("parts to two", tap("t", "\"whole\""),
            tap("one", R"({"x": 0, "y": 0, "w": 0.1, "h": 1})") + ','
                    + tap("two", R"({"x": 0.9, "y": 0, "w": 0.1, "h": 0.333})") + ',' + tap("t", "\"whole\""),
            bound, 0, "kept  t  b  now loses 10 % to 'one', 3.3 % to 'two'\n");
        row("a tiny part", tap("t", "\"whole\""),
            tap("x", R"({"x": 0, "y": 0, "w": 0.01, "h": 0.01})") + ',' + tap("t", "\"whole\""), bound, 0,
            "kept  t  b  now loses less than 0.1 % to 'x'\n");
        row("no more than before", tap("l", leftHalf) + ',' + tap("t", middle),
            tap("l", leftHalf) + ',' + tap("t", middle), bound, 0, "kept  t  b  -\n");
        row("no more than before, to another", tap("l", leftHalf) + ',' + tap("t", middle),
            tap("renamed", leftHalf) + ',' + tap("t", middle), bound, 0, "kept  t  b  -\n");
        row("more than before", tap("l", R"({"x": 0, "y": 0, "w": 0.3, "h": 1})") + ',' + tap("t", middle),
            tap("l", leftHalf) + ',' + tap("t", middle), bound, 0, "kept  t  b  now loses 50 % to 'l'\n");
        row("the same share, but another part", tap("l", leftHalf) + ',' + tap("t", middle),
            tap("r", rightHalf) + ',' + tap("t", middle), bound, 0, "kept  t  b  now loses 50 % to 'r'\n");
        row("all of it in one of two modes", inMAndN, thiefInM + inMAndN, bound, 0,
            "kept  t  b  now loses 100 % to 'thief' in mode 'm'\n");
        row("a part in a mode of others", tap("t", middle),
            tap("l", leftHalf, R"(, "modes": ["m"])") + ',' + tap("t", middle), bound, 0,
            "kept  t  b  now loses 50 % to 'l' in mode 'm'\n");
        row("different parts in different modes", tap("t", middle),
            tap("l", leftHalf, R"(, "modes": ["m"])") + ',' + tap("l2", R"({"x": 0, "y": 0, "w": 0.35, "h": 1})") + ','
                    + tap("n", "\"top\"", R"(, "modes": ["n"])") + ',' + tap("t", middle),
            bound, 0,
            "kept  t  b  now loses 50 % to 'l' in mode 'm'; now loses 25 % to 'l2', 13.3 % to 'n' in mode 'n'; now "
            "loses 25 % to 'l2' in any other mode\n");
        row("the same part in two of its modes", tap("t", middle, R"(, "modes": ["k", "m", "n"])"),
            tap("l", leftHalf, R"(, "modes": ["m", "n"])") + ',' + tap("t", middle, R"(, "modes": ["k", "m", "n"])"),
            bound, 0, "kept  t  b  now loses 50 % to 'l' in mode 'm', mode 'n'\n");
        row("taken in a mode where it was not", inM, thiefInN + inMAndN, bound, 0, "kept  t  b  -\n");
    }

    void states()
    {
        QFETCH(QByteArray, before);
        QFETCH(QByteArray, after);
        QFETCH(QByteArray, bindings);
        testing::writeFile("old.json", configuration(before));
        testing::writeFile("new.json", configuration(after));
        testing::writeFile("user.json", choices(bindings));
        const Run run = doctor({"--bindings", "user.json"});
        QCOMPARE(run.err, QString());
        QTEST(run.out.toUtf8(), "out");
        QTEST(run.exitCode, "status");
        QCOMPARE(testing::filesBelow("."), QStringList({"new.json", "old.json", "user.json"}));
        QCOMPARE(testing::readFile("user.json"), choices(bindings));
    }

    void json()
    {
        const Run run = doctor({"--bindings", "user.json", "--json"});
        QCOMPARE(run.exitCode, 1);
        QCOMPARE(QJsonDocument::fromJson(run.out.toUtf8()), QJsonDocument::fromJson(R"({
            "file": "user.json", "dropped": [], "keptAs": null,
            "bindings": [
                {"state": "unknown", "gesture": "gone", "action": "b", "notes": ["the gesture no longer exists"]},
                {"state": "newly shadowed", "gesture": "hidden", "action": "b",
                 "notes": ["no touch reaches it any more: all of its zone goes to 'thief'"]},
                {"state": "kept", "gesture": "kept", "action": "b", "notes": []},
                {"state": "stale", "gesture": "stale", "action": "no",
                 "notes": ["action 'no' not defined: rejected, and the application would have NO gestures"]}
            ]})"));
        QCOMPARE(testing::filesBelow("."), QStringList({"new.json", "old.json", "user.json"}));
    }

    void repair()
    {
        const Run run = doctor({"--bindings", "user.json", "--write"});
        QCOMPARE(run.err, QString());
        QCOMPARE(run.out, m_table + "user.json: dropped gone, stale; the old file is kept as user.json.old\n");
        QCOMPARE(run.exitCode, 0);
        QCOMPARE(testing::readFile("user.json"), m_repaired);
        QCOMPARE(testing::readFile("user.json.old"), m_mixed);
        QCOMPARE(testing::filesBelow("."), QStringList({"new.json", "old.json", "user.json", "user.json.old"}));

        const Run again = doctor({"--bindings", "user.json", "--write"});
        QCOMPARE(again.exitCode, 0);
        QVERIFY2(again.out.endsWith("\nuser.json: nothing to repair, nothing written\n"), qPrintable(again.out));
        QCOMPARE(testing::filesBelow("."), QStringList({"new.json", "old.json", "user.json", "user.json.old"}));
    }

    void repairAsJson()
    {
        const Run run = doctor({"--bindings", "user.json", "--write", "--json"});
        QCOMPARE(run.exitCode, 0);
        const QJsonObject told = QJsonDocument::fromJson(run.out.toUtf8()).object();
        QCOMPARE(told.value("dropped").toArray(), QJsonArray({"gone", "stale"}));
        QCOMPARE(told.value("keptAs").toString(), QString("user.json.old"));
        QCOMPARE(told.value("bindings").toArray().size(), 4);
        QCOMPARE(testing::readFile("user.json"), m_repaired);
    }

    void repairOfEveryChoice()
    {
        testing::writeFile("user.json", choices(R"("gone": "a", "stale": "no")"));
        QCOMPARE(doctor({"--bindings", "user.json", "--write"}).exitCode, 0);
        QCOMPARE(testing::readFile("user.json"), QByteArray("{\n    \"actions\": {\n    },\n    \"version\": 1\n}\n"));
    }

    void choicesThatDoNotShowAreKeptAsTheyAre()
    {
        testing::writeFile("new.json",
                           configuration(tap("kept", "\"left\"", R"(, "currentAction": "c")") + ','
                                         + QByteArray(tap("stale", "\"top\"")).replace("\"b\"]", "\"a\"]")));
        testing::writeFile("user.json", choices(R"("gone": "a", "kept": "b", "stale": "b")"));
        QCOMPARE(doctor({"--bindings", "user.json", "--write"}).exitCode, 0);
        QCOMPARE(testing::json(testing::readFile("user.json")), testing::json(choices(R"("kept": "b", "stale": "b")")));
    }

    void textsAreKeptToTheLetter()
    {
        const QByteArray odd = "\\u00e4\\ud800 \\u0000\\t\\\"\\\\%1";
        testing::writeFile("new.json",
                           "{\"actions\": [{\"title\": \"A\", \"path\": \"" + odd
                                   + "\"}], \"gestures\": [{\"kind\": \"tap\", \"zone\": \"left\", \"id\": \"" + odd
                                   + "\", \"defaultAction\": \"" + odd + "\"}]}");
        const QByteArray kept = '"' + odd + "\": \"" + odd + '"';
        testing::writeFile("user.json", choices(kept + R"(, "gone": "b")"));
        const Run run = doctor({"--bindings", "user.json", "--write"});
        QCOMPARE(run.err, QString());
        QCOMPARE(run.exitCode, 0);
        QCOMPARE(testing::json(testing::readFile("user.json")), testing::json(choices(kept)));
    }

    void shadowedAloneNeedsNoRepair()
    {
        testing::writeFile("user.json", choices(R"("hidden": "b")"));
        const Run run = doctor({"--bindings", "user.json", "--write"});
        QCOMPARE(run.out,
                 QString("newly shadowed  hidden  b  no touch reaches it any more: all of its zone goes to 'thief'\n"
                         "user.json: nothing to repair, nothing written\n"));
        QCOMPARE(run.exitCode, 0);
        QCOMPARE(testing::readFile("user.json"), choices(R"("hidden": "b")"));
        QCOMPARE(testing::filesBelow("."), QStringList({"new.json", "old.json", "user.json"}));
    }

    void nothingIsKeptOverWhatIsThere()
    {
        testing::writeFile("user.json.old", "first");
        QVERIFY(QFile::link("nowhere", "user.json.old2"));
        QVERIFY(QDir().mkdir("user.json.old3"));
        const Run run = doctor({"--bindings", "user.json", "--write"});
        QVERIFY2(run.out.endsWith("the old file is kept as user.json.old4\n"), qPrintable(run.out));
        QCOMPARE(testing::readFile("user.json.old"), QByteArray("first"));
        QVERIFY(!QFileInfo::exists("nowhere"));
        QCOMPARE(testing::readFile("user.json.old4"), m_mixed);
    }

    void theCopyIsAsPrivateAsTheFile()
    {
        QCOMPARE(chmod("user.json", 0600), 0);
        QCOMPARE(doctor({"--bindings", "user.json", "--write"}).exitCode, 0);
        struct stat status = {};
        QCOMPARE(stat("user.json.old", &status), 0);
        QCOMPARE(status.st_mode & 0777, mode_t(0600));
    }

    void linkedFile()
    {
        QVERIFY(QDir().mkdir("home"));
        QVERIFY(QFile::rename("user.json", "home/real.json"));
        QVERIFY(QFile::link("home/real.json", "user.json"));
        const Run run = doctor({"--bindings", "user.json", "--write"});
        QCOMPARE(run.exitCode, 0);
        QCOMPARE(QFile::symLinkTarget("user.json"), QDir::current().filePath("home/real.json"));
        QCOMPARE(testing::readFile("home/real.json"), m_repaired);
        QVERIFY(!QFileInfo("user.json.old").isSymLink());
        QCOMPARE(testing::readFile("user.json.old"), m_mixed);
    }

    void ownFile()
    {
        testing::writeFile(m_tree->userFile("app"), m_mixed);
        const Run dry = doctor({"--app", "app"});
        QCOMPARE(dry.out, m_table);
        QCOMPARE(dry.exitCode, 1);
        QCOMPARE(testing::readFile(m_tree->userFile("app")), m_mixed);
        const Run run = doctor({"--app", "app", "--write"});
        QCOMPARE(run.out,
                 m_table
                         + QString("%1: dropped gone, stale; the old file is kept as %1.old\n")
                                   .arg(m_tree->userFile("app")));
        QCOMPARE(run.exitCode, 0);
        QCOMPARE(testing::readFile(m_tree->userFile("app")), m_repaired);
    }

    void noOwnFile()
    {
        const Run run = doctor({"--app", "app", "--write"});
        QCOMPARE(run.out,
                 QString("%1: no bindings\n%1: nothing to repair, nothing written\n").arg(m_tree->userFile("app")));
        QCOMPARE(run.exitCode, 0);
        QVERIFY(!QFileInfo::exists(m_tree->user()));
    }

    void wrongUse_data()
    {
        QTest::addColumn<QString>("arguments");
        QTest::addColumn<QString>("error");
        QTest::newRow("no old one") << "--new new.json --bindings user.json"
                                    << "--old is required";
        QTest::newRow("no new one") << "--old old.json --bindings user.json"
                                    << "--new is required";
        QTest::newRow("no choices") << "--old old.json --new new.json"
                                    << "give either --bindings or --app";
        QTest::newRow("choices twice") << "--old old.json --new new.json --bindings user.json --app app"
                                       << "give either --bindings or --app";
        QTest::newRow("a file without a name") << "--new new.json --app app --old "
                                               << "--old: the file name is empty";
        QTest::newRow("prohibited application") << "--old old.json --new new.json --app qmlplugindump"
                                                << "app 'qmlplugindump' is prohibited";
    }

    void wrongUse()
    {
        QFETCH(QString, arguments);
        QFETCH(QString, error);
        const Run run = gesturectl(QStringList("doctor") + arguments.split(' '));
        QCOMPARE(run.exitCode, 2);
        QCOMPARE(run.err, "gesturectl: " + error + '\n');
        QCOMPARE(run.out, QString());
    }

    void badFiles_data()
    {
        QTest::addColumn<QString>("file");
        QTest::addColumn<QByteArray>("text"); // "(none)", "(directory)" and "(pipe)" stand for no text
        QTest::addColumn<QString>("error");
        const auto row = [](const char *name, const char *file, const QByteArray &text, const char *error) {
            QTest::newRow(name) << file << text << error;
        };
        for (const char *file : {"old.json", "new.json", "user.json"}) {
            const auto each = [&](const char *name, const QByteArray &text, const QByteArray &error) {
                row((QByteArray(name) + ": " + file).constData(), file, text, (file + error).constData());
            };
            each("missing", "(none)", ": No such file or directory");
            each("directory", "(directory)", ": Is a directory");
            each("pipe", "(pipe)", ": Not a regular file");
            each("empty", "", ":1:1: illegal value");
            each("binary", QByteArray("\x00\x01\x02\xff", 4), ":1:1: illegal value");
            each("syntax error", "{\n  \"gestures\" []\n}", ":2:14: missing name separator");
        }
        row("an old gesture", "old.json", configuration(R"({"kind": "tap", "zone": "left"})"),
            "old.json:3:77: either 'defaultAction' or 'currentAction' fields must be set");
        row("a new gesture", "new.json", configuration(tap("t", "\"left\"") + R"(, {"kind": "poke"})"),
            "new.json:3:175: either 'zone' or 'direction' fields must be set");
        row("a new default that only the choice would cover", "new.json",
            configuration(tap("kept", "\"left\"").replace("\"defaultAction\": \"a\"", "\"defaultAction\": \"no\"")),
            "new.json:3:110: action 'no' not defined");
        row("another version", "user.json", R"({"version": 3, "actions": {}})",
            "user.json:1:13: version not match: found: 3 needed: 1");
        row("a choice of a wrong type", "user.json", R"({"version": 1, "actions": {"t": 5}})",
            "user.json:1:33: `actions` value type must be `str`");
        row("no map", "user.json", "[]", "user.json:1:1: `user.json` root bust be map<>");
    }

    void badFiles()
    {
        QFETCH(QString, file);
        QFETCH(QByteArray, text);
        QFETCH(QString, error);
        QVERIFY(QFile::remove(file));
        if (text == "(directory)")
            QVERIFY(QDir().mkdir(file));
        else if (text == "(pipe)")
            QCOMPARE(mkfifo(qPrintable(file), 0600), 0);
        else if (text != "(none)")
            testing::writeFile(file, text);
        const QStringList files = testing::filesBelow(".");
        for (const QString &option : {QString(), QString("--write"), QString("--json")}) {
            const Run run = doctor(QStringList({"--bindings", "user.json"}) + option.split(' ', Qt::SkipEmptyParts));
            QCOMPARE(run.err, "gesturectl: " + error + '\n');
            QCOMPARE(run.exitCode, 3);
            QCOMPARE(run.out, QString());
        }
        QCOMPARE(testing::filesBelow("."), files);
        if (QFileInfo(file).isFile())
            QCOMPARE(testing::readFile(file), text); // nothing was repaired or lost
    }

    void danglingLink()
    {
        QVERIFY(QFile::remove("user.json"));
        QVERIFY(QFile::link("nowhere", "user.json"));
        const Run run = doctor({"--bindings", "user.json", "--write"});
        QCOMPARE(run.err, QString("gesturectl: user.json: No such file or directory\n"));
        QCOMPARE(run.exitCode, 3);
        QVERIFY(!QFileInfo::exists("nowhere"));
    }

    void unwritableDirectory()
    {
        QCOMPARE(chmod(qPrintable(m_directory->path()), 0555), 0);
        const Run run = doctor({"--bindings", "user.json", "--write"}, true);
        QCOMPARE(chmod(qPrintable(m_directory->path()), 0755), 0);
        QCOMPARE(run.err, QString("gesturectl: user.json.old: Permission denied\n"));
        QCOMPARE(run.exitCode, 3);
        QCOMPARE(run.out, QString());
        QCOMPARE(testing::readFile("user.json"), m_mixed);
        QCOMPARE(testing::filesBelow("."), QStringList({"new.json", "old.json", "user.json"}));
    }

    void unwritableFile()
    {
        QCOMPARE(chmod(qPrintable(m_directory->path()), 0777), 0);
        QCOMPARE(chmod("user.json", 0444), 0);
        const Run run = doctor({"--bindings", "user.json", "--write"}, true);
        QCOMPARE(run.err, QString("gesturectl: can not open file: Permission denied (path: user.json)\n"));
        QCOMPARE(run.exitCode, 3);
        QCOMPARE(testing::readFile("user.json"), m_mixed);
        QCOMPARE(testing::filesBelow("."), QStringList({"new.json", "old.json", "user.json"}));
    }

    void noSpaceForTheCopy()
    {
        const Run run = repairWithin(0);
        QCOMPARE(run.err, QString("gesturectl: user.json.old: File too large\n"));
        QCOMPARE(run.exitCode, 3);
        QCOMPARE(testing::readFile("user.json"), m_mixed);
        QCOMPARE(testing::filesBelow("."), QStringList({"new.json", "old.json", "user.json"}));
    }

    // The copy fits, the indented new file does not.
    void noSpaceForTheNewFile()
    {
        const QByteArray text = manyChoices();
        const Run run = repairWithin(1);
        QCOMPARE(run.err, QString("gesturectl: can not write file: File too large (path: user.json)\n"));
        QCOMPARE(run.exitCode, 3);
        QCOMPARE(testing::readFile("user.json"), text);
        QCOMPARE(testing::filesBelow("."), QStringList({"new.json", "old.json", "user.json"}));
    }

    // If no new file may be made beside it, the old one is overwritten, provided that there is space.
    void noSpaceWhereTheFileIsOverwritten()
    {
        const QByteArray text = manyChoices();
        QVERIFY(QDir().mkdir("home"));
        QVERIFY(QFile::rename("user.json", "home/real.json"));
        QVERIFY(QFile::link("home/real.json", "user.json"));
        QCOMPARE(chmod("home/real.json", 0666), 0);
        QCOMPARE(chmod("home", 0555), 0);
        QCOMPARE(chmod(qPrintable(m_directory->path()), 0777), 0);
        const Run run = repairWithin(1, true);
        QCOMPARE(chmod("home", 0755), 0);
        QCOMPARE(run.err, QString("gesturectl: can not write file: File too large (path: user.json)\n"));
        QCOMPARE(run.exitCode, 3);
        QCOMPARE(testing::readFile("user.json"), text);
        QVERIFY(!QFileInfo::exists("user.json.old"));
    }

    void bindingAtOnceIsNotLost()
    {
        testing::writeFile("old.json", configuration(tap("kept", "\"left\"")));
        testing::writeFile(m_tree->defaultFile("app"), testing::readFile("new.json"));
        for (int round = 0; round < 10; ++round) {
            testing::writeFile(m_tree->userFile("app"), choices(R"("gone": "b", "kept": "b")"));
            QProcess bind;
            bind.start(GESTURECTL, {"bind", "--app", "app", "thief", "b"});
            const Run run = doctor({"--app", "app", "--write"});
            QVERIFY(bind.waitForFinished(testing::patience));
            QCOMPARE(run.err, QString());
            QCOMPARE(run.exitCode, 0);
            QCOMPARE(bind.exitCode(), 0);
            QCOMPARE(testing::json(testing::readFile(m_tree->userFile("app"))),
                     testing::json(choices(R"("kept": "b", "thief": "b")")));
        }
    }

private:
    // A file that grows by its indentation, with one choice to drop.
    static QByteArray manyChoices()
    {
        QByteArrayList gestures;
        QByteArray bindings = "\"gone\":\"b\"";
        for (char name = 'A'; name <= 'Z'; ++name) {
            gestures.append(tap(QByteArray(3, name), "\"left\""));
            bindings += QByteArray(",\"") + QByteArray(3, name) + "\":\"b\"";
        }
        testing::writeFile("new.json", configuration(gestures.join(',')));
        testing::writeFile("user.json", choices(bindings));
        return choices(bindings);
    }

    // No file may grow beyond this number of blocks of 512 bytes.
    static Run repairWithin(int blocks, bool isRestricted = false)
    {
        return runOf("sh",
                     {"-c", QStringLiteral("trap '' XFSZ; ulimit -f %1; exec \"$0\" \"$@\"").arg(blocks), GESTURECTL,
                      "doctor", "--old", "old.json", "--new", "new.json", "--bindings", "user.json", "--write"},
                     isRestricted);
    }

    static Run runOf(const QString &program, const QStringList &arguments, bool isRestricted)
    {
        Process process;
        process.isRestricted = isRestricted;
        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        if (program == GESTURECTL)
            environment.insert("PATH", ""); // without any speech program
        process.setProcessEnvironment(environment);
        process.start(program, arguments);
        return testing::ended(&process);
    }

    static Run gesturectl(const QStringList &arguments, bool isRestricted = false)
    {
        return runOf(GESTURECTL, arguments, isRestricted);
    }

    static Run doctor(const QStringList &arguments, bool isRestricted = false)
    {
        return gesturectl(QStringList({"doctor", "--old", "old.json", "--new", "new.json"}) + arguments, isRestricted);
    }

    const QByteArray m_mixed = choices(R"("gone": "b", "hidden": "b", "kept": "b", "stale": "no")");
    const QString m_table =
            "unknown         gone    b   the gesture no longer exists\n"
            "newly shadowed  hidden  b   no touch reaches it any more: all of its zone goes to 'thief'\n"
            "kept            kept    b   -\n"
            "stale           stale   no  action 'no' not defined: rejected, and the application would have NO "
            "gestures\n";
    const QByteArray m_repaired = "{\n    \"actions\": {\n        \"hidden\": \"b\",\n        \"kept\": \"b\"\n    "
                                  "},\n    \"version\": 1\n}\n";
};

QTEST_GUILESS_MAIN(tst_Doctor)
#include "tst_doctor.moc"
