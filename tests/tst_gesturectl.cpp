#include "tool.h"

#include <gesture_api/configuration.h>

#include <QDir>
#include <QFileInfo>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QLockFile>

#include <fcntl.h>
#include <signal.h>
#include <sys/file.h>
#include <sys/resource.h>
#include <unistd.h>

#include <memory>
#include <vector>

using testing::Run;

static const char *const configuration = R"({
    "zones": {"edge": {"x": 0, "y": 0, "w": 0.1, "h": 1}},
    "actions": [
        {"path": "page/next", "titles": ["Page", "Next"]},
        {"path": "page/previous", "titles": ["Page", "Previous"]},
        {"path": "menu", "title": "Menu"}
    ],
    "gestures": [
        {"modes": ["reading"], "kind": "tap", "zone": "left",
         "availableActions": ["page/next", "page/previous", {"path": "inline", "title": "Inline"}],
         "defaultAction": "page/previous"},
        {"kind": "tap", "zone": "right", "availableActions": ["page/next", "menu"], "defaultAction": "page/next"},
        {"id": "fixed", "kind": "hold", "zone": "edge", "availableActions": ["page/next", "menu"],
         "currentAction": "menu"},
        {"id": "other", "modes": ["menu"], "kind": "swipe", "direction": "toLeft", "defaultAction": "menu"}
    ]
})";

// The lock of an application's bindings, held while it lives.
class Lock
{
public:
    explicit Lock(const QString &bindings) : m_file(QFileInfo(bindings).path() + "/.gesturectl.lock")
    {
        QDir().mkpath(QFileInfo(bindings).path());
        isHeld = m_file.tryLock(0);
    }

    bool isHeld;

private:
    QLockFile m_file;
};

static qint64 childrensMilliseconds()
{
    rusage usage;
    getrusage(RUSAGE_CHILDREN, &usage);
    return (usage.ru_utime.tv_sec + usage.ru_stime.tv_sec) * 1000
            + (usage.ru_utime.tv_usec + usage.ru_stime.tv_usec) / 1000;
}

// The program from outside: arguments in, exit status and lines out.
class tst_GestureCtl : public testing::Tool
{
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        Tool::init();
        testing::writeFile(m_tree->defaultFile("app"), configuration);
    }

    void helpHasExamples()
    {
        const QString help = gesturectl("--help").out;
        QVERIFY(help.contains("\n\nExit status:\n  0  done\n  1  ")
                && help.endsWith("\n  $ gesturectl list --app reader\n"));
        const QStringList verbs = help.section("\nVerbs:\n", 1).section("\n\n", 0, 0).split('\n');
        QVERIFY(verbs.size() > 10);
        for (const QString &line : verbs) {
            const QString verb = line.simplified().section(' ', 0, 0);
            const QString own = gesturectl(verb + " --help").out;
            const QRegularExpression example("\n\nExamples:\n  \\$ gesturectl " + verb + "\\b.*\n$");
            QVERIFY2(own.contains(example), qPrintable(own));
        }
    }

    void exitStatus_data()
    {
        QTest::addColumn<QString>("arguments");
        QTest::addColumn<int>("status");
        QTest::addColumn<QString>("error"); // part of the one line on standard error, empty for none
        QTest::newRow("help") << "--help" << 0 << "";
        QTest::newRow("help of a verb") << "find --help" << 0 << "";
        QTest::newRow("no verb") << "" << 2 << "no verb given";
        QTest::newRow("unknown verb") << "dance" << 2 << "dance";
        QTest::newRow("misspelt verb") << "chek --config c.json" << 2 << "unknown verb 'chek', did you mean 'check'?";
        QTest::newRow("an application that is a path")
                << "reset --app ../x" << 2 << "'../x' is not a valid application name";
        QTest::newRow("an application that is a directory")
                << "list --app .." << 2 << "'..' is not a valid application name";
        QTest::newRow("no number of changes") << "watch --app app --count x" << 2 << "--count";
        QTest::newRow("unknown option") << "list --app app --loud" << 2 << "--loud";
        QTest::newRow("no application") << "list" << 2 << "--app";
        QTest::newRow("prohibited application")
                << "list --app qmlplugindump" << 2 << "app 'qmlplugindump' is prohibited";
        QTest::newRow("application without a configuration") << "list --app none" << 3 << "none/cfg.json: No such file";
        QTest::newRow("a match") << "find --app app --mode reading --kind tap --at 0.1,0.5" << 0 << "";
        QTest::newRow("no match") << "find --app app --mode reading --kind tap --at 0.5,0.5" << 1 << "";
        QTest::newRow("no match as JSON") << "find --app app --mode m --kind drag --at 0.5,0.5 --json" << 1 << "";
        QTest::newRow("a kind that is none") << "find --app app --mode m --kind poke --at 0,0" << 2 << "poke";
        QTest::newRow("a direction that is none")
                << "find --app app --mode m --kind tap --at 0,0 --direction ToLeft" << 2 << "ToLeft";
        QTest::newRow("half a position") << "find --app app --mode m --kind tap --at 0.5" << 2 << "X,Y";
        QTest::newRow("a position in pixels")
                << "find --app app --mode m --kind tap --at 300,400" << 2 << "from 0 to 1";
        QTest::newRow("a position that is no number") << "find --app app --mode m --kind tap --at nan,0" << 2 << "X,Y";
        QTest::newRow("unknown gesture") << "actions --app app none" << 2 << "application 'app' has no gesture 'none'";
        QTest::newRow("bind an unknown gesture") << "bind --app app none menu" << 2 << "no gesture 'none'";
        QTest::newRow("bind what is not offered")
                << "bind --app app TapRightNoDirection page/previous" << 2
                << "gesture 'TapRightNoDirection' does not offer the action 'page/previous'";
        QTest::newRow("bind what the next load would refuse")
                << "bind --app app ReadingTapLeftNoDirection inline" << 2 << "action 'inline' not defined";
        QTest::newRow("bind what would never show")
                << "bind --app app fixed page/next" << 2 << "'fixed' always performs 'menu'";
        QTest::newRow("a schema that is none") << "schema gestures" << 2 << "gestures";
        QTest::newRow("nothing to reset") << "reset --app app" << 0 << "";
        QTest::newRow("watch an unknown application") << "watch --app none" << 3 << "none/cfg.json: No such file";
    }

    void exitStatus()
    {
        QFETCH(QString, arguments);
        compareEnd(gesturectl(arguments));
        QVERIFY(!QFileInfo::exists(m_tree->user()));
    }

    void schema_data()
    {
        QTest::addColumn<QString>("name");
        for (const char *name : {"gesture-config", "bindings", "application-paths"})
            QTest::newRow(name) << QString(name);
    }

    void schema()
    {
        QFETCH(QString, name);
        const Run run = gesturectl("schema " + name);
        QCOMPARE(run.exitCode, 0);
        const QByteArray file = testing::readFile(SOURCE_DIR "/schemas/" + name + ".schema.json");
        QVERIFY(!file.isEmpty());
        QCOMPARE(run.out.toUtf8(), file);
    }

    void badFiles_data()
    {
        QTest::addColumn<QString>("file");
        QTest::addColumn<QByteArray>("text");
        QTest::addColumn<QString>("error");
        const auto row = [](const char *name, const char *file, const QByteArray &text, const char *error) {
            QTest::newRow(name) << file << text << error;
        };
        row("syntax error", "default", "{\n  \"gestures\" []\n}", "FILE:2:14: missing name separator");
        row("empty", "default", "", "FILE:1:1: ");
        row("binary", "default", QByteArray("\x00\x01\x02\xff", 4), "FILE:1:1: ");
        row("nested 10,000 levels", "default", QByteArray(10000, '['), "FILE:1:1025: too deeply nested document");
        row("no gestures", "default", "{}", "FILE:1:1: 'gestures' is obligatory field");
        row("a zone", "default", R"({"zones": {"z": 5}, "gestures": []})",
            "FILE:1:17: zone must be either 'str' or 'map'");
        row("an action", "default", R"({"actions": [{"path": "a", "title": "A"}, {"path": "b"}], "gestures": []})",
            "FILE:1:43: one of fields 'title' or 'titles' must be set");
        row("a group", "default", R"({"actionGroups": {"ok": [], "g": ["x"]}, "gestures": []})",
            "FILE:1:35: action 'x' not defined");
        row("a gesture", "default",
            R"({"actions": [{"path": "a", "title": "A"}], "gestures": [
                {"kind": "tap", "zone": "left", "defaultAction": "a"},
                {"kind": "tap", "zone": "right", "defaultAction": "a"}, {"kind": "tap", "zone": "top"}]})",
            "FILE:3:73: either 'defaultAction' or 'currentAction' fields must be set");
        row("one id twice", "default",
            R"({"actions": [{"path": "a", "title": "A"}], "gestures": [
                {"kind": "tap", "zone": "left", "defaultAction": "a"},
                {"kind": "tap", "zone": "left", "defaultAction": "a"}]})",
            "FILE:3:17: gesture id must be unique but dublicate found: `TapLeftNoDirection`");
        row("bindings: syntax error", "user", "{", "FILE:1:2: unterminated object");
        row("bindings: another version", "user", R"({"version": 3, "actions": {}})",
            "FILE:1:13: version not match: found: 3 needed: 1");
        row("bindings: wrong type", "user", R"({"version": 1, "actions": 5})",
            "FILE:1:27: `actions` type must be `map<str, str>`");
        row("a section of a wrong type", "default", R"({"zones": [], "gestures": [{}]})",
            "FILE:1:11: 'zones' field must be 'map'");
        row("bindings: to an action that is gone", "user",
            R"({"version": 1, "actions": {"TapRightNoDirection": "menu", "other": "gone"}})",
            "FILE:1:68: action 'gone' not defined");
        row("bindings: root", "user", "[]", "` root bust be map<>");
        row("paths: not a map", "paths", "[]", "FILE:1:1: expected map<>");
        row("paths: a field missing", "paths", R"({"current": "x"})", "FILE:1:1: field `default` must be set");
    }

    void badFiles()
    {
        QFETCH(QString, file);
        QFETCH(QByteArray, text);
        QFETCH(QString, error);
        const QString path = file == "default" ? m_tree->defaultFile("app")
                : file == "user"               ? m_tree->userFile("app")
                                               : m_tree->system("config/gestures/application_paths.json");
        testing::writeFile(path, text);
        for (const char *arguments :
             {"list --app app", "find --app app --mode m --kind tap --at 0,0", "actions --app app other",
              "bind --app app TapRightNoDirection menu", "watch --app app"}) {
            const Run run = gesturectl(arguments);
            QCOMPARE(run.exitCode, 3);
            QVERIFY2(run.err.contains(QString(error).replace("FILE", path)), qPrintable(run.err));
            QVERIFY(run.err.contains(file == "user" && text == "[]" ? QString("cfg.json") : path));
            QCOMPARE(run.err.count('\n'), 1);
            QVERIFY(run.out.isEmpty());
        }
        QCOMPARE(testing::readFile(path), text); // nothing was repaired or lost
    }

    void list()
    {
        const Run all = gesturectl("list --app app");
        QCOMPARE(all.out.split('\n', Qt::SkipEmptyParts).size(), 4);
        QVERIFY(all.out.startsWith(
                "ReadingTapLeftNoDirection  reading  tap    no      left            page/previous\n"));
        QCOMPARE(idsOf("list --app app --kind tap --json"),
                 QStringList({"ReadingTapLeftNoDirection", "TapRightNoDirection"}));
        QCOMPARE(idsOf("list --app app --kind SWIPE --json"), QStringList("other"));
        QCOMPARE(idsOf("list --app app --mode menu --json"), QStringList({"TapRightNoDirection", "fixed", "other"}));
        QCOMPARE(idsOf("list --app app --mode Menu --json"), QStringList({"TapRightNoDirection", "fixed"}));
        QCOMPARE(gesturectl("list --app app --kind drag").out, QString());
    }

    void listAsJson()
    {
        const QJsonObject gesture = json("list --app app --json").array().at(0).toObject();
        QCOMPARE(gesture,
                 QJsonDocument::fromJson(R"({
            "id": "ReadingTapLeftNoDirection", "modes": ["reading"], "kind": "tap", "direction": "no",
            "zone": {"x": 0, "y": 0.2, "w": 0.25, "h": 0.6},
            "availableActions": ["page/next", "page/previous", "inline"],
            "defaultAction": "page/previous", "currentAction": "page/previous", "supported": true
        })")
                         .object());
    }

    void find()
    {
        QCOMPARE(gesturectl("find --app app --mode reading --kind tap --at 0.1,0.5").out,
                 QString("ReadingTapLeftNoDirection page/previous\n"));
        QCOMPARE(gesturectl("find --app app --mode menu --kind swipe --direction toLeft --at 1,1").out,
                 QString("other menu\n"));
        QCOMPARE(json("find --app app --mode x --kind tap --at 0.8,0.5 --json").object(),
                 QJsonDocument::fromJson(R"({"gesture": "TapRightNoDirection", "action": "page/next"})").object());
        QCOMPARE(json("find --app app --mode x --kind tap --at 0.5,0.5 --json").object(),
                 QJsonDocument::fromJson(R"({"gesture": null, "action": null})").object());
    }

    void zones()
    {
        QCOMPARE(gesturectl("zones").out.count('\n'), 13);
        QCOMPARE(json("zones --json").object().size(), 13);
        QCOMPARE(json("zones --app app --json").object().value("edge").toObject(),
                 QJsonDocument::fromJson(R"({"x": 0, "y": 0, "w": 0.1, "h": 1})").object());
    }

    void actions()
    {
        QCOMPARE(gesturectl("actions --app app TapRightNoDirection").out,
                 QString::fromUtf8("TapRightNoDirection\n"
                                   "├─ Page\n"
                                   "│  └─ Next  page/next  [current]\n"
                                   "└─ Menu  menu\n"));
        QCOMPARE(gesturectl("actions --app app other").out, QString("other\n"));
        QCOMPARE(json("actions --app app TapRightNoDirection --json").array(),
                 QJsonDocument::fromJson(R"([
            {"segment": "page", "title": "Page", "children": [
                {"segment": "next", "title": "Next", "action": "page/next", "children": []}]},
            {"segment": "menu", "title": "Menu", "action": "menu", "children": []}
        ])")
                         .array());
    }

    void deepMenu_data()
    {
        QTest::addColumn<int>("segments");
        QTest::addColumn<QString>("format");
        QTest::addColumn<int>("status");
        for (const char *format : {"", "--json"}) {
            QTest::addRow("500 %s", format) << 500 << format << 0;
            QTest::addRow("501 %s", format) << 501 << format << 3;
            QTest::addRow("50,000 %s", format) << 50000 << format << 3;
        }
    }

    void deepMenu()
    {
        QFETCH(int, segments);
        QFETCH(QString, format);
        QFETCH(int, status);
        const QByteArray path = QByteArray("a/").repeated(segments - 1) + "a";
        testing::writeFile(m_tree->defaultFile("app"),
                           "{\"actions\": [{\"path\": \"" + path + "\", \"title\": \"A\"}], \"gestures\": ["
                                   + "{\"id\": \"g\", \"kind\": \"tap\", \"zone\": \"left\", \"availableActions\": [\""
                                   + path + "\"], \"defaultAction\": \"" + path + "\"}]}");
        const Run run = gesturectl("actions --app app g " + format);
        QCOMPARE(run.exitCode, status);
        QCOMPARE(run.err,
                 status == 0 ? QString() : QString("gesturectl: the menu of gesture 'g' has more than 500 levels\n"));
        QCOMPARE(run.out.isEmpty(), status != 0);
    }

    void bindWritesOnlyWhatWasChosen()
    {
        QCOMPARE(gesturectl("bind --app app TapRightNoDirection menu").exitCode, 0);
        QCOMPARE(bindings(), testing::jsonMap(R"({"TapRightNoDirection": "menu"})"));
        QCOMPARE(gesturectl("bind --app app ReadingTapLeftNoDirection page/next").exitCode, 0);
        QCOMPARE(bindings(),
                 testing::jsonMap(R"({"TapRightNoDirection": "menu", "ReadingTapLeftNoDirection": "page/next"})"));
        QCOMPARE(gesturectl("find --app app --mode x --kind tap --at 0.8,0.5").out,
                 QString("TapRightNoDirection menu\n"));
    }

    void bindKeepsAChoiceThatDoesNotShow()
    {
        testing::writeFile(m_tree->userFile("app"), R"({"version": 1, "actions": {"fixed": "page/next"}})");
        QCOMPARE(gesturectl("bind --app app TapRightNoDirection menu").exitCode, 0);
        QCOMPARE(bindings(), testing::jsonMap(R"({"TapRightNoDirection": "menu", "fixed": "page/next"})"));
    }

    void bindingsAtOnceAreAllKept()
    {
        std::unique_ptr<QProcess> both[2];
        for (int round = 0; round < 10; ++round) {
            gesturectl("reset --app app");
            const QStringList choices[] = {{"TapRightNoDirection", "menu"}, {"ReadingTapLeftNoDirection", "page/next"}};
            for (int i = 0; i < 2; ++i) {
                both[i].reset(new QProcess);
                both[i]->start(GESTURECTL, QStringList({"bind", "--app", "app"}) + choices[i]);
            }
            for (const auto &process : both)
                QVERIFY(process->waitForFinished(testing::patience));
            QCOMPARE(bindings().size(), 2);
        }
    }

    void lockOfAnotherEndsTheWait()
    {
        const QByteArray user = R"({"version": 1, "actions": {"gone": "menu"}})";
        testing::writeFile(m_tree->userFile("app"), user);
        const QString file = m_tree->root() + "/choices.json";
        testing::writeFile(file, R"({"version": 1, "actions": {"TapRightNoDirection": "menu"}})");
        const QString app = m_tree->defaultFile("app");
        auto lock = std::make_unique<Lock>(m_tree->userFile("app"));
        QVERIFY(lock->isHeld);
        const qint64 before = childrensMilliseconds();
        std::vector<std::unique_ptr<QProcess>> waiting;
        QElapsedTimer timer;
        timer.start();
        for (const QStringList &arguments :
             {QStringList{"bind", "--app", "app", "TapRightNoDirection", "menu"},
              QStringList{"import", "--app", "app", file},
              QStringList{"doctor", "--old", app, "--new", app, "--app", "app", "--write"}}) {
            waiting.push_back(std::make_unique<QProcess>());
            waiting.back()->start(GESTURECTL, arguments);
            QVERIFY(waiting.back()->waitForStarted(testing::patience));
        }
        for (int i = 0; i < 20; ++i) { // neither ends the wait nor restarts it
            QTest::qWait(100);
            for (const auto &process : waiting) {
                kill(pid_t(process->processId()), SIGSTOP);
                kill(pid_t(process->processId()), SIGCONT);
            }
        }
        const QString error = QString("gesturectl: %1: locked by tst_gesturectl (process %2) for 5 seconds; "
                                      "nothing was changed, try again\n")
                                      .arg(m_tree->userFile("app"))
                                      .arg(getpid());
        for (const auto &process : waiting) {
            const Run run = testing::ended(process.get());
            QCOMPARE(run.exitCode, 3);
            QCOMPARE(run.err, error);
            QCOMPARE(run.out, QString());
            QVERIFY2(timer.elapsed() >= 4000, qPrintable(QString::number(timer.elapsed())));
        }
        const qint64 used = childrensMilliseconds() - before;
        QVERIFY2(used < timer.elapsed(), qPrintable(QString::number(used))); // of three processes
        QCOMPARE(testing::readFile(m_tree->userFile("app")), user);
        lock.reset();
        QCOMPARE(testing::filesBelow(m_tree->user()), QStringList("gestures/apps/current/app/cfg.json"));
    }

    // Every user can open the configuration, so a lock of it would be no protection.
    void lockOfTheConfigurationIsNone()
    {
        QFile shipped(m_tree->defaultFile("app"));
        QVERIFY(shipped.open(QIODevice::ReadOnly));
        QCOMPARE(flock(shipped.handle(), LOCK_EX), 0);
        const Run run = gesturectl("bind --app app TapRightNoDirection menu");
        QCOMPARE(run.err, QString());
        QCOMPARE(run.exitCode, 0);
    }

    void lockOfAKilledProcessIsNone()
    {
        QProcess holder;
        holder.start(GESTURECTL, {"watch", "--app", "app"});
        QVERIFY(holder.waitForStarted(testing::patience));
        const QByteArray content =
                QByteArray::number(holder.processId()) + "\ngesturectl\n" + QSysInfo::machineHostName().toUtf8() + '\n';
        holder.kill();
        QVERIFY(holder.waitForFinished(testing::patience));
        testing::writeFile(QFileInfo(m_tree->userFile("app")).path() + "/.gesturectl.lock", content);
        QCOMPARE(gesturectl("bind --app app TapRightNoDirection menu").exitCode, 0);
        QCOMPARE(testing::filesBelow(m_tree->user()), QStringList("gestures/apps/current/app/cfg.json"));
    }

    // The reader of the output may wait for ever.
    void printsWithoutTheLock()
    {
        testing::writeFile(m_tree->userFile("app"), R"({"version": 1, "actions": {"gone": "menu"}})");
        const QString app = m_tree->defaultFile("app");
        const QString command = QString("'%1' doctor --old '%2' --new '%2' --app app --write | { sleep 600; cat; }")
                                        .arg(GESTURECTL, app);
        QProcess waiting;
        waiting.start("bash", {"-c", "trap 'kill $(jobs -p)' EXIT; " + command + " & wait"});
        const QString lockFile = QFileInfo(m_tree->userFile("app")).path() + "/.gesturectl.lock";
        QTRY_VERIFY(testing::readFile(m_tree->userFile("app")).contains("\"actions\": {\n    }")
                    && !QFileInfo::exists(lockFile));
        QCOMPARE(gesturectl("bind --app app TapRightNoDirection menu").exitCode, 0);
        waiting.terminate();
        QVERIFY(waiting.waitForFinished(testing::patience));
    }

    void lockIsWaitedFor()
    {
        auto lock = std::make_unique<Lock>(m_tree->userFile("app"));
        QVERIFY(lock->isHeld);
        QProcess binding;
        binding.start(GESTURECTL, {"bind", "--app", "app", "TapRightNoDirection", "menu"});
        QVERIFY(binding.waitForStarted(testing::patience));
        QTest::qWait(500); // long enough for some attempts, far from the last one
        QCOMPARE(binding.state(), QProcess::Running);
        QVERIFY(!QFileInfo::exists(m_tree->userFile("app")));
        lock.reset();
        const Run run = testing::ended(&binding);
        QCOMPARE(run.err, QString());
        QCOMPARE(run.exitCode, 0);
        QCOMPARE(bindings(), testing::jsonMap(R"({"TapRightNoDirection": "menu"})"));
    }

    // Processes choose their own names.
    void nameOfTheHolderIsShown()
    {
        const Lock lock(m_tree->userFile("app"));
        QVERIFY(lock.isHeld);
        const QByteArray before = testing::readFile("/proc/self/comm");
        const auto rename = [](const QByteArray &name) { testing::writeFile("/proc/self/comm", name); };
        rename("a\033[31m\nb");
        const Run run = gesturectl("bind --app app TapRightNoDirection menu");
        rename(before.trimmed());
        QCOMPARE(run.exitCode, 3);
        QCOMPARE(run.err.count('\n'), 1);
        QVERIFY(!run.err.contains('\033'));
        QVERIFY2(run.err.contains(R"(locked by a\x1b[31m\nb (process )"), qPrintable(run.err));
    }

    void fullOutput()
    {
        QProcess process;
        process.setStandardOutputFile("/dev/full");
        process.start(GESTURECTL, {"list", "--app", "app"});
        QVERIFY(process.waitForFinished(testing::patience));
        QCOMPARE(process.exitCode(), 3);
        QCOMPARE(process.readAllStandardError(), QByteArray("gesturectl: the output could not be written\n"));
    }

    void reset()
    {
        gesturectl("bind --app app TapRightNoDirection menu");
        const Run run = gesturectl("reset --app app");
        QCOMPARE(run.exitCode, 0);
        QCOMPARE(run.out, m_tree->userFile("app") + " removed\n");
        QVERIFY(!QFileInfo::exists(m_tree->userFile("app")));
        QCOMPARE(gesturectl("reset --app app").out, QString("nothing to reset\n"));
    }

    void resetOfWhatCannotBeRemoved()
    {
        QVERIFY(QDir().mkpath(m_tree->userFile("app")));
        const Run run = gesturectl("reset --app app");
        QCOMPARE(run.exitCode, 3);
        QCOMPARE(run.err, "gesturectl: " + m_tree->userFile("app") + ": could not be removed\n");
    }

    void unwritableFile()
    {
        QVERIFY(QDir().mkpath(m_tree->user()));
        testing::writeFile(m_tree->user("gestures"), "in the way");
        const Run run = gesturectl("bind --app app TapRightNoDirection menu");
        QCOMPARE(run.exitCode, 3);
        QCOMPARE(run.err, "gesturectl: can not open file: Not a directory (path: " + m_tree->userFile("app") + ")\n");
    }

    void watch_data()
    {
        QTest::addColumn<QString>("option");
        QTest::addColumn<QByteArray>("expected");
        QTest::newRow("as text") << ""
                                 << QByteArray("TapRightNoDirection: page/next -> menu\n"
                                               "TapRightNoDirection: menu -> page/next\n");
        QTest::newRow("as JSON")
                << "--json"
                << QByteArray("{\"TapRightNoDirection\":\"menu\"}\n{\"TapRightNoDirection\":\"page/next\"}\n");
    }

    void watch()
    {
        QFETCH(QString, option);
        QProcess watcher;
        watcher.start(GESTURECTL,
                      QStringList({"watch", "--app", "app", "--count", "2"}) + option.split(' ', Qt::SkipEmptyParts));
        QVERIFY(watcher.waitForStarted(testing::patience));
        QByteArray out;
        QByteArray err;
        QTRY_COMPARE(err += watcher.readAllStandardError(),
                     "gesturectl: watching " + m_tree->userFile("app").toUtf8() + '\n');
        gesturectl("bind --app app TapRightNoDirection menu");
        QTRY_COMPARE((out += watcher.readAllStandardOutput()).count('\n'), 1);
        gesturectl("reset --app app");
        QTRY_COMPARE(watcher.state(), QProcess::NotRunning);
        QCOMPARE(watcher.exitCode(), 0);
        out += watcher.readAllStandardOutput();
        QTEST(out, "expected");
        QCOMPARE(watcher.readAllStandardError(), QByteArray());
    }

private:
    static Run gesturectl(const QString &arguments)
    {
        return Tool::gesturectl(arguments.split(' ', Qt::SkipEmptyParts));
    }

    static QJsonDocument json(const QString &arguments)
    {
        QJsonParseError error;
        const QJsonDocument document = QJsonDocument::fromJson(gesturectl(arguments).out.toUtf8(), &error);
        if (error.error != QJsonParseError::NoError)
            qWarning("not JSON: %s", qPrintable(arguments));
        return document;
    }

    static QStringList idsOf(const QString &arguments)
    {
        QStringList ids;
        for (const QJsonValue &gesture : json(arguments).array())
            ids.append(gesture.toObject().value("id").toString());
        return ids;
    }

    QVariantMap bindings() const
    {
        return testing::jsonMap(testing::readFile(m_tree->userFile("app"))).value("actions").toMap();
    }
};

QTEST_GUILESS_MAIN(tst_GestureCtl)
#include "tst_gesturectl.moc"
