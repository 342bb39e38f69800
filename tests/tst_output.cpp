#include "testing.h"

#include <analysis/words.h>

#include <QCoreApplication>
#include <QDir>
#include <QDirIterator>
#include <QJsonDocument>
#include <QRegularExpression>
#include <QXmlStreamReader>

#include <memory>

using testing::DataTree;
using testing::Run;

// A colour, a terminal's title, a forged line of ours, a carriage return, a control character of one byte beyond ASCII,
// the last one of ASCII, and one that reverses the text after it.
static const char *const hostileName = "\x1b[31m\x1b]0;t\x07\ngesturectl: forged\r\u009b2J\x7f\u202e.";
static const char *const harmlessName = "harmless.";

// JSON allows more: a character that ends C strings, half a character, and line ends.
static const char *const hostileText =
        R"(\u001b[31m\u001b]0;t\u0007\ngesturectl: forged\r\u009b2J\u007f\u202e\u0000\ud800\u2028.)";
static const char *const harmlessText = R"(harmless\ud800text.)"; // half a character is a finding of its own
static const char *const hostileJsonName = R"(\u001b[31m\u001b]0;t\u0007\ngesturectl: forged\r\u009b2J\u007f\u202e.)";

// TEXT stands for any text, NAME for one that can be in an argument and in the name of a file.
static const char *const configuration = R"({
    "zones": {"NAME": {"x": 0, "y": 0, "w": 1, "h": 0.75}, "TEXT": {"x": 0, "y": 0.5, "w": 1, "h": 0.5}},
    "actions": [
        {"path": "NAME", "titles": ["NAME"]},
        {"path": "page/TEXT", "titles": ["pageTEXT", "nextTEXT"]},
        {"path": "light", "title": "LightTEXT", "features": ["frontlight", "tts"]}
    ],
    "actionGroups": {"TEXT": ["NAME"]},
    "gestures": [
        {"id": "NAME", "modes": ["TEXT", "NAME"], "kind": "tap", "zone": "NAME",
         "availableActions": ["NAME", "page/TEXT"], "defaultAction": ["light", "page/TEXT"]},
        {"id": "2TEXT", "modes": ["NAME"], "kind": "tap", "zone": "TEXT", "availableActions": ["NAME"],
         "defaultAction": "page/TEXT"},
        {"id": "3TEXT", "modes": ["NAME"], "kind": "tap", "zone": "NAME", "currentAction": "page/TEXT"},
        {"id": "4TEXT", "kind": "hold", "zone": "TEXT", "availableActions": ["NAME"], "defaultAction": "NAME"}
    ]
})";

// Every byte that the program prints, for any files and arguments.
class tst_Output : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void nothingRaw_data()
    {
        QTest::addColumn<QStringList>("arguments");
        QTest::addColumn<QByteArray>("bindings"); // of the user; empty for no file
        QTest::addColumn<QByteArray>("given");    // NAME.json in the current directory
        const QByteArray bound = R"({"version": 1, "actions": {"NAME": "NAME", "3TEXT": "NAME"}})";
        const QByteArray gone = R"({"version": 1, "actions": {"NAME": "TEXT", "goneTEXT": "NAME", "4TEXT": "NAME"}})";
        const auto row = [](const char *arguments, const QByteArray &bindings = QByteArray(),
                            const QByteArray &given = QByteArray()) {
            QTest::newRow(arguments) << QString(arguments).split(' ') << bindings << given;
        };
        row("--help");
        row("--version");
        row("NAME");
        row("check NAME");
        row("list --app NAME --NAME");
        row("list --app");
        row("list --app NAME --app NAME");
        row("list --app NAME/NAME");
        row("list --app noneNAME");
        row("list --app NAME --kind NAME");
        row("list --app NAME --json=NAME");
        row("list --app NAME");
        row("list --app NAME --mode NAME", bound);
        row("list --app NAME --json", bound);
        row("find --app NAME --mode NAME --kind tap --at 0.5,0.6");
        row("find --app NAME --mode NAME --kind tap --at 0.5,0.6 --json");
        row("find --app NAME --mode NAME --kind tap --at NAME");
        row("find --app NAME --mode NAME --kind tap --at 0,0 --direction NAME");
        row("explain --app NAME --mode NAME --kind tap --at 0.5,0.6");
        row("explain --app NAME --mode NAME --kind tap --at 0.5,0.6", bound);
        row("explain --app NAME --mode noneNAME --kind tap --at 0.5,0.6");
        row("explain --app NAME --mode NAME --kind drag --at 0.5,0.9 --json");
        row("zones --app NAME");
        row("zones --app NAME --json");
        row("actions --app NAME NAME");
        row("actions --app NAME NAME --json");
        row("actions --app NAME noneNAME");
        row("map --app NAME");
        row("map --app NAME --mode NAME");
        row("map --app NAME --kind drag");
        row("map --app NAME -o NAME");
        row("map --app NAME -o noneNAME/NAME.svg");
        row("map --app NAME -o NAME.svg");
        row("bind --app NAME NAME NAME");
        row("bind --app NAME noneNAME NAME");
        row("bind --app NAME NAME noneNAME");
        row("bind --app NAME NAME NAME", gone);
        row("reset --app NAME", bound);
        row("watch --app noneNAME");
        row("watch --app NAME --count NAME");
        row("check --app NAME", bound);
        row("check --app NAME --every-device", gone);
        row("check --all-apps");
        row("check --app NAME --format json", gone);
        row("check --app NAME --format sarif", gone);
        row("check --app NAME --format NAME");
        row("check --app NAME --with NAME");
        row("check --app NAME --ignore NAME");
        row("check --config NAME.json --bindings noneNAME.json", "", configuration);
        row("doctor --old NAME.json --new NAME.json --app NAME", bound, configuration);
        row("doctor --old NAME.json --new NAME.json --app NAME", gone, configuration);
        row("doctor --old NAME.json --new NAME.json --app NAME --json", gone, configuration);
        row("doctor --old NAME.json --new NAME.json --app NAME --write", gone, configuration);
        row("doctor --old noneNAME.json --new NAME.json --app NAME", gone, configuration);
        row("export --app NAME", gone);
        row("export --app noneNAME");
        row("import --app NAME NAME.json", gone, bound);
        row("import --app NAME NAME.json --dry-run", bound, gone);
        row("import --app NAME NAME.json", "", gone);
        row("import --app NAME noneNAME.json");
        row("import --app NAME NAME.json", "", R"({"version": 1, "actions": {"goneTEXT": "NAME"}})");
        row("schema NAME");
    }

    void nothingRaw()
    {
        QFETCH(QStringList, arguments);
        QFETCH(QByteArray, bindings);
        QFETCH(QByteArray, given);
        compare(arguments, configuration, bindings, given);
    }

    void nothingRawOfBrokenFiles_data()
    {
        QTest::addColumn<QByteArray>("text");
        QTest::addColumn<QByteArray>("bindings");
        const auto row = [](const char *name, const QByteArray &text, const QByteArray &bindings = QByteArray()) {
            QTest::newRow(name) << text << bindings;
        };
        const auto gesture = [](const QByteArray &members) {
            return R"({"actions": [{"path": "a", "title": "A"}], "gestures": [{)" + members + "}]}";
        };
        row("no JSON", "{\"RAW\": RAW}");
        row("not UTF-8", "{\"\xff\xfe\x9b\": 0}");
        row("a feature", R"({"actions": [{"path": "a", "title": "A", "features": ["TEXT"]}], "gestures": []})");
        row("an action", gesture(R"("kind": "tap", "zone": "left", "defaultAction": "TEXT")"));
        row("a zone", gesture(R"("kind": "tap", "zone": "TEXT", "defaultAction": "a")"));
        row("a kind", gesture(R"("kind": "TEXT", "zone": "left", "defaultAction": "a")"));
        row("a direction", gesture(R"("kind": "swipe", "direction": "TEXT", "defaultAction": "a")"));
        row("a group", R"({"actionGroups": {"TEXT": ["TEXT"]}, "gestures": []})");
        row("one id twice",
            R"({"actions": [{"path": "a", "title": "A"}],
                "gestures": [{"id": "TEXT", "kind": "tap", "zone": "left", "defaultAction": "a"},
                             {"id": "TEXT", "kind": "tap", "zone": "left", "defaultAction": "a"}]})");
        row("bindings: no JSON", configuration, "{\"RAW\": RAW}");
        row("bindings: to nothing", configuration, R"({"version": 1, "actions": {"NAME": "noneTEXT"}})");
        row("bindings: a wrong version", configuration, R"({"version": "TEXT", "actions": {}})");
    }

    void nothingRawOfBrokenFiles()
    {
        QFETCH(QByteArray, text);
        QFETCH(QByteArray, bindings);
        for (const char *arguments : {"list --app NAME", "bind --app NAME NAME NAME", "watch --app NAME --count 1",
                                      "check --app NAME", "export --app NAME", "import --app NAME NAME.json"}) {
            compare(QString(arguments).split(' '), text, bindings, text);
            if (QTest::currentTestFailed())
                return;
        }
    }

    void nothingRawOfTheEnvironment()
    {
        const auto printed = [](const char *name) {
            QProcess process;
            QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
            environment.insert("XDG_DATA_HOME", "/none/" + QString::fromUtf8(name));
            environment.insert("XDG_DATA_DIRS", "/none/" + QString::fromUtf8(name).remove(':'));
            environment.insert("QT_QPA_PLATFORM", QString::fromUtf8(name).remove(';')); // it separates platforms
            process.setProcessEnvironment(environment);
            process.start("sh", {"-c", "ulimit -c 0; \"$0\" list --app app; \"$0\" map --app app; true", GESTURECTL});
            process.waitForFinished(testing::patience);
            return process.readAllStandardOutput() + process.readAllStandardError();
        };
        const QByteArray hostile = printed(hostileName);
        QVERIFY2(rawIn(hostile).isEmpty(), qPrintable(rawIn(hostile)));
        QCOMPARE(hostile.count('\n'), printed(harmlessName).count('\n'));
    }

    void nothingRawWhileWatching_data()
    {
        QTest::addColumn<bool>("json");
        QTest::newRow("as text") << false;
        QTest::newRow("as JSON") << true;
    }

    void nothingRawWhileWatching()
    {
        QFETCH(bool, json);
        DataTree tree;
        const QString app = QString::fromUtf8(hostileName);
        testing::writeFile(tree.defaultFile(app), filled(configuration, true));
        QProcess watcher;
        watcher.setProcessChannelMode(QProcess::MergedChannels);
        watcher.start(GESTURECTL,
                      QStringList{"watch", "--app", app, "--count", "2"}
                              + (json ? QStringList("--json") : QStringList()));
        QByteArray out;
        QTRY_VERIFY((out += watcher.readAll()).contains("watching"));
        testing::writeFile(tree.userFile(app), filled(R"({"version": 1, "actions": {"4TEXT": "page/TEXT"}})", true));
        QTRY_VERIFY((out += watcher.readAll()).contains("page/"));
        testing::writeFile(tree.userFile(app), filled(R"({"version": 1, "actions": {"4TEXT": "noneTEXT"}})", true));
        QTRY_COMPARE(watcher.state(), QProcess::NotRunning);
        out += watcher.readAll();
        QVERIFY2(rawIn(out).isEmpty(), qPrintable(rawIn(out)));
        // The library itself logs a failed load.
        int ours = 0;
        for (const QByteArray &line : out.split('\n'))
            ours += line.startsWith("gesturectl: ") || line.contains("page/");
        QCOMPARE(ours, 3);
    }

    void notUtf8()
    {
        QProcess process;
        process.start("sh",
                      {"-c",
                       "for option in --app --mode --kind; do"
                       " \"$0\" list $option \"$(printf 'a\\377\\233\\303')\"; done; true",
                       GESTURECTL});
        QVERIFY(process.waitForFinished(testing::patience));
        const QByteArray printed = process.readAllStandardOutput() + process.readAllStandardError();
        QVERIFY2(rawIn(printed).isEmpty(), qPrintable(rawIn(printed)));
        QCOMPARE(printed.count('\n'), 3);
    }

    void escapes_data()
    {
        QTest::addColumn<QByteArray>("json");
        QTest::addColumn<QString>("shown");
        const auto row = [](const char *name, const QByteArray &json, const char *shown) {
            QTest::newRow(name) << json << QString::fromUtf8(shown);
        };
        row("ends of lines and tabs", R"(a\nb\rc\td)", R"(a\nb\rc\td)");
        row("ASCII", R"(a\u0000b\u001b[1m\u007f)", R"(a\x00b\x1b[1m\x7f)");
        row("beyond ASCII", R"(\u0085\u009b\u202e\u2028\ufeff)", R"(\u0085\u009b\u202e\u2028\ufeff)");
        row("beyond 16 bits", R"(\udb40\udc41)", R"(\U000e0041)");
        row("half a character", R"(a\ud83db\udc4dc)", R"(a\ud83db\udc4dc)");
        row("no characters", R"(\uffff\ufdd0)", R"(\uffff\ufdd0)");
        row("ordinary text", "\u00e4\u7a93\U0001f44d", "\u00e4\u7a93\U0001f44d");
        row("a character of several", "\U0001f468\u200d\U0001f469", "\U0001f468\u200d\U0001f469");
        row("a joint that letters need", "\u0645\u06cc\u200c\u062e", "\u0645\u06cc\u200c\u062e");
        row("not known to Qt yet", "\U0001fae8", "\U0001fae8");
        row("a backslash", R"(a\\b\\x1b\\)", R"(a\b\x1b\)");
        row("percent", "%1%n", "%1%n");
    }

    void escapes()
    {
        QFETCH(QByteArray, json);
        QFETCH(QString, shown);
        DataTree tree;
        testing::writeFile(tree.defaultFile("app"),
                           QByteArray(configuration).replace("NAME", json).replace("TEXT", "t"));
        QCOMPARE(run({"find", "--app", "app", "--mode", "t", "--kind", "tap", "--at", "0.5,0.5"}).out,
                 QString(shown + " page/t\n").toUtf8());
    }

    void columns()
    {
        DataTree tree;
        testing::writeFile(tree.defaultFile("app"), R"({
            "actions": [{"path": "a", "title": "A"}],
            "gestures": [{"id": "\u001b\n", "kind": "tap", "zone": "left", "defaultAction": "a"},
                         {"id": "窓", "kind": "tap", "zone": "top", "defaultAction": "a"}]})");
        QCOMPARE(run({"list", "--app", "app"}).out,
                 QByteArray("\\x1b\\n  (all)  tap  no  left  a\n"
                            "窓      (all)  tap  no  top   a\n"));
    }

    // A column is escaped before it is aligned, and printed afterwards.
    void shownTwiceIsShownOnce()
    {
        const QString once = analysis::shown(QString::fromUtf8(hostileName) + QChar(0xd800) + QChar(0));
        QCOMPARE(analysis::shown(once), once);
        QCOMPARE(analysis::shown(QString()), QString());
    }

    void percent_data()
    {
        QTest::addColumn<double>("share");
        QTest::addColumn<QString>("text");
        const auto row = [](double share, const char *text) { QTest::newRow(text) << share << QString(text) + " %"; };
        row(0.0009999, "less than 0.1");
        row(0.001, "0.1");
        row(1.0 / 8, "12.5");
        row(1.0 / 3, "33.3");
        row(0.5, "50");
        row(0.9991, "more than 99.9");
        row(1 - 1e-10, "100");
    }

    void percent()
    {
        QFETCH(double, share);
        QTEST(analysis::percent(share), "text");
    }

    void errorWithoutARecord()
    {
        QCOMPARE(analysis::messageOf(vellix::Error()), QString("undefined error"));
        QCOMPARE(analysis::messageOf(vellix::Error({"file", 1}, "words")), QString("words"));
    }

    // A JSON parser reads the escaped text as the same text.
    void jsonIsExact()
    {
        DataTree tree;
        const QString app = QString::fromUtf8(hostileName);
        testing::writeFile(tree.defaultFile(app), filled(configuration, true));
        const QByteArray zones = run({"zones", "--app", app, "--json"}).out;
        QVERIFY(rawIn(zones).isEmpty());
        QVERIFY(QJsonDocument::fromJson(zones).object().contains(app));
        QVERIFY(zones.contains("\\u009b2J\\u007f\\u202e"));
        const QByteArray sarif = run({"check", "--app", app, "--format", "sarif"}).out;
        QVERIFY(!QJsonDocument::fromJson(sarif).object().isEmpty());
        testing::writeFile(tree.userFile(app), filled(R"({"version": 1, "actions": {"goneTEXT": "NAME"}})", true));
        QCOMPARE(testing::json(run({"export", "--app", app}).out),
                 testing::json(testing::readFile(tree.userFile(app))));
    }

    void drawingIsWellFormed()
    {
        DataTree tree;
        const QString app = QString::fromUtf8(hostileName);
        testing::writeFile(tree.defaultFile(app), filled(configuration, true));
        const QString picture = tree.root() + "/picture.svg";
        QCOMPARE(run({"map", "--app", app, "-o", picture}).exitCode, 0);
        const QByteArray bytes = testing::readFile(picture);
        QVERIFY(rawIn(QByteArray(bytes).replace('\t', ' ')).isEmpty());
        QXmlStreamReader xml(bytes);
        while (!xml.atEnd())
            xml.readNext();
        QVERIFY2(!xml.hasError(), qPrintable(xml.errorString()));
    }

    // Output from other places would not be made visible.
    void oneWriter()
    {
        const QRegularExpression writer(
                R"(\b(stdout|stderr|cout|cerr|clog|STDOUT_FILENO|STDERR_FILENO|q(Debug|Info|Warning|Critical|Fatal))\b)"
                R"(|\b(f?puts|f?putc|putchar|v?f?d?printf|fwrite|QTextStream)\s*\()");
        QDirIterator sources(SOURCE_DIR "/tools", {"*.cpp", "*.h"}, QDir::Files, QDirIterator::Subdirectories);
        int count = 0;
        QStringList found;
        while (sources.hasNext()) {
            const QString path = sources.next();
            ++count;
            if (path.endsWith("/gesturectl/output.cpp"))
                continue;
            const QString text = QString::fromUtf8(testing::readFile(path));
            if (const auto match = writer.match(text); match.hasMatch())
                found.append(path.section('/', -2) + ": " + match.captured());
        }
        QVERIFY(count > 30);
        QCOMPARE(found, QStringList());
    }

private:
    struct Printed
    {
        int exitCode;
        QByteArray out;
        QByteArray err;
    };

    static Printed run(const QStringList &arguments)
    {
        QProcess process;
        process.start(GESTURECTL, arguments);
        const bool hasEnded =
                process.waitForFinished(testing::patience) && process.exitStatus() == QProcess::NormalExit;
        return {hasEnded ? process.exitCode() : -1, process.readAllStandardOutput(), process.readAllStandardError()};
    }

    static QByteArray filled(QByteArray text, bool isHostile)
    {
        return text.replace("TEXT", isHostile ? hostileText : harmlessText)
                .replace("NAME", isHostile ? hostileJsonName : harmlessName)
                .replace("RAW", isHostile ? QByteArray(hostileName).replace('\n', "\x1b") : QByteArray(harmlessName));
    }

    // The code of the first character that controls a terminal; line ends do not count.
    static QString rawIn(const QByteArray &printed)
    {
        const QString text = QString::fromUtf8(printed);
        if (text.toUtf8() != printed)
            return "not UTF-8";
        for (int i = 0; i < text.size(); ++i) {
            const ushort code = text.at(i).unicode();
            const bool isRaw = (code < 0x20 && code != '\n') || (code >= 0x7f && code < 0xa0) || code == 0x2028
                    || code == 0x2029 || (code >= 0x202a && code <= 0x202e) || (code >= 0x2066 && code <= 0x2069);
            if (isRaw)
                return QString::number(code, 16) + " behind: " + text.mid(qMax(0, i - 60), qMin(i, 60));
        }
        return {};
    }

    static Printed runWith(const QStringList &arguments, const QByteArray &text, const QByteArray &bindings,
                           const QByteArray &given, bool isHostile)
    {
        DataTree tree;
        const QString name = QString::fromUtf8(isHostile ? hostileName : harmlessName);
        testing::writeFile(tree.defaultFile(name), filled(text, isHostile));
        if (!bindings.isEmpty())
            testing::writeFile(tree.userFile(name), filled(bindings, isHostile));
        QDir::setCurrent(tree.root());
        if (!given.isEmpty())
            testing::writeFile(name + ".json", filled(given, isHostile));
        const Printed printed = run(QStringList(arguments).replaceInStrings("NAME", name));
        QDir::setCurrent("/");
        return printed;
    }

    static void compare(const QStringList &arguments, const QByteArray &text, const QByteArray &bindings,
                        const QByteArray &given)
    {
        const Printed hostile = runWith(arguments, text, bindings, given, true);
        const Printed harmless = runWith(arguments, text, bindings, given, false);
        QVERIFY2(rawIn(hostile.out).isEmpty(), qPrintable(arguments.first() + " prints " + rawIn(hostile.out)));
        QVERIFY2(rawIn(hostile.err).isEmpty(), qPrintable(arguments.first() + " says " + rawIn(hostile.err)));
        QVERIFY(hostile.exitCode >= 0);
        QCOMPARE(hostile.exitCode, harmless.exitCode);
        const auto lines = [](const Printed &printed) {
            return QStringLiteral("%1+%2").arg(printed.out.count('\n')).arg(printed.err.count('\n'));
        };
        QVERIFY2(lines(hostile) == lines(harmless),
                 hostile.out + hostile.err + "\nbut\n" + harmless.out + harmless.err);
        QVERIFY(!(hostile.out + hostile.err).isEmpty() || (harmless.out + harmless.err).isEmpty());
    }
};

int main(int argc, char *argv[])
{
    qputenv("LC_ALL", "C.UTF-8"); // for the names of files
    QCoreApplication application(argc, argv);
    tst_Output test;
    return QTest::qExec(&test, argc, argv);
}
#include "tst_output.moc"
