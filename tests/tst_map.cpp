#include "tool.h"

#include <QDir>
#include <QFileInfo>
#include <QImage>
#include <QRegularExpression>
#include <QXmlStreamReader>

#include <sys/stat.h>

#include <algorithm>
#include <functional>

using testing::Run;

// In mode "reading" the taps: two that overlap, one that the first hides, a thin one; nothing matches in the lower
// half.
static const char *const configuration = R"({
    "zones": {"half": {"x": 0, "y": 0, "w": 1, "h": 0.5}},
    "actions": [
        {"path": "page/next", "titles": ["Page", "Next"]},
        {"path": "page/previous", "titles": ["Page", "Previous"]},
        {"path": "menu", "title": "Menu"}
    ],
    "gestures": [
        {"id": "corner", "modes": ["reading"], "kind": "tap", "zone": "leftTop", "defaultAction": "menu"},
        {"id": "upper", "modes": ["reading"], "kind": "tap", "zone": "half",
         "availableActions": ["page/next", "page/previous"], "defaultAction": "page/next"},
        {"id": "hidden", "modes": ["reading"], "kind": "tap", "zone": {"x": 0.1, "y": 0.1, "w": 0.1, "h": 0.1},
         "defaultAction": "page/previous"},
        {"id": "thin", "modes": ["reading"], "kind": "tap", "zone": {"x": 0.5, "y": 0.7, "w": 0.004, "h": 0.25},
         "defaultAction": "page/previous"},
        {"id": "turn", "modes": ["reading"], "kind": "swipe", "direction": "toLeft", "defaultAction": "page/next"},
        {"id": "slip", "modes": ["menu"], "kind": "swipe", "zone": "leftVerticalLine", "defaultAction": "menu"},
        {"id": "anywhere", "kind": "hold", "zone": {"x": -1, "y": 0.5, "w": 3, "h": 3}, "defaultAction": "menu"}
    ]
})";

// A configuration with this number of gestures.
static QByteArray many(int count, const std::function<QByteArray(int)> &entry)
{
    QByteArrayList entries;
    for (int i = 0; i < count; ++i)
        entries.append(entry(i));
    return R"({"actions": [{"path": "a", "title": "A"}], "gestures": [)" + entries.join(',') + "]}";
}

// One of 20 by 25 zones side by side.
static QByteArray cell(int i)
{
    return QStringLiteral(R"({"id": "cell%1", "kind": "tap", "defaultAction": "a",
                              "zone": {"x": %2, "y": %3, "w": 0.05, "h": 0.04}})")
            .arg(i)
            .arg(i % 20 * 0.05)
            .arg(i / 20 * 0.04)
            .toUtf8();
}

// A gesture in a mode of its own.
static QByteArray mode(int i)
{
    return QStringLiteral(R"({"modes": ["m%1"], "kind": "tap", "zone": "top", "defaultAction": "a"})").arg(i).toUtf8();
}

// The map of a configuration in the program's output, on the terminal and in files.
class tst_Map : public testing::Tool
{
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        Tool::init();
        testing::writeFile(m_tree->defaultFile("app"), configuration);
    }

    // Devices export the platform of their own screen.
    void anyPlatformIsExported_data()
    {
        QTest::addColumn<QByteArray>("platform");
        for (const char *platform : {"eglfs", "xcb", "linuxfb:fb=/dev/none", "none", ""})
            QTest::addRow("'%s'", platform) << QByteArray(platform);
    }

    void anyPlatformIsExported()
    {
        QFETCH(QByteArray, platform);
        const QByteArray before = qgetenv("QT_QPA_PLATFORM");
        qputenv("QT_QPA_PLATFORM", platform);
        const Run run = gesturectl({"map", "--app", "app"});
        qputenv("QT_QPA_PLATFORM", before);
        QCOMPARE(run.exitCode, 0);
        QCOMPARE(run.err, QString());
        QVERIFY(!run.out.isEmpty());
    }

    void exitStatus_data()
    {
        QTest::addColumn<QStringList>("arguments");
        QTest::addColumn<int>("status");
        QTest::addColumn<QString>("error"); // part of the one line on standard error, empty for none
        const auto row = [](const char *name, const char *arguments, int status, const char *error) {
            QTest::newRow(name) << QString(arguments).split(' ', Qt::SkipEmptyParts) << status << error;
        };
        row("help", "--help", 0, "");
        row("no application", "", 2, "--app");
        row("application without a configuration", "--app none", 3, "none/cfg.json: No such file");
        row("all", "--app app", 0, "");
        row("a kind in any case", "--app app --kind TAP", 0, "");
        row("a kind that is none", "--app app --kind poke", 2, "poke");
        row("a direction in another case", "--app app --direction toleft", 2, "toleft");
        row("a direction alone", "--app app --direction toLeft", 0, "");
        row("no such kind", "--app app --kind drag", 1, "application 'app' has no matching gesture");
        row("no such direction in the kind", "--app app --kind tap --direction toTop", 1, "no matching gesture");
        row("no such mode for the kind", "--app app --kind tap --mode Reading", 1, "no matching gesture");
        row("a mode that only gestures of every mode have", "--app app --mode other", 0, "");
        row("unknown suffix", "--app app -o FILES/x.pdf", 2, "x.pdf' is neither .svg nor .png");
        row("no suffix", "--app app -o svg", 2, "'svg' is neither .svg nor .png");
        row("unknown suffix, before anything is read", "--app none -o x.jpg", 2, "'x.jpg' is neither");
        row("nothing to draw to a file", "--app app --kind drag -o FILES/x.svg", 1, "no matching gesture");
        row("a directory that is not there", "--app app -o FILES/none/x.svg", 3, "none/x.svg: No such file");
        row("a directory", "--app app -o FILES/directory.svg", 3, "directory.svg: Not a regular file");
        row("a link to a pipe", "--app app -o FILES/link.png", 3, "link.png: Not a regular file");
        row("a pipe without a reader", "--app app -o FILES/pipe.svg", 3, "pipe.svg: Not a regular file");
    }

    void exitStatus()
    {
        QFETCH(QStringList, arguments);
        QFETCH(QString, error);
        makeOddFiles();
        const QStringList before = filesHere();
        const Run run = map(arguments.replaceInStrings("FILES", m_tree->root()));
        compareEnd(run);
        QCOMPARE(run.out.isEmpty(), !error.isEmpty());
        QCOMPARE(filesHere(), before);
    }

    void text_data()
    {
        QTest::addColumn<QStringList>("arguments");
        QTest::addColumn<QString>("expected"); // below the line that names the file
        QTest::newRow("what wins, what loses, what is dead") << QStringList{"--mode", "reading", "--kind", "tap"} << R"(
mode reading, tap
┌────────────────────────────────────────────────┐
│111111111111222222222222222222222222222222222222│
│111111111111222222222222222222222222222222222222│
│111111111111222222222222222222222222222222222222│
│111111111111222222222222222222222222222222222222│
│111111111111222222222222222222222222222222222222│
│111111111111222222222222222222222222222222222222│
│222222222222222222222222222222222222222222222222│
│222222222222222222222222222222222222222222222222│
│222222222222222222222222222222222222222222222222│
│222222222222222222222222222222222222222222222222│
│222222222222222222222222222222222222222222222222│
│222222222222222222222222222222222222222222222222│
│222222222222222222222222222222222222222222222222│
│222222222222222222222222222222222222222222222222│
│222222222222222222222222222222222222222222222222│
│222222222222222222222222222222222222222222222222│
│................................................│
│................................................│
│................................................│
│................................................│
│................................................│
│................................................│
│........................4.......................│
│........................4.......................│
│........................4.......................│
│........................4.......................│
│........................4.......................│
│........................4.......................│
│........................4.......................│
│........................4.......................│
│................................................│
│................................................│
└────────────────────────────────────────────────┘
1  corner  leftTop                  menu
2  upper   half                     page/next      loses 10 % to 1
3  hidden  (0.1, 0.1, 0.1, 0.1)     page/previous  loses 100 % to 1, never fires
4  thin    (0.5, 0.7, 0.004, 0.25)  page/previous  smaller than drawn
.  nothing matches on 49.9 % of the screen)";
        QTest::newRow("every mode and touch of its own") << QStringList{"--kind", "hold", "--mode", "menu"} << R"(
mode menu, hold
┌────────────────────────────────────────────────┐
│................................................│
│................................................│
│................................................│
│................................................│
│................................................│
│................................................│
│................................................│
│................................................│
│................................................│
│................................................│
│................................................│
│................................................│
│................................................│
│................................................│
│................................................│
│................................................│
│111111111111111111111111111111111111111111111111│
│111111111111111111111111111111111111111111111111│
│111111111111111111111111111111111111111111111111│
│111111111111111111111111111111111111111111111111│
│111111111111111111111111111111111111111111111111│
│111111111111111111111111111111111111111111111111│
│111111111111111111111111111111111111111111111111│
│111111111111111111111111111111111111111111111111│
│111111111111111111111111111111111111111111111111│
│111111111111111111111111111111111111111111111111│
│111111111111111111111111111111111111111111111111│
│111111111111111111111111111111111111111111111111│
│111111111111111111111111111111111111111111111111│
│111111111111111111111111111111111111111111111111│
│111111111111111111111111111111111111111111111111│
│111111111111111111111111111111111111111111111111│
└────────────────────────────────────────────────┘
1  anywhere  (-1, 0.5, 3, 3)  menu
.  nothing matches on 50 % of the screen)";
    }

    void text()
    {
        QFETCH(QStringList, arguments);
        QFETCH(QString, expected);
        const Run run = map(QStringList{"--app", "app"} + arguments);
        QCOMPARE(run.out, "app: " + shortened(m_tree->defaultFile("app")) + '\n' + expected + '\n');
        QCOMPARE(run.err, QString());
        QCOMPARE(run.exitCode, 0);
    }

    void longFileName()
    {
        const QString app(100, 'x');
        testing::writeFile(m_tree->defaultFile(app), configuration);
        const QString file = m_tree->defaultFile(app);
        QCOMPARE(map({"--app", app}).out.section('\n', 0, 0),
                 QString(40, 'x') + QChar(0x2026) + QString(40, 'x') + ": " + file.left(40) + QChar(0x2026)
                         + file.right(40));
    }

    void panels_data()
    {
        QTest::addColumn<QStringList>("arguments");
        QTest::addColumn<QStringList>("titles");
        QTest::newRow("all") << QStringList() << QStringList{"mode menu, hold",
                                                             "mode menu, swipe without direction",
                                                             "mode reading, tap",
                                                             "mode reading, hold",
                                                             "mode reading, swipe toLeft",
                                                             "any other mode, hold"};
        QTest::newRow("of a mode") << QStringList{"--mode", "menu"}
                                   << QStringList{"mode menu, hold", "mode menu, swipe without direction"};
        QTest::newRow("of a mode that none names") << QStringList{"--mode", "other"} << QStringList{"mode other, hold"};
        QTest::newRow("of a kind") << QStringList{"--kind", "Hold"}
                                   << QStringList{"mode menu, hold", "mode reading, hold", "any other mode, hold"};
        QTest::newRow("of a direction") << QStringList{"--direction", "toLeft"}
                                        << QStringList{"mode reading, swipe toLeft"};
        QTest::newRow("of none") << QStringList{"--direction", "no", "--kind", "swipe"}
                                 << QStringList{"mode menu, swipe without direction"};
    }

    void panels()
    {
        QFETCH(QStringList, arguments);
        QFETCH(QStringList, titles);
        QCOMPARE(titlesOf(map(QStringList{"--app", "app"} + arguments).out), titles);
        QStringList drawn;
        for (const QString &text : textsOf(svg(arguments))) {
            if (text.contains(" mode, ") || text.startsWith("mode "))
                drawn.append(text);
        }
        QCOMPARE(drawn, titles);
    }

    void onlyGesturesOfEveryMode()
    {
        testing::writeFile(m_tree->defaultFile("app"),
                           many(1, [](int) { return R"({"kind": "tap", "zone": "top", "defaultAction": "a"})"; }));
        QCOMPARE(titlesOf(map({"--app", "app"}).out), QStringList{"any mode, tap"});
    }

    void choiceOfTheUser()
    {
        testing::writeFile(m_tree->userFile("app"), R"({"version": 1, "actions": {"upper": "page/previous"}})");
        const QStringList reading{"--app", "app", "--mode", "reading", "--kind", "tap"};
        QVERIFY(map(reading).out.simplified().contains(" 2 upper half page/previous loses 10 % to 1 "));
        QVERIFY(textsOf(svg({"--mode", "reading", "--kind", "tap"})).contains("half:  page/previous"));
    }

    void unsupported()
    {
        testing::writeFile(m_tree->defaultFile("app"), many(1, [](int) {
                               return R"({"id": "warm", "kind": "tap", "zone": "top", "defaultAction": "a",
                                          "features": ["smartlight"]})";
                           }));
        const QString mark = "  [not on this device]";
        const bool isMarked = gesturectl({"list", "--app", "app"}).out.contains(mark);
        QCOMPARE(map({"--app", "app"}).out.contains("1  warm  top  a" + mark + '\n'), isMarked);
        QCOMPARE(textsOf(svg({})).contains("top:  a" + mark), isMarked);
    }

    // A cell shows the gesture that the lookup finds at its centre.
    void cellsAgreeWithFind()
    {
        const QStringList lines = map({"--app", "app", "--mode", "reading", "--kind", "tap"}).out.split('\n');
        const QString ids = "corner upper hidden thin";
        for (const QPoint cell : {QPoint(0, 0), QPoint(11, 5), QPoint(12, 6), QPoint(47, 15), QPoint(0, 16)}) {
            const QChar symbol = lines.at(4 + cell.y()).at(1 + cell.x());
            const QString found =
                    gesturectl({"find", "--app", "app", "--mode", "reading", "--kind", "tap", "--at",
                                QStringLiteral("%1,%2").arg((cell.x() + 0.5) / 48).arg((cell.y() + 0.5) / 32)})
                            .out.section(' ', 0, 0)
                            .trimmed();
            QCOMPARE(found,
                     symbol == '.' ? QString() : ids.section(' ', symbol.digitValue() - 1, symbol.digitValue() - 1));
        }
    }

    void smallZones()
    {
        // Two in one cell without either centre, beside one that fills the screen.
        testing::writeFile(m_tree->defaultFile("app"),
                           R"({"actions": [{"path": "a", "title": "A"}], "gestures": [
            {"id": "first", "kind": "tap", "zone": {"x": 0.501, "y": 0.501, "w": 0.002, "h": 0.002}, "defaultAction": "a"},
            {"id": "second", "kind": "tap", "zone": {"x": 0.504, "y": 0.504, "w": 0.002, "h": 0.002}, "defaultAction": "a"},
            {"id": "line", "kind": "tap", "zone": {"x": 0, "y": 0.001, "w": 1, "h": 0.002}, "defaultAction": "a"},
            {"id": "rest", "kind": "tap", "zone": "whole", "defaultAction": "a"}]})");
        const QStringList lines = map({"--app", "app"}).out.split('\n');
        QCOMPARE(lines.mid(37, 4),
                 QStringList({"1  first   (0.501, 0.501, 0.002, 0.002)  a  smaller than drawn",
                              "2  second  (0.504, 0.504, 0.002, 0.002)  a  too small to be drawn",
                              "3  line    (0, 0.001, 1, 0.002)          a  smaller than drawn",
                              "4  rest    whole                         a  loses less than 0.1 % to 1, less than 0.1 % "
                              "to 2, "
                              "0.2 % to 3"}));
        QCOMPARE(lines.at(4).mid(1, 48), QString(48, '3'));
        QCOMPARE(lines.at(4 + 16).mid(1, 48), QString(24, '4') + '1' + QString(23, '4'));
    }

    // Five are named; of six, the largest four.
    void manyLosses_data()
    {
        QTest::addColumn<int>("others");
        QTest::addColumn<QString>("expected");
        QTest::newRow("as many as are named")
                << 5 << "loses 0.2 % to 1, 0.2 % to 2, 0.2 % to 3, 0.2 % to 4, 0.2 % to 5";
        QTest::newRow("one more") << 6 << "loses 0.2 % to 1, 0.2 % to 2, 0.2 % to 3, 0.2 % to 4, 0.4 % to 2 others";
    }
    void manyLosses()
    {
        QFETCH(int, others);
        QFETCH(QString, expected);
        testing::writeFile(m_tree->defaultFile("app"), many(others + 1, [others](int i) {
                               return i < others ? cell(i)
                                                 : R"({"kind": "tap", "zone": "whole", "defaultAction": "a"})";
                           }));
        const QString out = map({"--app", "app"}).out;
        QVERIFY2(out.contains("  a  " + expected + '\n'), qPrintable(out));
    }

    // 80 characters are shown in full; of more, the first and the last 40.
    void longestName()
    {
        for (const int length : {80, 81}) {
            const QString name(length, 'n');
            testing::writeFile(
                    m_tree->defaultFile("app"), many(1, [&](int) {
                        return "{\"kind\": \"tap\", \"zone\": \"whole\", \"defaultAction\": \"a\", \"id\": \""
                                + name.toUtf8() + "\"}";
                    }));
            const QString shown = length == 80 ? name : name.left(40) + QChar(0x2026) + name.right(40);
            const QString out = map({"--app", "app"}).out;
            QVERIFY2(out.contains("1  " + shown + "  whole"), qPrintable(out));
        }
    }

    void symbols()
    {
        testing::writeFile(m_tree->defaultFile("app"), many(63, [](int i) { return cell(i); }));
        const QString out = map({"--app", "app"}).out;
        QVERIFY(out.contains("\n9    cell8 ") && out.contains("\na    cell9 "));
        QVERIFY(out.contains("\nz    cell34 ") && out.contains("\nA    cell35 "));
        QVERIFY(out.contains("\nZ    cell60 ") && out.contains("\n#62  cell61 "));
        QVERIFY(out.section('\n', 3, 36).contains('#') && !out.contains(QChar(0)));
    }

    void svgHoldsEverything()
    {
        const QByteArray picture = svg({"--mode", "reading", "--kind", "tap"});
        const QStringList texts = textsOf(picture);
        // Labels in the zones, then the legend in the order of the lookup.
        for (const char *text : {"Gestures of app", "mode reading, tap", "nothing matches on 49.9 % of the screen"})
            QVERIFY2(texts.contains(text), text);
        QVERIFY(texts.contains(m_tree->defaultFile("app")) || texts.filter("\u2026").filter("cfg.json").size() == 1);
        const int legend = texts.indexOf("nothing matches on 49.9 % of the screen");
        QCOMPARE(texts.mid(legend + 1),
                 QStringList({"1", "corner", "leftTop:  menu", "2", "upper", "half:  page/next", "loses 10 % to 1", "3",
                              "hidden", "(0.1, 0.1, 0.1, 0.1):  page/previous", "loses 100 % to 1, never fires", "4",
                              "thin", "(0.5, 0.7, 0.004, 0.25):  page/previous"}));
        QCOMPARE(texts.mid(texts.indexOf("mode reading, tap") + 1, legend - texts.indexOf("mode reading, tap") - 1),
                 QStringList({"1", "corner", "menu", "2", "upper", "page/next", "4", "3"}));
        QVERIFY(picture.contains("stroke-dasharray"));
        for (const char *colour : {"red", "blue", "gray", "grey", "#8"})
            QVERIFY2(!picture.contains(colour), colour);
    }

    void pngInBlackAndWhite()
    {
        const QImage image = png({"--mode", "reading", "--kind", "tap"});
        QVERIFY(!image.isNull());
        QVERIFY(image.isGrayscale());
        const QRect screen = screenOf(image);
        QCOMPARE(screen.size(), QSize(420, 560));

        const auto part = [&](double x, double y, double width, double height) {
            return image.copy(screen.x() + qRound(x * 420), screen.y() + qRound(y * 560), qRound(width * 420),
                              qRound(height * 560));
        };
        const QImage dead = part(0.02, 0.55, 0.4, 0.4);
        QVERIFY(ink(dead) > 0.05 && ink(dead) < 0.2);
        QCOMPARE(along(dead, -1), 1.0);                  // rising lines, all pixels in one
        const QImage alone = part(0.8, 0.02, 0.18, 0.4); // only "upper" is there, without its label
        QCOMPARE(ink(alone), 0.0);
        const QImage label = part(0.4, 0.3, 0.4, 0.15);
        QVERIFY2(ink(label) > 0.01, "the label of a zone is missing");
        const QImage contested = part(0.01, 0.01, 0.22, 0.05);
        QVERIFY(ink(contested) > 0.01 && ink(contested) < 0.1);
        QVERIFY(along(contested, -1) < 0.1);                                 // must differ from unmatched areas
        const double dashes = ink(part(41 / 420.0, 0.15, 2 / 420.0, 0.045)); // a side of "hidden"
        QVERIFY(dashes > 0.4 && dashes < 0.75);
        QCOMPARE(ink(part(0.498, 0.75, 0.006, 0.1)), 1.0); // a thin zone is still a line
    }

    void severalPanels()
    {
        const QImage one = png({"--mode", "reading", "--kind", "tap"});
        const QImage all = png({});
        QCOMPARE(one.width(), 500);
        QCOMPARE(all.width(), 4 * 420 + 3 * 36 + 80);
        QVERIFY(all.height() > one.height());
    }

    // Compares each pixel with a picture that a person has checked: look at a changed picture, then accept it.
    void picture_data()
    {
        QTest::addColumn<QByteArray>("json");
        QTest::newRow("map") << QByteArray(configuration);
        // Labels that stand upright, that break, that have no room, in modes of their own.
        QTest::newRow("crowded") << many(28, [](int i) {
            return i < 16 ? cell(i * 31 % 480)
                          : QStringLiteral(R"({"id": "strip_%1 of a-long/name", "modes": ["m%2"], "kind": "tap",
                              "defaultAction": "a", "zone": {"x": %3, "y": 0.3, "w": 0.07, "h": %4}})")
                                    .arg(i)
                                    .arg(i % 2)
                                    .arg((i - 16) * 0.08)
                                    .arg(0.1 + i % 5 * 0.15)
                                    .toUtf8();
        });
    }

    void picture()
    {
        QFETCH(QByteArray, json);
        testing::writeFile(m_tree->defaultFile("app"), json);
        const QString fonts = m_tree->root() + "/fonts.conf"; // no other fonts of this machine
        testing::writeFile(fonts,
                           "<fontconfig><dir>/usr/share/fonts/truetype/dejavu</dir><cachedir>" + m_tree->root().toUtf8()
                                   + "/fonts</cachedir></fontconfig>");
        qputenv("FONTCONFIG_FILE", fonts.toLocal8Bit());
        const auto cleanUp = qScopeGuard([] { qunsetenv("FONTCONFIG_FILE"); });
        const QString drawn = withWholeNumbers(svg({})).replace(QRegularExpression(">[^<]*cfg.json<"), ">FILE<");
        const QString name = QString("/%1.svg").arg(QTest::currentDataTag());
        const QString known = testing::readFile(SOURCE_DIR "/tests/data" + name);
        if (drawn == known)
            return;
        const QString file = QCoreApplication::applicationDirPath() + name + ".fail";
        testing::writeFile(file, drawn.toUtf8());
        const QStringList now = drawn.split('\n');
        const QStringList before = known.split('\n');
        const auto [one, two] = std::mismatch(now.cbegin(), now.cend(), before.cbegin(), before.cend());
        QFAIL(qPrintable(QStringLiteral("%1 is not tests/data%2, from line %3 on: %4")
                                 .arg(file, name)
                                 .arg(one - now.cbegin() + 1)
                                 .arg(one == now.cend() ? QString() : *one)));
    }

    void oddTexts_data()
    {
        QTest::addColumn<QByteArray>("json");
        QTest::addColumn<QString>("shown");
        const auto row = [](const char *name, const QByteArray &text, const QString &shown) {
            QTest::newRow(name) << text << shown;
        };
        row("markup", "<b a='1'>&amp;\\\"]]>", "<b a='1'>&amp;\"]]>");
        row("control characters", R"(a\tb\nc\u001b[2Jd\u0000e\u007f)", R"(a\tb\nc\x1b[2Jd\x00e\x7f)");
        row("what turns the text", R"(\u202eabc)", R"(\u202eabc)");
        row("no characters", R"(a\ufffeb)", R"(a\ufffeb)");
        row("empty", "", "''");
        row("from right to left", "\xd7\xa9\xd7\x9c", QString::fromUtf8("\xd7\xa9\xd7\x9c"));
        row("long", QByteArray(50000, 'x'), QString(40, 'x') + QChar(0x2026) + QString(40, 'x'));
        row("percent", "%1%2", "%1%2");
    }

    void oddTexts()
    {
        QFETCH(QByteArray, json);
        QFETCH(QString, shown);
        testing::writeFile(m_tree->defaultFile("app"),
                           QByteArray(R"({"zones": {"TEXT": {"x": 0, "y": 0.25, "w": 1, "h": 0.75}},
                               "actions": [{"path": "TEXT", "title": "A"}],
                               "gestures": [{"id": "TEXT", "modes": ["TEXT"], "kind": "tap", "zone": "TEXT",
                                             "defaultAction": "TEXT"}]})")
                                   .replace("TEXT", json));
        const QString out = map({"--app", "app"}).out;
        QCOMPARE(out.section('\n', 2, 2), "mode " + shown + ", tap");
        const QString zone = json.isEmpty() ? QString("(0, 0.25, 1, 0.75)") : shown; // without a name
        QCOMPARE(out.section('\n', 37, 37), QStringList({"1", shown, zone, shown}).join("  "));
        QCOMPARE(out.count('\n'), 39);

        const QStringList texts = textsOf(svg({}));
        if (shown.size() > 50) {
            QVERIFY(!texts.filter(QRegularExpression("^x+\u2026x+$")).isEmpty());
            return;
        }
        // A text of two directions is drawn in pieces.
        QVERIFY(texts.join("").contains("mode " + shown + ", tap"));
        QVERIFY(texts.join("").contains(zone + ":  " + shown));
        QVERIFY(!png({}).isNull());
    }

    void fiveHundredGestures()
    {
        testing::writeFile(m_tree->defaultFile("app"), many(500, [](int i) { return cell(i); }));
        const QStringList texts = textsOf(svg({}));
        QVERIFY(texts.contains("cell0") && texts.contains("cell499"));
        QCOMPARE(texts.count("500"), 2); // in its zone, and in the legend
        QVERIFY(!png({}).isNull());
    }

    void tooMuchForAPicture()
    {
        testing::writeFile(m_tree->defaultFile("app"), many(2001, mode));
        const Run all = map({"--app", "app", "-o", file("x.svg")});
        QCOMPARE(all.err,
                 QString("gesturectl: 2001 panels with 2001 zones are too many for one page: restrict them with "
                         "--mode, --kind or --direction\n"));
        QCOMPARE(all.exitCode, 3);
        QCOMPARE(titlesOf(map({"--app", "app"}).out).size(), 2001);

        testing::writeFile(m_tree->defaultFile("app"), many(1000, mode));
        const Run some = map({"--app", "app", "-o", file("x.png")});
        QVERIFY2(some.err.contains("pixels is too large: restrict it with --mode or --kind, or draw an SVG"),
                 qPrintable(some.err));
        QCOMPARE(some.exitCode, 3);
        QVERIFY(!QFileInfo::exists(file("x.png")) && !QFileInfo::exists(file("x.svg")));
    }

    // No earlier picture is lost, and no half one left.
    void fullDisk()
    {
        testing::writeFile(file("x.svg"), "earlier");
        const QStringList before = filesHere();
        QProcess process;
        process.start(
                "sh",
                {"-c", "trap '' XFSZ; ulimit -f 8; exec \"$0\" map --app app -o \"$1\"", GESTURECTL, file("x.svg")});
        QVERIFY(process.waitForFinished(testing::patience));
        QCOMPARE(process.exitCode(), 3);
        QCOMPARE(process.readAllStandardError(), "gesturectl: " + file("x.svg").toUtf8() + ": File too large\n");
        QCOMPARE(testing::readFile(file("x.svg")), QByteArray("earlier"));
        QCOMPARE(filesHere(), before);
    }

    void replacesAPicture()
    {
        testing::writeFile(file("x.SVG"), "earlier");
        const Run run = map({"--app", "app", "-o", file("x.SVG")});
        QCOMPARE(run.exitCode, 0);
        QCOMPARE(run.out + run.err, QString());
        QVERIFY(testing::readFile(file("x.SVG")).startsWith("<?xml"));
    }

private:
    // Smaller differences are the machine's arithmetic.
    static QString withWholeNumbers(const QByteArray &svg)
    {
        static const QRegularExpression number(QStringLiteral("(?<!version=\")-?\\d+\\.\\d+(e-?\\d+)?"));
        const QString text = QString::fromUtf8(svg);
        QString whole;
        int end = 0;
        for (auto match = number.globalMatch(text); match.hasNext();) {
            const auto found = match.next();
            whole += text.mid(end, found.capturedStart() - end) + QString::number(qRound(found.captured().toDouble()));
            end = found.capturedEnd();
        }
        return whole + text.mid(end);
    }

    static Run map(const QStringList &arguments) { return gesturectl(QStringList("map") + arguments); }

    QString file(const QString &name) const { return m_tree->root() + '/' + name; }

    QStringList filesHere() const
    {
        return QDir(m_tree->root()).entryList(QDir::AllEntries | QDir::Hidden | QDir::System);
    }

    void makeOddFiles() const
    {
        QVERIFY(QDir().mkpath(file("directory.svg")));
        QCOMPARE(mkfifo(qPrintable(file("pipe.svg")), 0600), 0);
        QVERIFY(QFile::link(file("pipe.svg"), file("link.png"))); // never to a device: a fault would replace it
    }

    // The bytes of the drawn file; empty on failure.
    QByteArray svg(const QStringList &arguments) const
    {
        const Run run = map(QStringList{"--app", "app", "-o", file("drawn.svg")} + arguments);
        return run.exitCode == 0 && run.err.isEmpty() ? testing::readFile(file("drawn.svg")) : QByteArray();
    }

    QImage png(const QStringList &arguments) const
    {
        const Run run = map(QStringList{"--app", "app", "-o", file("drawn.png")} + arguments);
        return run.exitCode == 0 && run.err.isEmpty() ? QImage(file("drawn.png")) : QImage();
    }

    // The texts of an SVG in the order of drawing, or an error text if it is not well-formed.
    static QStringList textsOf(const QByteArray &picture)
    {
        QStringList texts;
        QXmlStreamReader xml(picture);
        while (!xml.atEnd()) {
            if (xml.readNext() == QXmlStreamReader::StartElement && xml.name() == QLatin1String("text"))
                texts.append(xml.readElementText());
        }
        return xml.hasError() ? QStringList("not well-formed: " + xml.errorString()) : texts;
    }

    // Shortened like every text of more than 80 characters, such as a file in a long temporary directory.
    static QString shortened(const QString &text)
    {
        return text.size() > 80 ? text.left(40) + QChar(0x2026) + text.right(40) : text;
    }

    static QStringList titlesOf(const QString &out)
    {
        QStringList titles;
        const QStringList lines = out.split('\n');
        for (int i = 1; i < lines.size(); ++i) {
            if (lines.at(i).startsWith(QChar(0x250c)))
                titles.append(lines.at(i - 1));
        }
        return titles;
    }

    static bool isBlack(const QImage &image, int x, int y) { return qGray(image.pixel(x, y)) < 128; }

    // Within the frame of the only panel: its first line that is black from side to side is the frame's.
    static QRect screenOf(const QImage &image)
    {
        const auto isLine = [&image](int y) {
            for (int x = 40; x < 460; ++x) {
                if (!isBlack(image, x, y))
                    return false;
            }
            return true;
        };
        int top = 0;
        while (top < image.height() && !isLine(top))
            ++top;
        int bottom = image.height() - 1;
        while (bottom > top && !isLine(bottom))
            --bottom;
        return QRect(QPoint(40, top + 2), QPoint(459, bottom - 2));
    }

    // The share of black pixels.
    static double ink(const QImage &image)
    {
        int black = 0;
        for (int y = 0; y < image.height(); ++y) {
            for (int x = 0; x < image.width(); ++x)
                black += isBlack(image, x, y);
        }
        return double(black) / (image.width() * image.height());
    }

    // The share of black pixels that continue below, a step to the left or to the right.
    static double along(const QImage &image, int step)
    {
        int black = 0;
        int next = 0;
        for (int y = 0; y + 1 < image.height(); ++y) {
            for (int x = 1; x + 1 < image.width(); ++x) {
                black += isBlack(image, x, y);
                next += isBlack(image, x, y) && isBlack(image, x + step, y + 1);
            }
        }
        return black ? double(next) / black : 0;
    }
};

QTEST_GUILESS_MAIN(tst_Map)
#include "tst_map.moc"
