#include "testing.h"

#include <vellix/platform/baseutil.h>

#include <QDir>
#include <QFileInfo>
#include <QScopeGuard>

#include <locale.h>
#include <pwd.h>
#include <sched.h>
#include <sys/mount.h>
#include <sys/stat.h>
#include <unistd.h>

using namespace vellix;

class tst_BaseUtil : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        m_directory.reset(new QTemporaryDir);
        qputenv("HOME", QFile::encodeName(m_directory->filePath(QStringLiteral("home"))));
        qunsetenv("XDG_DATA_HOME");
        qunsetenv("XDG_DATA_DIRS");
    }

    void resolvePreffix_data()
    {
        QTest::addColumn<QString>("dataHome");
        QTest::addColumn<QString>("dataDirs");
        QTest::addColumn<QString>("path");
        QTest::addColumn<QString>("expected");
        const QString user = QStringLiteral("${USERDATA}/a/b");
        const QString system = QStringLiteral("${SYSTEMDATA}/a");
        QTest::newRow("user data") << "@/xdg"
                                   << "" << user << "@/xdg/vellix/a/b";
        QTest::newRow("user data below the home directory") << ""
                                                            << "" << user << "@/home/.local/share/vellix/a/b";
        QTest::newRow("system data: the first directory that has ours")
                << ""
                << "@/none:@/has:@/has-too" << system << "@/has/vellix/a";
        QTest::newRow("system data: a file of our name is no directory")
                << ""
                << "@/file:@/has" << system << "@/has/vellix/a";
        QTest::newRow("system data: else the first named") << ""
                                                           << "@/none:@/neither" << system << "@/none/vellix/a";
        QTest::newRow("system data: an empty entry counts for nothing") << ""
                                                                        << ":@/none" << system << "@/none/vellix/a";
        QTest::newRow("the prefix alone") << "@/xdg"
                                          << ""
                                          << "${USERDATA}"
                                          << "@/xdg/vellix";
        QTest::newRow("only a leading prefix counts") << "@/xdg"
                                                      << ""
                                                      << "/x/${USERDATA}/a"
                                                      << "/x/${USERDATA}/a";
        QTest::newRow("no prefix") << "@/xdg"
                                   << ""
                                   << "relative/path"
                                   << "relative/path";
        QTest::newRow("another prefix") << "@/xdg"
                                        << ""
                                        << "${OTHER}/a"
                                        << "${OTHER}/a";
        QTest::newRow("no path") << "@/xdg"
                                 << ""
                                 << ""
                                 << "";
        QTest::newRow("a relative data home counts as unset") << "xdg"
                                                              << "" << user << "@/home/.local/share/vellix/a/b";
        QTest::newRow("a data home relative to the parent, too") << "../xdg"
                                                                 << "" << user << "@/home/.local/share/vellix/a/b";
        QTest::newRow("system data: a relative entry counts for nothing")
                << ""
                << "none:./none:@/none" << system << "@/none/vellix/a";
        QTest::newRow("up and down again below the root") << "@/xdg"
                                                          << ""
                                                          << "${USERDATA}/a/../b"
                                                          << "@/xdg/vellix/a/../b";
        QTest::newRow("up to the root itself") << "@/xdg"
                                               << ""
                                               << "${USERDATA}/a/./b//../.."
                                               << "@/xdg/vellix/a/./b//../..";
        QTest::newRow("points are names, too") << "@/xdg"
                                               << ""
                                               << "${USERDATA}/.../..a/a.."
                                               << "@/xdg/vellix/.../..a/a..";
        QTest::newRow("a path without a prefix leads anywhere") << "@/xdg"
                                                                << ""
                                                                << "/a/../../b"
                                                                << "/a/../../b";
        QTest::newRow("beyond ASCII") << "@/ü"
                                      << "" << QString::fromUtf8("${USERDATA}/ä") << QString::fromUtf8("@/ü/vellix/ä");
    }

    void resolvePreffix()
    {
        QDir(m_directory->path()).mkpath(QStringLiteral("has/vellix"));
        QDir(m_directory->path()).mkpath(QStringLiteral("has-too/vellix"));
        testing::writeFile(m_directory->filePath(QStringLiteral("file/vellix")), "x");
        const auto place = [this](QString text) { return text.replace(QLatin1Char('@'), m_directory->path()); };
        QFETCH(QString, dataHome);
        QFETCH(QString, dataDirs);
        QFETCH(QString, path);
        QFETCH(QString, expected);
        qputenv("XDG_DATA_HOME", place(dataHome).toUtf8());
        qputenv("XDG_DATA_DIRS", place(dataDirs).toUtf8());
        QCOMPARE(QString::fromStdString(PathResolver::newDefault().resolvePreffix(path.toStdString())),
                 place(expected));
    }

    // The path is below the root, and nothing can ever exist there or beside it.
    void pathThatLeadsOutOfItsRoot_data()
    {
        QTest::addColumn<QString>("path");
        QTest::newRow("the parent") << "${USERDATA}/..";
        QTest::newRow("a file beside") << "${USERDATA}/../file";
        QTest::newRow("down and further up") << "${USERDATA}/a/b/../../../file";
        QTest::newRow("a slash more is no directory") << "${USERDATA}//../file";
        QTest::newRow("a point is no directory") << "${USERDATA}/./../file";
        QTest::newRow("out and in again") << "${USERDATA}/../vellix/file";
        QTest::newRow("a directory whose name begins like the root") << "${USERDATA}-beside/file";
        QTest::newRow("the system's") << "${SYSTEMDATA}/a/../../file";
    }

    void pathThatLeadsOutOfItsRoot()
    {
        QFETCH(QString, path);
        const QString root = m_directory->filePath(QStringLiteral("root/vellix"));
        qputenv("XDG_DATA_HOME", QFile::encodeName(m_directory->filePath(QStringLiteral("root"))));
        qputenv("XDG_DATA_DIRS", QFile::encodeName(m_directory->filePath(QStringLiteral("root"))));
        testing::writeFile(root + QStringLiteral("/file"), "inside");
        testing::writeFile(root + QStringLiteral("/a/b/file"), "inside");
        testing::writeFile(root + QStringLiteral("-beside/file"), "beside");
        testing::writeFile(m_directory->filePath(QStringLiteral("root/file")), "outside");
        const QStringList before = testing::filesBelow(m_directory->path());

        const PathResolver resolver = PathResolver::newDefault();
        const QString resolved = QString::fromStdString(resolver.resolvePreffix(path.toStdString()));
        QVERIFY2(QDir::cleanPath(resolved).startsWith(root + QLatin1Char('/')), qPrintable(resolved));
        QVERIFY(!QFileInfo::exists(QFileInfo(resolved).path()));
        QVERIFY(!QDir().mkpath(QFileInfo(resolved).path()));
        QVERIFY(!resolver.exists(path.toStdString()));
        QVERIFY(!resolver.remove(path.toStdString()));
        QCOMPARE(testing::filesBelow(m_directory->path()), before);
    }

    void linkThatLeadsOutOfItsRootIsFollowed()
    {
        qputenv("XDG_DATA_HOME", QFile::encodeName(m_directory->path()));
        testing::writeFile(m_directory->filePath(QStringLiteral("elsewhere/file")), "x");
        QVERIFY(QDir(m_directory->path()).mkpath(QStringLiteral("vellix")));
        QVERIFY(QFile::link(m_directory->filePath(QStringLiteral("elsewhere")),
                            m_directory->filePath(QStringLiteral("vellix/link"))));
        QVERIFY(PathResolver::newDefault().exists("${USERDATA}/link/file"));
    }

    void systemDataWithoutAnyVariable()
    {
        const std::string path = PathResolver::newDefault().resolvePreffix("${SYSTEMDATA}");
        QVERIFY(path == "/usr/local/share/vellix" || path == "/usr/share/vellix");
    }

    void withoutAVariableTheHomeIsTheUsers_data()
    {
        QTest::addColumn<QByteArray>("home");
        QTest::newRow("unset") << QByteArray();
        QTest::newRow("empty") << QByteArray("");
        QTest::newRow("relative") << QByteArray("home");
    }

    void withoutAVariableTheHomeIsTheUsers()
    {
        QFETCH(QByteArray, home);
        qputenv("HOME", home);
        if (home.isNull())
            qunsetenv("HOME");
        const passwd *user = getpwuid(getuid());
        QVERIFY(user);
        QCOMPARE(PathResolver::newDefault().resolvePreffix("${USERDATA}"),
                 user->pw_dir + std::string("/.local/share/vellix"));
    }

    // There is also no home directory.
    void userThatTheSystemDoesNotKnow()
    {
        if (geteuid() != 0)
            QSKIP("only root can become somebody else");
        qunsetenv("HOME");
        QCOMPARE(testing::inChild([] {
                     const uid_t nobody = 1999999999;
                     if (getpwuid(nobody) || setuid(nobody) != 0)
                         return 99;
                     const QString path =
                             QString::fromStdString(PathResolver::newDefault().resolvePreffix("${USERDATA}"));
                     return QDir::cleanPath(path) == QLatin1String("/.local/share/vellix") ? 0 : 1;
                 }),
                 0);
    }

    void systemDataOfTheUsualDirectories_data()
    {
        QTest::addColumn<QByteArrayList>("existing");
        QTest::addColumn<QByteArray>("expected");
        QTest::newRow("neither") << QByteArrayList() << QByteArray("/usr/local/share/vellix");
        QTest::newRow("the second") << QByteArrayList{"/usr/share/vellix"} << QByteArray("/usr/share/vellix");
        QTest::newRow("both") << QByteArrayList{"/usr/local/share/vellix", "/usr/share/vellix"}
                              << QByteArray("/usr/local/share/vellix");
    }

    void systemDataOfTheUsualDirectories()
    {
        if (geteuid() != 0)
            QSKIP("only root can mount something in their place");
        QFETCH(QByteArrayList, existing);
        QFETCH(QByteArray, expected);
        const int result = testing::inChild([&] {
            if (unshare(CLONE_NEWNS) != 0 || mount(nullptr, "/", nullptr, MS_REC | MS_PRIVATE, nullptr) != 0)
                return 98;
            for (const char *share : {"/usr/local/share", "/usr/share"}) {
                if (mount("none", share, "tmpfs", 0, nullptr) != 0)
                    return 98;
            }
            for (const QByteArray &directory : existing) {
                if (mkdir(directory, 0755) != 0)
                    return 99;
            }
            return PathResolver::newDefault().resolvePreffix("${SYSTEMDATA}") == expected.toStdString() ? 0 : 1;
        });
        if (result == 98)
            QSKIP("a file system can not be mounted here");
        QCOMPARE(result, 0);
    }

    void directoriesOfNothingCountAsUnset()
    {
        qputenv("XDG_DATA_DIRS", ":");
        const std::string path = PathResolver::newDefault().resolvePreffix("${SYSTEMDATA}");
        QVERIFY(path == "/usr/local/share/vellix" || path == "/usr/share/vellix");
    }

    void environmentIsReadAfresh()
    {
        qputenv("XDG_DATA_HOME", "/one");
        const PathResolver one = PathResolver::newDefault();
        qputenv("XDG_DATA_HOME", "/two");
        QCOMPARE(one.resolvePreffix("${USERDATA}"), std::string("/one/vellix"));
        QCOMPARE(PathResolver::newDefault().resolvePreffix("${USERDATA}"), std::string("/two/vellix"));
    }

    void existsAndRemove()
    {
        qputenv("XDG_DATA_HOME", m_directory->path().toUtf8());
        const PathResolver resolver = PathResolver::newDefault();
        QVERIFY(!resolver.exists("${USERDATA}/file"));
        QVERIFY(!resolver.remove("${USERDATA}/file"));
        testing::writeFile(m_directory->filePath(QStringLiteral("vellix/file")), "x");
        QVERIFY(resolver.exists("${USERDATA}/file"));
        QVERIFY(resolver.remove("${USERDATA}/file"));
        QVERIFY(!resolver.exists("${USERDATA}/file"));
        QVERIFY(!resolver.remove("${USERDATA}")); // a directory stays
        QVERIFY(resolver.exists("${USERDATA}"));
    }

    void errorEndsNoProcessUnlessItIsTold() { QVERIFY(!EitherPrivate::shouldExitOnError()); }

    void errorWithoutAMessage()
    {
        const Error error({"file", 7}, static_cast<const char *>(nullptr));
        QCOMPARE(error.records.size(), std::size_t(1));
        QCOMPARE(error.records.front().message, std::string());
    }

    void locationText() { QCOMPARE(CodeLocation::toString("dir/file", 7), std::string("dir/file:7")); }

    void colour_data()
    {
        QTest::addColumn<int>("colour");
        QTest::addColumn<QString>("expected");
        QTest::newRow("green") << 0x00FF00 << "\033[38;2;0;255;0m";
        QTest::newRow("red") << 0xFF0000 << "\033[38;2;255;0;0m";
        QTest::newRow("mixed") << 0x102030 << "\033[38;2;16;32;48m";
    }

    void colour()
    {
        QFETCH(int, colour);
        QTEST(QString::fromStdString(ansicolor::beginSeq(38, 2, colour, 1)), "expected");
    }

    void noColourUnlessEnabled() { QCOMPARE(ansicolor::beginSeq(38, 2, 0x00FF00, 0), std::string()); }

    void align_data()
    {
        QTest::addColumn<QStringList>("lines");
        QTest::addColumn<QStringList>("expected");
        QTest::newRow("none") << QStringList() << QStringList();
        QTest::newRow("to the widest") << QStringList{"a", "abc", ""} << QStringList{"a  ", "abc", "   "};
        QTest::newRow("bytes are not columns")
                << QStringList{QString::fromUtf8("äöü"), "abcd"} << QStringList{QString::fromUtf8("äöü "), "abcd"};
        QTest::newRow("wide characters take two")
                << QStringList{QString::fromUtf8("漢字"), "abcde"} << QStringList{QString::fromUtf8("漢字 "), "abcde"};
        QTest::newRow("combining characters take none")
                << QStringList{QString::fromUtf8("e\u0301"), "ab"} << QStringList{QString::fromUtf8("e\u0301 "), "ab"};
        QTest::newRow("control characters take none")
                << QStringList{"a\tb\x1b", "abc"} << QStringList{"a\tb\x1b ", "abc"};
        QTest::newRow("beyond the first plane")
                << QStringList{QString::fromUtf8("😀"), "abc"} << QStringList{QString::fromUtf8("😀 "), "abc"};
    }

    void align()
    {
        QFETCH(QStringList, lines);
        std::vector<std::string> bytes;
        for (const QString &line : lines)
            bytes.push_back(line.toStdString());
        QStringList aligned;
        for (const std::string &line : Utf8::alignLeftByWhitespace(bytes))
            aligned.append(QString::fromStdString(line));
        QTEST(aligned, "expected");
    }

    // The locale of this thread, which its character functions use.
    void alignKeepsTheLocale()
    {
        const locale_t before = uselocale(nullptr);
        const locale_t own = newlocale(LC_ALL_MASK, "C", nullptr);
        const auto cleanUp = qScopeGuard([&] {
            uselocale(before);
            freelocale(own);
        });
        for (const locale_t locale : {before, own}) {
            uselocale(locale);
            Utf8::alignLeftByWhitespace({"a", "\u00e4"});
            QVERIFY(uselocale(nullptr) == locale);
        }
    }

    void logLine_data()
    {
        QTest::addColumn<QByteArray>("message");
        QTest::addColumn<QByteArray>("expected");
        const auto row = [](const char *name, const QByteArray &message, const QByteArray &expected) {
            QTest::newRow(name) << message << expected;
        };
        row("ordinary", "a message: 'x\\n'", "a message: 'x\\n'");
        row("nothing", "", "");
        row("a forged record", "a\n[error] forged\r", "a\\x0a[error] forged\\x0d");
        row("colours and titles of a terminal", "\x1b[31m\x1b]0;t\x07", "\\x1b[31m\\x1b]0;t\\x07");
        row("the ends of ASCII", QByteArray("a\0\x01\x1f \x7f", 6), "a\\x00\\x01\\x1f \\x7f");
        row("UTF-8", "\u00a0\u00e4\u07ff\u0800\ud7ff\ue000\uffff\U00010000\U0010ffff",
            "\u00a0\u00e4\u07ff\u0800\ud7ff\ue000\uffff\U00010000\U0010ffff");
        row("control characters beyond ASCII", "\xc2\x80\xc2\x9b\xc2\x9f", R"(\xc2\x80\xc2\x9b\xc2\x9f)");
        row("bytes alone", "\x80\x9b\xff ", R"(\x80\x9b\xff )");
        row("cut off", "\xc3 \xe4\xb8 \xf0\x9f\x91", R"(\xc3 \xe4\xb8 \xf0\x9f\x91)");
        row("longer than it need be", "\xc0\x8a\xe0\x80\x9b\xf0\x80\x80\x8a",
            R"(\xc0\x8a\xe0\x80\x9b\xf0\x80\x80\x8a)");
        row("half a character, and beyond the last", "\xed\xa0\xbd\xf4\x90\x80\x80", R"(\xed\xa0\xbd\xf4\x90\x80\x80)");
        row("the first and the last half", "\xed\xa0\x80 \xed\xbf\xbf", R"(\xed\xa0\x80 \xed\xbf\xbf)");
        row("a byte that begins no character", "\xf8\x90\x80\x80 \xfc\x80\x80\x80",
            R"(\xf8\x90\x80\x80 \xfc\x80\x80\x80)");
    }

    // One record is always one line. In a process of its own, since the tests' log takes precedence over ours.
    void logLine()
    {
        QFETCH(QByteArray, message);
        QFETCH(QByteArray, expected);
        QProcess child;
        child.start(TEST_PROGRAMS "/logchild", {"file\n", "void f()\x1b"});
        child.write(message);
        child.closeWriteChannel();
        QVERIFY(child.waitForFinished(testing::patience));
        QCOMPARE(child.readAllStandardError(),
                 "[error] " + expected + " [file\\x0a:7, void f()\\x1b]\n[warn] " + expected
                         + " [file\\x0a:8, void f()\\x1b]\n[warn]  [file\\x0a:9, void f()\\x1b]\n");
    }

private:
    QScopedPointer<QTemporaryDir> m_directory;
};

QTEST_GUILESS_MAIN(tst_BaseUtil)
#include "tst_baseutil.moc"
