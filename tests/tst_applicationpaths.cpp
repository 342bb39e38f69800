#include "testing.h"

#include <gesture_api/applicationpaths.h>

#include <QDir>
#include <QProcess>
#include <QScopeGuard>

#include <sys/stat.h>
#include <unistd.h>

using namespace vellix::gesture;
using testing::failure;
using testing::json;

using Paths = ApplicationPaths;
using Rules = ApplicationPathsConfiguration;
using Result = vellix::Either<vellix::Error, Rules>;

static const QString sourceFile = QStringLiteral("../../../gesture_api/src/applicationpaths");

/// The three fields, or the message of the failure.
static QString outcome(const Result &result)
{
    if (result.isLeft())
        return failure(result);
    const Rules &rules = result.right();
    return QStringList{rules.currentPath(), rules.defaultPath(), rules.fileName()}.join(QLatin1Char(' '));
}

static QString prohibition(const Rules &rules, const QString &appId)
{
    return failure(rules.appPaths(appId));
}

class tst_ApplicationPaths : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void builtInRules()
    {
        const Rules rules = Rules::newDefault();
        QCOMPARE(rules.currentPath(), QStringLiteral("${USERDATA}/gestures/apps/current"));
        QCOMPARE(rules.defaultPath(), QStringLiteral("${SYSTEMDATA}/config/gestures/apps/default"));
        QCOMPARE(rules.fileName(), QStringLiteral("cfg.json"));
        QCOMPARE(prohibition(rules, QStringLiteral("qmlplugindump")),
                 QStringLiteral("app 'qmlplugindump' is prohibited"));
    }

    void rulesHoldWhatTheyAreMadeOf()
    {
        const Rules rules(QStringLiteral("c"), QStringLiteral("d"), QStringLiteral("f"), {QStringLiteral("p")});
        Rules copy = Rules::newDefault();
        copy = rules;
        QCOMPARE(copy.currentPath(), QStringLiteral("c"));
        QCOMPARE(copy.defaultPath(), QStringLiteral("d"));
        QCOMPARE(copy.fileName(), QStringLiteral("f"));
        QCOMPARE(prohibition(copy, QStringLiteral("p")), QStringLiteral("app 'p' is prohibited"));
        QCOMPARE(prohibition(copy, QStringLiteral("qmlplugindump")), QStringLiteral("no failure"));
    }

    void pathsHoldWhatTheyAreMadeOf()
    {
        const Paths paths(QStringLiteral("app"), QStringLiteral("${USERDATA}/c"), QStringLiteral("${SYSTEMDATA}/d"));
        Paths copy({}, {}, {});
        copy = paths;
        QCOMPARE(copy.appId(), QStringLiteral("app"));
        QCOMPARE(copy.currentPath(), QStringLiteral("${USERDATA}/c"));
        QCOMPARE(copy.defaultPath(), QStringLiteral("${SYSTEMDATA}/d"));
    }

    void appPaths_data()
    {
        QTest::addColumn<QString>("appId");
        QTest::addColumn<QString>("current");
        QTest::addColumn<QString>("byDefault");
        const QString user = QStringLiteral("${USERDATA}/gestures/apps/current/");
        const QString system = QStringLiteral("${SYSTEMDATA}/config/gestures/apps/default/");
        const auto row = [&](const char *name, const QString &appId) {
            const QString file = appId + QStringLiteral("/cfg.json");
            QTest::newRow(name) << appId << user + file << system + file;
        };
        row("plain", QStringLiteral("reader"));
        row("empty: two slashes", QString());
        row("not normalised", QStringLiteral("../x//y"));
        row("a percent sign", QStringLiteral("%1"));
        row("prohibited in another case", QStringLiteral("QmlPluginDump"));
        row("prohibited and more", QStringLiteral("qmlplugindump2"));
    }

    void appPaths()
    {
        QFETCH(QString, appId);
        const auto paths = Rules::newDefault().appPaths(appId);
        VERIFY_RIGHT(paths);
        QCOMPARE(paths.right().appId(), appId);
        QTEST(paths.right().currentPath(), "current");
        QTEST(paths.right().defaultPath(), "byDefault");
    }

    void appPathsAreOnlyJoined()
    {
        const auto paths = Rules(QStringLiteral("c/"), QString(), QString(), {}).appPaths(QStringLiteral("a"));
        VERIFY_RIGHT(paths);
        QCOMPARE(paths.right().currentPath(), QStringLiteral("c//a/"));
        QCOMPARE(paths.right().defaultPath(), QStringLiteral("/a/"));
    }

    void prohibitedApps_data()
    {
        QTest::addColumn<QString>("list");
        QTest::addColumn<QString>("appId");
        QTest::addColumn<QString>("expected");
        QTest::newRow("listed") << R"(["a", "b"])"
                                << "b"
                                << "app 'b' is prohibited";
        QTest::newRow("not listed") << R"(["a", "b"])"
                                    << "c"
                                    << "no failure";
        QTest::newRow("case counts") << R"(["a"])"
                                     << "A"
                                     << "no failure";
        QTest::newRow("whole names only") << R"(["ab"])"
                                          << "a"
                                          << "no failure";
        QTest::newRow("no patterns") << R"(["*"])"
                                     << "a"
                                     << "no failure";
        QTest::newRow("a percent sign") << R"(["%1"])"
                                        << "%1"
                                        << "app '%1' is prohibited";
        QTest::newRow("number becomes text") << R"([5])"
                                             << "5"
                                             << "app '5' is prohibited";
        QTest::newRow("boolean becomes text") << R"([true])"
                                              << "true"
                                              << "app 'true' is prohibited";
        QTest::newRow("object becomes empty") << R"([{"a": 1}])"
                                              << ""
                                              << "app '' is prohibited";
        QTest::newRow("empty list") << R"([])"
                                    << "qmlplugindump"
                                    << "no failure";
    }

    void prohibitedApps()
    {
        QFETCH(QString, list);
        QFETCH(QString, appId);
        const auto rules = Rules::fromVariant(
                json(R"({"current": "c", "default": "d", "filename": "f", "prohibitedApps": )" + list.toUtf8() + '}'));
        VERIFY_RIGHT(rules);
        const auto paths = rules.right().appPaths(appId);
        QTEST(failure(paths), "expected");
        if (paths.isLeft())
            QCOMPARE(testing::failureFile(paths), sourceFile);
    }

    void fromVariant_data()
    {
        QTest::addColumn<QString>("document");
        QTest::addColumn<QString>("expected");
        const auto row = [](const char *name, const char *document, const char *expected) {
            QTest::newRow(name) << document << expected;
        };
        row("complete", R"({"current": "c", "default": "d", "filename": "f", "prohibitedApps": ["a"]})", "c d f");
        row("without prohibitedApps", R"({"current": "c", "default": "d", "filename": "f"})", "c d f");
        row("other keys", R"({"current": "c", "default": "d", "filename": "f", "x": {}, "Current": 5})", "c d f");
        row("prefixes stay", R"({"current": "${USERDATA}/c", "default": "${SYSTEMDATA}/d", "filename": "f"})",
            "${USERDATA}/c ${SYSTEMDATA}/d f");
        row("empty texts", R"({"current": "", "default": "", "filename": ""})", "  ");
        row("array", R"([{"current": "c"}])", "expected map<>");
        row("text", R"("c")", "expected map<>");
        row("null", R"(null)", "expected map<>");

        row("no key: current is told", R"({})", "field `current` must be set");
        row("current and default missing", R"({"filename": "f"})", "field `current` must be set");
        row("current missing before default's type", R"({"default": 5, "filename": "f"})",
            "field `current` must be set");
        row("current missing", R"({"default": "d", "filename": "f"})", "field `current` must be set");
        row("default and filename missing", R"({"current": "c"})", "field `default` must be set");
        row("default missing before current's type", R"({"current": 5, "filename": "f"})",
            "field `default` must be set");
        row("filename missing before current's type", R"({"current": 5, "default": "d"})",
            "field `filename` must be set");
        row("keys are case-sensitive", R"({"current": "c", "default": "d", "fileName": "f"})",
            "field `filename` must be set");

        row("current a number", R"({"current": 5, "default": "d", "filename": "f"})",
            "field `current` must have type `string`");
        row("null is there, of a wrong type", R"({"current": null, "default": "d", "filename": "f"})",
            "field `current` must have type `string`");
        row("current before default", R"({"current": [], "default": {}, "filename": "f"})",
            "field `current` must have type `string`");
        row("default before filename", R"({"current": "c", "default": true, "filename": 1})",
            "field `default` must have type `string`");
        row("filename before prohibitedApps",
            R"({"current": "c", "default": "d", "filename": 1.5, "prohibitedApps": "a"})",
            "field `filename` must have type `string`");
        row("prohibitedApps a text", R"({"current": "c", "default": "d", "filename": "f", "prohibitedApps": "a"})",
            "field 'prohibitedApps' must have type list<str>");
        row("prohibitedApps null", R"({"current": "c", "default": "d", "filename": "f", "prohibitedApps": null})",
            "field 'prohibitedApps' must have type list<str>");
        row("prohibitedApps an object", R"({"current": "c", "default": "d", "filename": "f", "prohibitedApps": {}})",
            "field 'prohibitedApps' must have type list<str>");
    }

    void fromVariant()
    {
        QFETCH(QString, document);
        const Result result = Rules::fromVariant(json(document.toUtf8()));
        QTEST(outcome(result), "expected");
        if (result.isLeft())
            QCOMPARE(testing::failureFile(result), sourceFile);
    }

    void otherVariantTypes_data()
    {
        QTest::addColumn<QVariant>("value");
        QTest::addColumn<QString>("expected");
        QVariantMap complete = testing::jsonMap(R"({"current": "c", "default": "d", "filename": "f"})");
        QVariantHash hash;
        for (auto entry = complete.cbegin(); entry != complete.cend(); ++entry)
            hash.insert(entry.key(), *entry);
        QTest::newRow("invalid") << QVariant() << "expected map<>";
        QTest::newRow("hash") << QVariant(hash) << "expected map<>";
        complete.insert(QStringLiteral("prohibitedApps"), QStringList(QStringLiteral("a")));
        QTest::newRow("string list of prohibited apps") << QVariant(complete) << "c d f";
        complete.insert(QStringLiteral("filename"), QByteArray("f"));
        QTest::newRow("byte array as text") << QVariant(complete) << "field `filename` must have type `string`";
    }

    void otherVariantTypes()
    {
        QFETCH(QVariant, value);
        const Result result = Rules::fromVariant(value);
        QTEST(outcome(result), "expected");
        if (result.isRight())
            QCOMPARE(prohibition(result.right(), QStringLiteral("a")), QStringLiteral("app 'a' is prohibited"));
    }

    void loadJson_data()
    {
        QTest::addColumn<QByteArray>("bytes");
        QTest::addColumn<QString>("expected");
        const QByteArray complete = R"({"current": "ä", "default": "d", "filename": "f"})";
        QTest::newRow("complete") << complete << "ä d f";
        QTest::newRow("UTF-8 byte order mark") << "\xef\xbb\xbf" + complete << "ä d f";
        QTest::newRow("array") << '[' + complete + ']' << "expected map<>";
        QTest::newRow("empty file") << QByteArray() << "expected map<>";
        QTest::newRow("truncated") << complete.chopped(1) << "expected map<>";
        QTest::newRow("more than one value") << complete + complete << "expected map<>";
        QTest::newRow("Latin-1") << QString::fromUtf8(complete).toLatin1() << "expected map<>";
        QTest::newRow("faults of the content") << QByteArray("{}") << "field `current` must be set";
    }

    void loadJson()
    {
        QFETCH(QByteArray, bytes);
        testing::DataTree tree;
        testing::writeFile(tree.system(QStringLiteral("config/gestures/application_paths.json")), bytes);
        const Result result = Rules::loadJson(QStringLiteral("${SYSTEMDATA}/config/gestures/application_paths.json"));
        QTEST(outcome(result), "expected");
        if (result.isLeft())
            QCOMPARE(testing::failureFile(result), sourceFile);
        QCOMPARE(outcome(Rules::loadJson(tree.system(QStringLiteral("config/gestures/application_paths.json")))),
                 outcome(result));
    }

    void fileThatCanNotBeOpened_data()
    {
        QTest::addColumn<QString>("path");
        QTest::addColumn<QString>("expected"); // %1 is the root of both data directories
        QTest::newRow("missing, in the system's directory")
                << "${SYSTEMDATA}/a.json"
                << "No such file or directory (path: %1/system/vellix/a.json)";
        QTest::newRow("missing, in the user's directory") << "${USERDATA}/a.json"
                                                          << "No such file or directory (path: %1/user/vellix/a.json)";
        QTest::newRow("only a leading prefix counts") << "%1/${USERDATA}/a.json"
                                                      << "No such file or directory (path: %1/${USERDATA}/a.json)";
        QTest::newRow("below a file") << "%1/file/a.json"
                                      << "Not a directory (path: %1/file/a.json)";
        QTest::newRow("a directory") << "%1"
                                     << "file to open is a directory (path: %1)";
        QTest::newRow("a directory that may not be read") << "%1/closed directory"
                                                          << "Permission denied (path: %1/closed directory)";
        QTest::newRow("a file that may not be read") << "%1/closed file"
                                                     << "Permission denied (path: %1/closed file)";
        QTest::newRow("a pipe") << "%1/pipe"
                                << "Not a regular file (path: %1/pipe)";
        QTest::newRow("a pipe that may not be read") << "%1/closed pipe"
                                                     << "Not a regular file (path: %1/closed pipe)";
        QTest::newRow("a link to a pipe") << "%1/link to the pipe"
                                          << "Not a regular file (path: %1/link to the pipe)";
        QTest::newRow("a dangling link") << "%1/dangling"
                                         << "No such file or directory (path: %1/dangling)";
        QTest::newRow("a circle of links") << "%1/circle"
                                           << "Too many levels of symbolic links (path: %1/circle)";
        const QString longName(300, QLatin1Char('x'));
        QTest::newRow("a name too long") << "%1/" + longName << "File name too long (path: %1/" + longName + ")";
        QTest::newRow("a device") << "/dev/zero"
                                  << "Not a regular file (path: /dev/zero)";
        QTest::newRow("no name") << ""
                                 << "No file name specified (path: )";
    }

    void fileThatCanNotBeOpened()
    {
        QFETCH(QString, path);
        QFETCH(QString, expected);
        const testing::DataTree tree;
        testing::writeFile(tree.root() + QStringLiteral("/file"), "x");
        testing::writeFile(tree.root() + QStringLiteral("/closed file"), "x");
        const QByteArray root = QFile::encodeName(tree.root());
        QCOMPARE(chmod(root + "/closed file", 0), 0);
        QCOMPARE(mkdir(root + "/closed directory", 0), 0);
        QCOMPARE(mkfifo(root + "/pipe", 0600), 0);
        QCOMPARE(mkfifo(root + "/closed pipe", 0), 0);
        QCOMPARE(symlink("pipe", root + "/link to the pipe"), 0);
        QCOMPARE(symlink("nowhere", root + "/dangling"), 0);
        QCOMPARE(symlink("circle", root + "/circle"), 0);
        QCOMPARE(chmod(root, 0755), 0);
        const uid_t self = geteuid(); // root may read everything
        const auto cleanUp = qScopeGuard([&] { (void)seteuid(self); });
        QVERIFY(self != 0 || seteuid(65534) == 0);
        const testing::LogCapture quiet;
        const Result result = Rules::loadJson(path.replace(QStringLiteral("%1"), tree.root()));
        QCOMPARE(failure(result), expected.replace(QStringLiteral("%1"), tree.root()));
        QCOMPARE(testing::failureFile(result), sourceFile);
    }

    void aFileWithoutTheListProhibitsNothing()
    {
        const testing::DataTree tree;
        testing::writeFile(tree.root() + QStringLiteral("/a.json"),
                           R"({"current": "c", "default": "d", "filename": "f"})");
        const auto rules = Rules::loadJson(tree.root() + QStringLiteral("/a.json"));
        VERIFY_RIGHT(rules);
        const auto paths = rules.right().appPaths(QStringLiteral("qmlplugindump"));
        VERIFY_RIGHT(paths);
        QCOMPARE(paths.right().currentPath(), QStringLiteral("c/qmlplugindump/f"));
        QCOMPARE(paths.right().defaultPath(), QStringLiteral("d/qmlplugindump/f"));
    }

    void currentPathExistsOnceWritten()
    {
        const testing::DataTree tree;
        const auto paths = Rules::newDefault().appPaths(QStringLiteral("reader"));
        VERIFY_RIGHT(paths);
        testing::writeFile(tree.defaultFile(QStringLiteral("reader")), "{}");
        testing::writeFile(tree.userFile(QStringLiteral("other")), "{}");
        QVERIFY(!paths.right().currentPathExists());
        testing::writeFile(tree.userFile(QStringLiteral("reader")), "");
        QVERIFY(paths.right().currentPathExists());
        QVERIFY(QFile::remove(tree.userFile(QStringLiteral("reader"))));
        QVERIFY(!paths.right().currentPathExists());
    }

    void currentPathExistsWithoutAPrefix()
    {
        const testing::DataTree tree;
        const Paths paths(QStringLiteral("a"), tree.root() + QStringLiteral("/ä.json"), QString());
        QVERIFY(!paths.currentPathExists());
        QVERIFY(!Paths({}, {}, {}).currentPathExists());
        // The name is UTF-8 on disk, whatever the locale.
        const QByteArray directory = QFile::encodeName(tree.root());
        FILE *file = fopen(directory + "/\xc3\xa4.json", "w");
        QVERIFY(file);
        fclose(file);
        QVERIFY(paths.currentPathExists());
    }

    void currentAppId()
    {
        if (qEnvironmentVariableIsSet("REMOVED_PROGRAM"))
            QVERIFY(QFile::remove(qEnvironmentVariable("REMOVED_PROGRAM")));
        QCOMPARE(Rules::currentAppId(),
                 qEnvironmentVariable("EXPECTED_APP_ID", QStringLiteral("tst_applicationpaths")));
        QCOMPARE(Rules::currentAppId(), QFileInfo(QCoreApplication::applicationFilePath()).fileName());
    }

    void currentAppIdIsNotWhatTheProgramCallsItself()
    {
        const QString before = QCoreApplication::applicationName();
        const QString id = Rules::currentAppId();
        QCoreApplication::setApplicationName(QStringLiteral("another"));
        const QString now = Rules::currentAppId();
        QCoreApplication::setApplicationName(before);
        QCOMPARE(now, id);
    }

    void currentAppIdOfAProgram_data()
    {
        QTest::addColumn<QString>("started"); // of the files below
        QTest::addColumn<QString>("removed");
        QTest::addColumn<QString>("expected");
        const QString none;
        QTest::newRow("an extension stays") << "my.reader.bin" << none << "my.reader.bin";
        QTest::newRow("a link is followed") << "link" << none << "my.reader.bin";
        QTest::newRow("a chain of links, too") << "link to the link" << none << "my.reader.bin";
        QTest::newRow("a linked directory") << "linked/my.reader.bin" << none << "my.reader.bin";
        QTest::newRow("beyond ASCII") << QString::fromUtf8("lesegerät") << none << QString::fromUtf8("lesegerät");
        QTest::newRow("a name like that of a removed program") << "my (deleted)" << none << "my (deleted)";
        QTest::newRow("removed: the name that Qt knows") << "my.reader.bin"
                                                         << "my.reader.bin"
                                                         << "my.reader.bin";
        QTest::newRow("removed, and started by a link") << "link"
                                                        << "my.reader.bin"
                                                        << "my.reader.bin";
    }

    void currentAppIdOfAProgram()
    {
        QFETCH(QString, started);
        QFETCH(QString, removed);
        QFETCH(QString, expected);
        QTemporaryDir directory;
        const QByteArray root = QFile::encodeName(directory.path());
        for (const char *name : {"my.reader.bin", "lesegerät", "my (deleted)"})
            QVERIFY(QFile::copy(QCoreApplication::applicationFilePath(), directory.filePath(QString::fromUtf8(name))));
        QCOMPARE(symlink("my.reader.bin", root + "/link"), 0);
        QCOMPARE(symlink("link", root + "/link to the link"), 0);
        QCOMPARE(symlink(".", root + "/linked"), 0);

        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        environment.insert(QStringLiteral("EXPECTED_APP_ID"), expected);
        if (!removed.isEmpty())
            environment.insert(QStringLiteral("REMOVED_PROGRAM"), directory.filePath(removed));
        QProcess process;
        process.setProcessEnvironment(environment);
        process.start(directory.filePath(started), {QStringLiteral("currentAppId")});
        QVERIFY(process.waitForFinished(testing::patience));
        QVERIFY2(process.exitStatus() == QProcess::NormalExit && process.exitCode() == 0,
                 process.readAllStandardOutput().constData());
    }
};

QTEST_GUILESS_MAIN(tst_ApplicationPaths)
#include "tst_applicationpaths.moc"
