#include "tool.h"

#include <QDir>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

#include <sys/stat.h>

using testing::Run;

static const char *const sound = R"({
    "actions": [{"path": "a", "title": "A"}, {"path": "light", "title": "L", "features": ["frontlight"]}],
    "gestures": [
        {"kind": "tap", "zone": "left", "availableActions": ["a", "light"], "defaultAction": ["light", "a"]}
    ]
})";

static const char *const warned = R"({
    "actions": [{"path": "a", "title": "A"}],
    "gestures": [
        {"kind": "tap", "zone": "whole", "defaultAction": "a"},
        {"kind": "tap", "zone": "left", "defaultAction": "a"}
    ]
})";

static const char *const lamp = R"({
    "actions": [{"path": "light", "title": "L", "features": ["frontlight"]}],
    "gestures": [{"id": "lamp", "kind": "tap", "zone": "left", "defaultAction": "light"}]
})";

// The check as the engineer runs it.
class tst_CheckVerb : public testing::Tool
{
    Q_OBJECT

private Q_SLOTS:
    void exitStatus_data()
    {
        QTest::addColumn<QString>("arguments");
        QTest::addColumn<QByteArray>("text");
        QTest::addColumn<int>("status");
        QTest::addColumn<QString>("error"); // on standard error, for usage errors
        const auto row = [](const char *name, const char *arguments, const char *text, int status,
                            const char *error = "") {
            QTest::newRow(name) << arguments << QByteArray(text) << status << error;
        };
        row("nothing found", "--app app", sound, 0);
        row("nothing found, strict", "--app app --strict", sound, 0);
        row("warnings", "--app app", warned, 0);
        row("warnings, strict", "--app app --strict", warned, 1);
        row("warnings that are ignored, strict", "--app app --strict --ignore partly-shadowed,shadowed", warned, 0);
        row("errors", "--app app", "{}", 3);
        row("errors, strict", "--app app --strict", "{}", 3);
        row("all applications", "--all-apps", sound, 0);
        row("no such application", "--app none", sound, 3);
        row("a device without", "--app app --with none --strict", lamp, 1);
        row("a device with", "--app app --with frontlight,tts --strict", lamp, 0);
        row("every device", "--app app --every-device --strict", lamp, 1);
        row("no device is asked for", "--app app --strict", lamp, 0);

        row("nothing to check", "", sound, 2, "nothing to check");
        row("an unknown feature", "--app app --with warp", sound, 2, "warp");
        row("an unknown rule", "--app app --ignore warp", sound, 2, "warp");
        row("an error to ignore", "--app app --ignore refused", sound, 2, "refused");
        row("all applications and one's bindings", "--all-apps --bindings x", sound, 2, "--bindings");
        row("an unknown format", "--app app --format xml", sound, 2, "xml");
        row("one device and every one", "--app app --with tts --every-device", sound, 2, "--every-device");
        row("one application and all", "--app app --all-apps", sound, 2, "--all-apps");
        row("an application and a file", "--app app --config x", sound, 2, "--config");
        row("a prohibited application", "--app qmlplugindump", sound, 2, "app 'qmlplugindump' is prohibited");
    }

    void exitStatus()
    {
        QFETCH(QString, arguments);
        QFETCH(QByteArray, text);
        QFETCH(QString, error);
        testing::writeFile(m_tree->defaultFile("app"), text);
        const Run run = check(arguments);
        compareEnd(run);
        QCOMPARE(run.out.isEmpty(), !error.isEmpty());
        QVERIFY(testing::filesBelow(m_tree->user()).isEmpty());
    }

    void text()
    {
        const QString file = m_tree->defaultFile("app");
        testing::writeFile(file, warned);
        QCOMPARE(check("--app app").out,
                 file
                         + ":5:33: warning: gesture 'TapLeftNoDirection' never fires: the earlier "
                           "'TapWholeNoDirection' (line 4)"
                           " takes 100 % of its zone [shadowed]\n"
                           "            {\"kind\": \"tap\", \"zone\": \"left\", \"defaultAction\": \"a\"}\n"
                           "                                    ^~~~~~\n"
                           "    hint: Move this gesture before the other, or remove one of them. The first gesture "
                           "that matches wins.\n"
                           "\n"
                           "0 errors and 1 warning in 1 file\n");
        testing::writeFile(file, sound);
        QCOMPARE(check("--app app").out, QString("0 errors and 0 warnings in 1 file\n"));
        testing::writeFile(file, lamp);
        const QString found = "warning: gesture 'lamp' has no action: 'light' needs frontlight";
        QVERIFY(check("--app app --with none").out.startsWith(file + ":3:81: " + found + " [no-action]\n"));
        QVERIFY(check("--app app --every-device")
                        .out.startsWith(file + ":3:81: " + found + " (without frontlight) [no-action]\n"));
    }

    void json()
    {
        const QString file = m_tree->root() + "/lamp.json";
        testing::writeFile(file, lamp);
        const QJsonObject report =
                QJsonDocument::fromJson(check("--format json --every-device --config " + file).out.toUtf8()).object();
        const QJsonObject finding{
                {"file", file},
                {"line", 3},
                {"column", 81},
                {"endLine", 3},
                {"endColumn", 88},
                {"severity", "warning"},
                {"rule", "no-action"},
                {"text", "gesture 'lamp' has no action: 'light' needs frontlight"},
                {"devices", "without frontlight"},
                {"hint", "Use a fallback list as \"defaultAction\", or add the features to those of the gesture."}};
        const QJsonObject expected{
                {"files", QJsonArray{file}}, {"errors", 0}, {"warnings", 1}, {"findings", QJsonArray{finding}}};
        QCOMPARE(report, expected);
    }

    // An end in another line, after a character of more than one byte.
    void jsonOfLines()
    {
        const QString file = m_tree->root() + "/lines.json";
        testing::writeFile(file, "{\"gestures\": [[\n\n\"\u7a93\"], {}]}");
        const QJsonObject report =
                QJsonDocument::fromJson(check("--format json --config " + file).out.toUtf8()).object();
        QCOMPARE(report.value("errors").toInt(), 4);
        QCOMPARE(report.value("warnings").toInt(), 0);
        const QJsonObject first = report.value("findings").toArray().first().toObject();
        QCOMPARE(first.value("line").toInt(), 1);
        QCOMPARE(first.value("column").toInt(), 15);
        QCOMPARE(first.value("endLine").toInt(), 3);
        QCOMPARE(first.value("endColumn").toInt(), 5);
        QCOMPARE(first.value("severity").toString(), QString("error"));
    }

    void sarif()
    {
        const QString file = m_tree->root() + "/a b%.json";
        testing::writeFile(file, "{\n  \"gestures\": 5}");
        const Run run = check({"--format", "sarif", "--config", file});
        QCOMPARE(run.exitCode, 3);
        const QJsonObject log = QJsonDocument::fromJson(run.out.toUtf8()).object();
        QCOMPARE(log.value("version").toString(), QString("2.1.0"));
        QCOMPARE(log.value("runs").toArray().size(), 1);
        const QJsonObject only = log.value("runs").toArray().first().toObject();
        QCOMPARE(only.value("columnKind").toString(), QString("unicodeCodePoints"));
        const QJsonObject driver = only.value("tool").toObject().value("driver").toObject();
        QCOMPARE(driver.value("name").toString(), QString("gesturectl"));
        const QJsonArray rules = driver.value("rules").toArray();
        QStringList ids;
        QStringList levels;
        for (const QJsonValue &rule : rules) {
            ids.append(rule.toObject().value("id").toString());
            QVERIFY(!rule.toObject().value("shortDescription").toObject().value("text").toString().isEmpty());
            QVERIFY(!rule.toObject().value("help").toObject().value("text").toString().isEmpty());
            levels.append(rule.toObject().value("defaultConfiguration").toObject().value("level").toString());
        }
        QCOMPARE(ids.removeDuplicates(), 0);
        QCOMPARE(levels.at(ids.indexOf("refused")), QString("error"));
        QCOMPARE(levels.at(ids.indexOf("shadowed")), QString("warning"));
        QCOMPARE(only.value("results").toArray().size(), 1);
        const QJsonObject result = only.value("results").toArray().first().toObject();
        QCOMPARE(result.value("ruleId").toString(), QString("refused"));
        QCOMPARE(ids.at(result.value("ruleIndex").toInt()), QString("refused"));
        QCOMPARE(result.value("level").toString(), QString("error"));
        QCOMPARE(result.value("message").toObject().value("text").toString(),
                 QString("'gestures' field must be 'list'\nA single error of this kind makes the library reject the "
                         "whole file."));
        const QJsonObject place =
                result.value("locations").toArray().first().toObject().value("physicalLocation").toObject();
        QCOMPARE(QUrl(place.value("artifactLocation").toObject().value("uri").toString()).toLocalFile(), file);
        QCOMPARE(place.value("region").toObject(),
                 (QJsonObject{{"startLine", 2}, {"startColumn", 15}, {"endLine", 2}, {"endColumn", 16}}));
    }

    void sarifOfDevices()
    {
        const QString file = m_tree->root() + "/lamp.json";
        testing::writeFile(file, "{\"zones\":\n{\"left\":\n\"whole\"},\n" + QByteArray(lamp).mid(1));
        const Run run = check({"--format", "sarif", "--every-device", "--config", file});
        const QJsonObject only =
                QJsonDocument::fromJson(run.out.toUtf8()).object().value("runs").toArray().first().toObject();
        const QJsonArray results = only.value("results").toArray();
        QCOMPARE(results.size(), 2);
        QCOMPARE(results.at(0).toObject().value("level").toString(), QString("warning"));
        QCOMPARE(results.at(1).toObject().value("message").toObject().value("text").toString(),
                 QString("gesture 'lamp' has no action: 'light' needs frontlight (without frontlight)\n"
                         "Use a fallback list as \"defaultAction\", or add the features to those of the gesture."));
    }

    // The user's own bindings belong to an application; others are named.
    void bindings()
    {
        testing::writeFile(m_tree->defaultFile("app"), sound);
        testing::writeFile(m_tree->userFile("app"), R"({"version": 1, "actions": {"TapLeftNoDirection": "gone"}})");
        const QString other = m_tree->root() + "/other.json";
        testing::writeFile(other, R"({"version": 1, "actions": {"nobody": "a"}})");
        const QString gone = m_tree->userFile("app") + ":1:50: error: action 'gone' not defined [undefined-binding]";
        const QString nobody = other + ":1:28: warning: unknown gesture 'nobody' [unknown-gesture]";

        for (const char *own : {"--app app", "--all-apps"}) {
            const Run run = check(own);
            QCOMPARE(run.exitCode, 3);
            QVERIFY2(run.out.contains(gone), qPrintable(run.out));
        }
        for (const QString &arguments :
             {"--app app --bindings " + other, "--config " + m_tree->defaultFile("app") + " --bindings " + other}) {
            const Run run = check(arguments);
            QCOMPARE(run.exitCode, 0);
            QVERIFY2(run.out.contains(nobody), qPrintable(run.out));
            QVERIFY(!run.out.contains("gone"));
        }
        // Bindings alone: no gesture is known.
        QCOMPARE(check("--bindings " + other).out, QString("0 errors and 0 warnings in 1 file\n"));
        QCOMPARE(check("--config " + m_tree->defaultFile("app")).out, QString("0 errors and 0 warnings in 1 file\n"));
    }

    void paths()
    {
        const QString elsewhere = m_tree->root() + "/elsewhere";
        testing::writeFile(elsewhere + "/default/one/gestures.json", sound);
        testing::writeFile(elsewhere + "/default/two/gestures.json", warned);
        testing::writeFile(elsewhere + "/default/three/other.json", "not one of them");
        testing::writeFile(elsewhere + "/default/four/gestures.json", "nobody loads it");
        testing::writeFile(elsewhere + "/user/one/gestures.json", R"({"version": 1, "actions": {}})");
        const QString file = m_tree->root() + "/paths.json";
        testing::writeFile(file,
                           "{\"current\": \"" + elsewhere.toUtf8() + "/user\", \"default\": \"" + elsewhere.toUtf8()
                                   + "/default\", \"filename\": \"gestures.json\", \"prohibitedApps\": [\"four\"]}");
        const Run all = check("--strict --all-apps --format json --paths " + file);
        QCOMPARE(all.exitCode, 1);
        const QJsonArray files = QJsonDocument::fromJson(all.out.toUtf8()).object().value("files").toArray();
        QCOMPARE(files,
                 (QJsonArray{file, elsewhere + "/default/one/gestures.json", elsewhere + "/user/one/gestures.json",
                             elsewhere + "/default/two/gestures.json"}));
        QCOMPARE(check("--paths " + file).out, QString("0 errors and 0 warnings in 1 file\n"));
        QCOMPARE(check("--app two --strict --paths " + file).exitCode, 1);
        QCOMPARE(check("--app four --paths " + file).exitCode, 2);

        // The system's own file is read and checked if it exists.
        testing::writeFile(m_tree->system("config/gestures/application_paths.json"), "[]");
        testing::writeFile(m_tree->defaultFile("app"), sound);
        const Run own = check("--app app");
        QCOMPARE(own.exitCode, 3);
        QVERIFY2(own.out.contains(":1:1: error: expected map<> [refused]"), qPrintable(own.out));
        QVERIFY(own.out.endsWith("1 error and 0 warnings in 2 files\n"));
    }

    void noApplications()
    {
        const Run run = check("--all-apps");
        QCOMPARE(run.exitCode, 3);
        QVERIFY2(run.err.contains("no application has a configuration here"), qPrintable(run.err));
    }

    // Anything in its place is reported, and nothing hangs or crashes.
    void badFiles_data()
    {
        QTest::addColumn<QString>("file");
        QTest::addColumn<QString>("expected");
        QTest::newRow("missing") << "none"
                                 << ":1:1: error: No such file or directory [unreadable]";
        QTest::newRow("a directory") << "directory"
                                     << ":1:1: error: Is a directory [unreadable]";
        QTest::newRow("a pipe") << "pipe"
                                << ":1:1: error: Not a regular file [unreadable]";
        QTest::newRow("empty") << "empty"
                               << ":1:1: error: illegal value [syntax]";
        QTest::newRow("binary") << "binary"
                                << ":1:1: error: illegal value [syntax]";
        QTest::newRow("10 MB of brackets") << "brackets"
                                           << ":1:1025: error: too deeply nested document [syntax]";
        QTest::newRow("10 MB of objects") << "objects"
                                          << "error: too deeply nested document [syntax]";
        QTest::newRow("10 MB of a string") << "string"
                                           << ":1:2: error: unterminated string [syntax]";
    }

    void badFiles()
    {
        QFETCH(QString, file);
        QFETCH(QString, expected);
        const QString path = m_tree->root() + '/' + file;
        const int size = 10'000'000;
        if (file == "directory")
            QVERIFY(QDir().mkpath(path));
        else if (file == "pipe")
            QCOMPARE(mkfifo(qPrintable(path), 0600), 0);
        else if (file == "empty")
            testing::writeFile(path, "");
        else if (file == "binary")
            testing::writeFile(path, testing::readFile(GESTURECTL).left(100'000));
        else if (file == "brackets")
            testing::writeFile(path, QByteArray(size, '['));
        else if (file == "objects")
            testing::writeFile(path, QByteArray("{\"a\":").repeated(size / 5));
        else if (file == "string")
            testing::writeFile(path, "[\"" + QByteArray(size, 'x'));
        const QString sample = m_tree->root() + "/sound.json";
        testing::writeFile(sample, sound);

        for (const QStringList &arguments :
             {QStringList{"--config", path}, QStringList{"--bindings", path},
              QStringList{"--config", sample, "--bindings", path}, QStringList{"--paths", path},
              QStringList{"--config", path, "--every-device"}}) {
            const Run run = check(arguments);
            QCOMPARE(run.exitCode, 3);
            QVERIFY2(run.out.startsWith(path + ':') && run.out.contains(expected), qPrintable(run.out.left(1000)));
            QVERIFY(run.out.size() < 1000);
            QCOMPARE(run.err, QString());
        }
    }

private:
    // The directory of the files may have blanks in its name.
    Run check(QString arguments) const
    {
        const QString words = arguments.replace(m_tree->root(), "ROOT");
        return check(words.split(' ', Qt::SkipEmptyParts).replaceInStrings("ROOT", m_tree->root()));
    }
    static Run check(const QStringList &arguments) { return gesturectl(QStringList{"check"} + arguments); }
};

QTEST_GUILESS_MAIN(tst_CheckVerb)
#include "tst_checkverb.moc"
