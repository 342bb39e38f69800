#include "tool.h"

#include <QDir>
#include <QFileInfo>

#include <sys/stat.h>

using testing::Run;

static const char *const configuration = R"({
    "actions": [{"path": "a", "title": "A"}, {"path": "b", "title": "B"}, {"path": "c", "title": "C"}],
    "gestures": [
        {"id": "fixed", "kind": "hold", "zone": "left", "currentAction": "a"},
        {"id": "one", "kind": "tap", "zone": "left", "availableActions": ["a", "b"], "defaultAction": "a"},
        {"id": "two", "kind": "tap", "zone": "right", "availableActions": ["a", "b"], "defaultAction": "a"},
        {"id": "three", "kind": "tap", "zone": "top", "availableActions": ["a", "b"], "defaultAction": "a"}
    ]
})";

// Export and import of the user's choices.
class tst_Exchange : public testing::Tool
{
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        Tool::init();
        testing::writeFile(m_tree->defaultFile("app"), configuration);
    }

    void exportOfNothing()
    {
        const Run run = gesturectl({"export", "--app", "app"});
        QCOMPARE(run.exitCode, 0);
        QCOMPARE(run.out, QString("{\n    \"actions\": {\n    },\n    \"version\": 1\n}\n"));
        QCOMPARE(run.err, QString());
        QVERIFY(!QFileInfo::exists(m_tree->user()));
    }

    void exportIsTheSavedFile()
    {
        QCOMPARE(gesturectl({"bind", "--app", "app", "two", "b"}).exitCode, 0);
        QCOMPARE(gesturectl({"bind", "--app", "app", "one", "b"}).exitCode, 0);
        const Run run = gesturectl({"export", "--app", "app"});
        QCOMPARE(run.exitCode, 0);
        QCOMPARE(run.out.toUtf8(), testing::readFile(m_tree->userFile("app")));
    }

    void exportOfWhatTheConfigurationDoesNotHave()
    {
        testing::writeFile(m_tree->userFile("app"), choices(R"("gone": "x\u0000y", "one": "no")"));
        const Run run = gesturectl({"export", "--app", "app"});
        QCOMPARE(run.exitCode, 0);
        QCOMPARE(run.out,
                 QString("{\n    \"actions\": {\n        \"gone\": \"x\\u0000y\",\n        \"one\": \"no\"\n    },\n"
                         "    \"version\": 1\n}\n"));
    }

    void exportedThenImported()
    {
        gesturectl({"bind", "--app", "app", "one", "b"});
        gesturectl({"bind", "--app", "app", "three", "b"});
        const QByteArray file = testing::readFile(m_tree->userFile("app"));
        testing::writeFile("choices.json", gesturectl({"export", "--app", "app"}).out.toUtf8());

        QCOMPARE(gesturectl({"import", "--app", "app", "choices.json"}).out, QString("no difference\n"));
        QCOMPARE(testing::readFile(m_tree->userFile("app")), file);
        gesturectl({"reset", "--app", "app"});
        const Run run = gesturectl({"import", "--app", "app", "choices.json"});
        QCOMPARE(run.out, QString("+ one: b\n+ three: b\n"));
        QCOMPARE(run.exitCode, 0);
        QCOMPARE(testing::readFile(m_tree->userFile("app")), file);
    }

    void difference_data()
    {
        QTest::addColumn<QByteArray>("current");
        QTest::addColumn<QByteArray>("offered");
        QTest::addColumn<QByteArray>("imported");
        QTest::addColumn<QString>("out");
        QTest::addColumn<QString>("err");
        const auto row = [](const char *name, const QByteArray &current, const QByteArray &offered,
                            const QByteArray &imported, const char *out, const char *err = "") {
            QTest::newRow(name) << current << offered << imported << out << err;
        };
        row("none", R"("one": "b")", R"("one": "b")", R"("one": "b")", "no difference\n");
        row("none of none", "", "", "", "no difference\n");
        row("added", R"("one": "b")", R"("one": "b", "two": "b")", R"("one": "b", "two": "b")", "+ two: b\n");
        row("removed", R"("one": "b", "two": "b")", R"("two": "b")", R"("two": "b")", "- one: b\n");
        row("changed", R"("one": "b")", R"("one": "a")", R"("one": "a")", "~ one: b -> a\n");
        row("all three, by gesture", R"("one": "b", "two": "a")", R"("three": "b", "two": "b")",
            R"("three": "b", "two": "b")", "- one: b\n+ three: b\n~ two: a -> b\n");
        row("everything removed", R"("one": "b", "two": "a")", "", "", "- one: b\n- two: a\n");
        row("of the user's, what the configuration does not have", R"("gone": "x", "one": "b")", R"("one": "b")",
            R"("one": "b")", "- gone: x\n");
        row("what the configuration does not have is left out", R"("one": "b")",
            R"("gone": "x", "nor": "a", "two": "b")", R"("two": "b")", "- one: b\n+ two: b\n",
            "gesturectl: choices.json: actions.gone: ignored, application 'app' has no such gesture\n"
            "gesturectl: choices.json: actions.nor: ignored, application 'app' has no such gesture\n");
        row("a user's stale choice is replaced", R"("one": "no")", R"("one": "b")", R"("one": "b")",
            "~ one: no -> b\n");
        row("what does not show, and what is not offered", "", R"("fixed": "b", "one": "c")",
            R"("fixed": "b", "one": "c")", "+ fixed: b\n+ one: c\n");
    }

    void difference()
    {
        QFETCH(QByteArray, current);
        QFETCH(QByteArray, imported);
        QFETCH(QByteArray, offered);
        testing::writeFile(m_tree->userFile("app"), choices(current));
        testing::writeFile("choices.json", choices(offered));

        const Run dry = gesturectl({"import", "--app", "app", "choices.json", "--dry-run"});
        QTEST(dry.out, "out");
        QTEST(dry.err, "err");
        QCOMPARE(dry.exitCode, 0);
        QCOMPARE(testing::readFile(m_tree->userFile("app")), choices(current));

        const Run run = gesturectl({"import", "--app", "app", "choices.json"});
        QTEST(run.out, "out");
        QTEST(run.err, "err");
        QCOMPARE(run.exitCode, 0);
        QCOMPARE(testing::json(testing::readFile(m_tree->userFile("app"))), testing::json(choices(imported)));
        QCOMPARE(testing::readFile("choices.json"), choices(offered));
    }

    void withoutADifferenceNothingIsWritten()
    {
        testing::writeFile(m_tree->userFile("app"), choices(R"(   "one":"b")"));
        testing::writeFile("choices.json", choices(R"("one": "b")"));
        QCOMPARE(gesturectl({"import", "--app", "app", "choices.json"}).exitCode, 0);
        QCOMPARE(testing::readFile(m_tree->userFile("app")), choices(R"(   "one":"b")"));
    }

    void dryRunMakesNoFile()
    {
        testing::writeFile("choices.json", choices(R"("one": "b")"));
        QCOMPARE(gesturectl({"import", "--app", "app", "choices.json", "--dry-run"}).out, QString("+ one: b\n"));
        QVERIFY(!QFileInfo::exists(m_tree->user()));
    }

    void linkedFile()
    {
        testing::writeFile("real.json", choices(R"("one": "b")"));
        QVERIFY(QFileInfo(m_tree->userFile("app")).dir().mkpath("."));
        QVERIFY(QFile::link(QFileInfo("real.json").absoluteFilePath(), m_tree->userFile("app")));
        testing::writeFile("choices.json", choices(R"("two": "b")"));
        QCOMPARE(gesturectl({"import", "--app", "app", "choices.json"}).out, QString("- one: b\n+ two: b\n"));
        QVERIFY(QFileInfo(m_tree->userFile("app")).isSymLink());
        QCOMPARE(testing::json(testing::readFile("real.json")), testing::json(choices(R"("two": "b")")));
    }

    void badImports_data()
    {
        QTest::addColumn<QByteArray>("text"); // "(none)", "(directory)" and "(pipe)" stand for no text
        QTest::addColumn<QString>("error");
        QTest::newRow("missing") << QByteArray("(none)") << "choices.json: No such file or directory";
        QTest::newRow("directory") << QByteArray("(directory)") << "choices.json: Is a directory";
        QTest::newRow("pipe") << QByteArray("(pipe)") << "choices.json: Not a regular file";
        QTest::newRow("empty") << QByteArray() << "choices.json:1:1: illegal value";
        QTest::newRow("binary") << QByteArray("\x00\x01\x02\xff", 4) << "choices.json:1:1: illegal value";
        QTest::newRow("no map") << QByteArray("[]") << "choices.json:1:1: `choices.json` root bust be map<>";
        QTest::newRow("another version") << QByteArray(R"({"version": 2, "actions": {}})")
                                         << "choices.json:1:13: version not match: found: 2 needed: 1";
        QTest::newRow("no actions") << QByteArray(R"({"version": 1})")
                                    << "choices.json:1:1: `actions` is obligatory field";
        QTest::newRow("a value of a wrong type")
                << choices(R"("one": 5)") << "choices.json:1:35: `actions` value type must be `str`";
        QTest::newRow("what would not load")
                << choices(R"("gone": "x", "one": "b", "two": "no")") << "choices.json:1:60: action 'no' not defined";
    }

    void badImports()
    {
        QFETCH(QByteArray, text);
        QFETCH(QString, error);
        if (text == "(directory)")
            QVERIFY(QDir().mkdir("choices.json"));
        else if (text == "(pipe)")
            QCOMPARE(mkfifo("choices.json", 0600), 0);
        else if (text != "(none)")
            testing::writeFile("choices.json", text);
        testing::writeFile(m_tree->userFile("app"), choices(R"("one": "b")"));
        for (const QString &option : {QString(), QString("--dry-run")}) {
            const Run run = gesturectl(QStringList({"import", "--app", "app", "choices.json"})
                                       + option.split(' ', Qt::SkipEmptyParts));
            QCOMPARE(run.err, "gesturectl: " + error + '\n');
            QCOMPARE(run.exitCode, 3);
            QCOMPARE(run.out, QString());
        }
        QCOMPARE(testing::readFile(m_tree->userFile("app")), choices(R"("one": "b")"));
    }

    void badOwnFile_data()
    {
        QTest::addColumn<QByteArray>("text");
        QTest::addColumn<QString>("error");
        QTest::newRow("syntax error") << QByteArray("{") << ":1:2: unterminated object";
        QTest::newRow("empty") << QByteArray() << ":1:1: illegal value";
        QTest::newRow("another version") << QByteArray(R"({"version": 3, "actions": {"one": "b"}})")
                                         << ":1:13: version not match: found: 3 needed: 1";
    }

    void badOwnFile()
    {
        QFETCH(QByteArray, text);
        QFETCH(QString, error);
        testing::writeFile(m_tree->userFile("app"), text);
        testing::writeFile("choices.json", choices(R"("gone": "b", "one": "b")"));
        const QString line = "gesturectl: " + m_tree->userFile("app") + error;

        const Run exported = gesturectl({"export", "--app", "app"});
        QCOMPARE(exported.err, line + '\n');
        QCOMPARE(exported.exitCode, 3);
        QCOMPARE(exported.out, QString());
        const Run run = gesturectl({"import", "--app", "app", "choices.json"});
        QCOMPARE(run.err, line + "; the file is unchanged: repair it, or remove it with 'gesturectl reset'\n");
        QCOMPARE(run.exitCode, 3);
        QCOMPARE(run.out, QString());
        QCOMPARE(testing::readFile(m_tree->userFile("app")), text);
    }

    void exportOfNoApplication()
    {
        const Run run = gesturectl({"export", "--app", "ap"});
        QCOMPARE(run.err, "gesturectl: " + m_tree->defaultFile("ap") + ": No such file or directory\n");
        QCOMPARE(run.exitCode, 3);
        QCOMPARE(run.out, QString());
    }

    void badConfiguration()
    {
        testing::writeFile(m_tree->defaultFile("app"), "{}");
        testing::writeFile("choices.json", choices(""));
        const Run run = gesturectl({"import", "--app", "app", "choices.json"});
        QCOMPARE(run.err, "gesturectl: " + m_tree->defaultFile("app") + ":1:1: 'gestures' is obligatory field\n");
        QCOMPARE(run.exitCode, 3);
    }

    void unwritableFile()
    {
        testing::writeFile(m_tree->user("gestures"), "in the way");
        testing::writeFile("choices.json", choices(R"("one": "b")"));
        const Run run = gesturectl({"import", "--app", "app", "choices.json"});
        QCOMPARE(run.out, QString("+ one: b\n"));
        QCOMPARE(run.err, "gesturectl: can not open file: Not a directory (path: " + m_tree->userFile("app") + ")\n");
        QCOMPARE(run.exitCode, 3);
    }

    void wrongUse_data()
    {
        QTest::addColumn<QString>("arguments");
        QTest::addColumn<QString>("error");
        QTest::newRow("export: no application") << "export"
                                                << "--app is required";
        QTest::newRow("export: prohibited application") << "export --app qmlplugindump"
                                                        << "app 'qmlplugindump' is prohibited";
        QTest::newRow("import: no application") << "import choices.json"
                                                << "--app is required";
        QTest::newRow("import: no file") << "import --app app"
                                         << "FILE is required";
        QTest::newRow("import: a file without a name") << "import --app app "
                                                       << "FILE: the file name is empty";
        QTest::newRow("import: prohibited application") << "import --app qmlplugindump choices.json"
                                                        << "app 'qmlplugindump' is prohibited";
    }

    void wrongUse()
    {
        QFETCH(QString, arguments);
        QFETCH(QString, error);
        const Run run = gesturectl(arguments.split(' '));
        QCOMPARE(run.exitCode, 2);
        QCOMPARE(run.err, "gesturectl: " + error + '\n');
        QCOMPARE(run.out, QString());
    }
};

QTEST_GUILESS_MAIN(tst_Exchange)
#include "tst_exchange.moc"
