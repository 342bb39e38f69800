#include "testing.h"

#include <gesture_api/configuration.h>

#include <vellix/platform/vxcomponents.h>

#include <QJsonDocument>
#include <QRandomGenerator>
#include <QScopeGuard>

#include <sstream>

using namespace vellix;
using namespace vellix::gesture;
using testing::json;
using testing::jsonMap;

using ActionBindings = Configuration::ActionBindings;
using ParsingError = ActionBindings::ParsingError;
using Bindings = QMap<QString, QString>;
using Result = Either<ParsingError, Bindings>;

/// "ID>PATH" of every binding, or the failure as it is printed.
static QString outcome(const Result &result)
{
    if (result.isLeft()) {
        std::ostringstream out;
        out << result.left();
        return QString::fromStdString(out.str());
    }
    QStringList shown;
    for (auto binding = result.right().cbegin(); binding != result.right().cend(); ++binding)
        shown.append(binding.key() + QLatin1Char('>') + *binding);
    return shown.join(QLatin1Char(' '));
}

static QString fault(int line, const QString &message)
{
    return QStringLiteral("OtherError(../../../gesture_api/src/configuration:%1: %2)").arg(line).arg(message);
}

/// Gestures of "ID>PATH" texts; one without ">" has no current action.
class Gestures
{
public:
    explicit Gestures(const QString &texts = QString())
    {
        for (const QString &text : texts.split(QLatin1Char(' '), Qt::SkipEmptyParts)) {
            const QString path = text.section(QLatin1Char('>'), 1);
            add(text.section(QLatin1Char('>'), 0, 0),
                text.contains(QLatin1Char('>')) ? new Action(path, {}, {}) : nullptr);
        }
    }

    Gesture *add(const QString &id, Action *current, Action *byDefault = nullptr)
    {
        list.append(new Gesture(id, {}, Gesture::Tap, Gesture::wholeZone, Gesture::NoDirection, {}, byDefault, current,
                                {}, &m_parent));
        return list.last();
    }

    QList<Gesture *> list;

private:
    QObject m_parent;
};

static QString path(const testing::DataTree &tree)
{
    return tree.userFile(QStringLiteral("app"));
}

/// Fails with the message if the bindings cannot be saved.
#define VERIFY_SAVED(name, gestures)                                                                                   \
    do {                                                                                                               \
        const auto saved = ActionBindings::saveJson(name, (gestures).list);                                            \
        QVERIFY2(saved.isRight(), qPrintable(saved.isLeft() ? saved.left() : QString()));                              \
        QVERIFY(saved.right() > 0);                                                                                    \
    } while (false)

class tst_ActionBindings : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void cleanup() { QCOMPARE(ActionBindings::version, 1); }

    void fromVariant_data()
    {
        QTest::addColumn<QString>("document");
        QTest::addColumn<QString>("expected");
        const auto reads = [](const char *name, const char *document, const char *expected) {
            QTest::newRow(name) << document << expected;
        };
        const auto fails = [](const char *name, const char *document, int line, const char *message) {
            QTest::newRow(name) << document << fault(line, QString::fromLatin1(message));
        };
        const char *const noVersion = "`version` is obligatory field";
        const char *const versionType = "`version` type must be `int`";
        const char *const noActions = "`actions` is obligatory field";
        const char *const actionsType = "`actions` type must be `map<str, str>`";
        const char *const valueType = "`actions` value type must be `str`";

        reads("no bindings", R"({"version": 1, "actions": {}})", "");
        reads("bindings", R"({"version": 1, "actions": {"b": "y", "a": "x"}})", "a>x b>y");
        reads("other keys are ignored", R"({"version": 1, "actions": {"a": "x"}, "Version": 2, "zones": 5})", "a>x");
        reads("empty texts", R"({"version": 1, "actions": {"": ""}})", ">");
        reads("version as digits", R"({"version": "1", "actions": {"a": "x"}})", "a>x");
        reads("version as a double", R"({"version": 1.0, "actions": {}})", "");
        reads("version is rounded", R"({"version": 1.4, "actions": {}})", "");
        reads("version true is one", R"({"version": true, "actions": {}})", "");

        fails("version missing", R"({"actions": {}})", 84, noVersion);
        fails("empty: version is told", R"({})", 84, noVersion);
        fails("version before the actions' type", R"({"actions": 5})", 84, noVersion);
        fails("version a word", R"({"version": "one", "actions": {}})", 89, versionType);
        fails("version empty", R"({"version": "", "actions": {}})", 89, versionType);
        fails("version a fraction as text", R"({"version": "1.0", "actions": {}})", 89, versionType);
        fails("version null", R"({"version": null, "actions": {}})", 89, versionType);
        fails("version a list", R"({"version": [1], "actions": {}})", 89, versionType);
        fails("version an object", R"({"version": {}, "actions": {}})", 89, versionType);
        fails("version's type before missing actions", R"({"version": "v"})", 89, versionType);
        reads("newer version", R"({"version": 2, "actions": {}})", "VersionNotMatch(2)");
        reads("no version yet", R"({"version": 0, "actions": {}})", "VersionNotMatch(0)");
        reads("negative version", R"({"version": -1, "actions": {}})", "VersionNotMatch(-1)");
        reads("newer version as digits", R"({"version": "2", "actions": {}})", "VersionNotMatch(2)");
        reads("version before missing actions", R"({"version": 2})", "VersionNotMatch(2)");
        reads("version before the actions' type", R"({"version": 2, "actions": 5})", "VersionNotMatch(2)");
        fails("actions missing", R"({"version": 1})", 111, noActions);
        fails("actions' name in another case", R"({"version": 1, "Actions": {}})", 111, noActions);
        fails("actions a number", R"({"version": 1, "actions": 5})", 108, actionsType);
        fails("actions null", R"({"version": 1, "actions": null})", 108, actionsType);
        fails("actions a list", R"({"version": 1, "actions": ["x"]})", 108, actionsType);
        fails("value a number", R"({"version": 1, "actions": {"a": 3}})", 102, valueType);
        fails("value a boolean", R"({"version": 1, "actions": {"a": true}})", 102, valueType);
        fails("value null", R"({"version": 1, "actions": {"a": null}})", 102, valueType);
        fails("value an object", R"({"version": 1, "actions": {"a": {"path": "x"}}})", 102, valueType);
        fails("one wrong value among others", R"({"version": 1, "actions": {"a": "x", "b": 3, "c": "z"}})", 102,
              valueType);
    }

    void fromVariant()
    {
        QFETCH(QString, document);
        QTEST(outcome(ActionBindings::fromVariant(jsonMap(document.toUtf8()))), "expected");
    }

    void versionNotMatchIsTheFirstAlternative()
    {
        const Result newer = ActionBindings::fromVariant(jsonMap(R"({"version": 2, "actions": 5})"));
        QVERIFY(newer.isLeft());
        QCOMPARE(newer.left().value.which(), 0);
        QCOMPARE(boost::get<ParsingError::VersionNotMatch>(newer.left().value).version, 2);
        const Result faulty = ActionBindings::fromVariant({});
        QVERIFY(faulty.isLeft());
        QCOMPARE(faulty.left().value.which(), 1);
        QCOMPARE(boost::get<Error>(faulty.left().value).records.size(), std::size_t(1));
    }

    void printed_data()
    {
        QTest::addColumn<int>("records");
        QTest::addColumn<QString>("expected");
        QTest::newRow("version") << -1 << "VersionNotMatch(-7)";
        QTest::newRow("no record") << 0 << "OtherError(undefined error)";
        QTest::newRow("one record") << 1 << "OtherError(f:3: m)";
        QTest::newRow("two records") << 2 << "OtherError(f:3: m, then f:3: m)";
    }

    void printed()
    {
        QFETCH(int, records);
        Error error;
        for (int i = 0; i < records; ++i)
            error.records.push_back({{"f", 3}, "m"});
        std::ostringstream out;
        std::ostream &same =
                records < 0 ? out << ParsingError(ParsingError::VersionNotMatch{-7}) : out << ParsingError(error);
        QCOMPARE(&same, &out);
        QTEST(QString::fromStdString(out.str()), "expected");
    }

    void unexpectedVersionInTheLog()
    {
        const testing::LogCapture log;
        const Bindings fallback{{QStringLiteral("a"), QStringLiteral("x")}};
        QCOMPARE(ActionBindings::fromVariant(jsonMap(R"({"version": 2})")).getOrErr(fallback), fallback);
        QCOMPARE(log.lines.size(), 1);
        QCOMPARE(log.lines[0].body, QStringLiteral("expected right but VersionNotMatch(2)"));
    }

    void versionIsComparedAsItIs()
    {
        const auto restore = qScopeGuard([] { ActionBindings::version = 1; });
        ActionBindings::version = 7;
        QCOMPARE(outcome(ActionBindings::fromVariant(jsonMap(R"({"version": 7, "actions": {"a": "x"}})"))),
                 QStringLiteral("a>x"));
        QCOMPARE(outcome(ActionBindings::fromVariant(jsonMap(R"({"version": 1, "actions": {}})"))),
                 QStringLiteral("VersionNotMatch(1)"));
        QCOMPARE(ActionBindings::toVariant({}).toMap().value(QStringLiteral("version")), QVariant(7));
        const testing::DataTree tree;
        VERIFY_SAVED(path(tree), Gestures(QStringLiteral("a>x")));
        QCOMPARE(testing::readFile(path(tree)),
                 QByteArray("{\n    \"actions\": {\n        \"a\": \"x\"\n    },\n"
                            "    \"version\": 7\n}\n"));
        QCOMPARE(outcome(ActionBindings::loadJson(path(tree))), QStringLiteral("a>x"));
    }

    void loadJson_data()
    {
        QTest::addColumn<QByteArray>("bytes");
        QTest::addColumn<QString>("expected"); // %1 is the path of the file
        const QByteArray good = R"({"version": 1, "actions": {"ä": "x"}})";
        const QString notAMap = fault(163, QStringLiteral("`%1` root bust be map<>"));
        QTest::newRow("bindings") << good << "ä>x";
        QTest::newRow("UTF-8 byte order mark") << "\xef\xbb\xbf" + good << "ä>x";
        QTest::newRow("another version") << QByteArray(R"({"version": 2})") << "VersionNotMatch(2)";
        QTest::newRow("a fault of the content")
                << QByteArray("{}") << fault(84, QStringLiteral("`version` is obligatory field"));
        QTest::newRow("array") << '[' + good + ']' << notAMap;
        QTest::newRow("empty array") << QByteArray("[]") << notAMap;
    }

    void loadJson()
    {
        QFETCH(QByteArray, bytes);
        QFETCH(QString, expected);
        const testing::DataTree tree;
        testing::writeFile(path(tree), bytes);
        QCOMPARE(outcome(ActionBindings::loadJson(path(tree))),
                 QString(expected).replace(QStringLiteral("%1"), path(tree)));
        // The path is shown as it was given, with its prefix.
        const QString unexpanded = QStringLiteral("${USERDATA}/gestures/apps/current/app/cfg.json");
        QCOMPARE(outcome(ActionBindings::loadJson(unexpanded)), expected.replace(QStringLiteral("%1"), unexpanded));
    }

    void loadersErrorIsHandedOn_data()
    {
        QTest::addColumn<QByteArray>("bytes");
        QTest::addColumn<QString>("reason");
        QTest::newRow("empty") << QByteArray() << "illegal value";
        QTest::newRow("truncated") << QByteArray(R"({"version": 1, )") << "unterminated object";
        QTest::newRow("no JSON") << QByteArray("version=1\n") << "illegal value";
        QTest::newRow("wrong encoding") << QByteArray("{\"version\": 1, \"actions\": {\"\xe4\": \"x\"}}")
                                        << "invalid UTF8 string";
        QTest::newRow("missing") << QByteArray("(no file)") << "No such file or directory";
    }

    void loadersErrorIsHandedOn()
    {
        QFETCH(QByteArray, bytes);
        QFETCH(QString, reason);
        const testing::DataTree tree;
        if (bytes != "(no file)")
            testing::writeFile(path(tree), bytes);
        const QString text = outcome(ActionBindings::loadJson(path(tree)));
        QVERIFY2(text.contains(path(tree)) && text.endsWith(reason + QLatin1Char(')')), qPrintable(text));
        const auto loaded = components::VariantLoader::loadJson(path(tree));
        QVERIFY(loaded.isLeft());
        QCOMPARE(text, outcome(Result(Left(ParsingError(loaded.left())))));
    }

    void toVariant_data()
    {
        QTest::addColumn<QString>("gestures");
        QTest::addColumn<QString>("expected");
        const auto row = [](const char *name, const char *gestures, const char *expected) {
            QTest::newRow(name) << gestures << expected;
        };
        row("none", "", R"({"actions":{},"version":1})");
        row("no current action", "a b", R"({"actions":{},"version":1})");
        row("current actions", "b>y a>menu/x", R"({"actions":{"a":"menu/x","b":"y"},"version":1})");
        row("some without", "a b>y c", R"({"actions":{"b":"y"},"version":1})");
        row("the later of one id", "a>x b>y a>z", R"({"actions":{"a":"z","b":"y"},"version":1})");
        row("a later one without leaves the earlier", "a>x a", R"({"actions":{"a":"x"},"version":1})");
        row("empty path", "a>", R"({"actions":{"a":""},"version":1})");
    }

    void toVariant()
    {
        QFETCH(QString, gestures);
        const QVariant document = ActionBindings::toVariant(Gestures(gestures).list);
        QCOMPARE(document.userType(), int(QMetaType::QVariantMap));
        QCOMPARE(document.toMap().value(QStringLiteral("version")).userType(), int(QMetaType::Int));
        QTEST(QString::fromUtf8(QJsonDocument::fromVariant(document).toJson(QJsonDocument::Compact)), "expected");

        const testing::DataTree tree;
        VERIFY_SAVED(path(tree), Gestures(gestures));
        QCOMPARE(testing::readFile(path(tree)), QJsonDocument::fromVariant(document).toJson());
    }

    void aCurrentActionIsWrittenThoughItIsTheDefault()
    {
        Gestures gestures;
        gestures.add(QStringLiteral("a"), nullptr, new Action(QStringLiteral("x"), {}, {}));
        gestures.list.append(nullptr);
        QCOMPARE(outcome(ActionBindings::fromVariant(ActionBindings::toVariant(gestures.list).toMap())),
                 QStringLiteral("a>x"));
        gestures.list.first()->setCurrentAction(nullptr);
        QCOMPARE(outcome(ActionBindings::fromVariant(ActionBindings::toVariant(gestures.list).toMap())), QString());
    }

    void savedBytes_data()
    {
        QTest::addColumn<QString>("gestures");
        QTest::addColumn<QByteArray>("expected");
        const QByteArray empty = "{\n    \"actions\": {\n    },\n    \"version\": 1\n}\n";
        QTest::newRow("none") << "" << empty;
        QTest::newRow("no current action") << "a b" << empty;
        QTest::newRow("alphabetical order")
                << "b>y a>x B>ä/\"z"
                << QByteArray("{\n    \"actions\": {\n        \"B\": \"ä/\\\"z\",\n        \"a\": \"x\",\n"
                              "        \"b\": \"y\"\n    },\n    \"version\": 1\n}\n");
    }

    void savedBytes()
    {
        QFETCH(QString, gestures);
        QFETCH(QByteArray, expected);
        const testing::DataTree tree;
        const auto saved = ActionBindings::saveJson(path(tree), Gestures(gestures).list);
        QVERIFY2(saved.isRight(), qPrintable(saved.isLeft() ? saved.left() : QString()));
        QCOMPARE(saved.right(), qint64(expected.size()));
        QCOMPARE(testing::readFile(path(tree)), expected);
    }

    // Of any characters, also ones that are no text: control characters, halves of pairs, the end of ASCII.
    void savedBytesAreTheDocument()
    {
        QRandomGenerator random(1);
        const QString odd =
                QString::fromUtf8("\"\\/\b\f\n\r\t\x01\x1f ~\x7f\u0080äß€\ufffe\uffff") + QChar(0xd83d) + QChar(0xde00);
        const auto anyText = [&] {
            QString text;
            const int kind = random.bounded(3);
            for (int size = random.bounded(6); size > 0; --size)
                text += kind == 0   ? QChar(random.bounded(0x20, 0x7f))
                        : kind == 1 ? odd.at(random.bounded(odd.size()))
                                    : QChar(random.bounded(0x10000));
            return text;
        };
        const testing::DataTree tree;
        for (int i = 0; i < 40; ++i) {
            Gestures gestures;
            for (int size = i + random.bounded(8); size > 0; --size)
                gestures.add(anyText(), nullptr, new Action(anyText(), {}, {}));
            VERIFY_SAVED(path(tree), gestures);
            QCOMPARE(testing::readFile(path(tree)),
                     QJsonDocument::fromVariant(ActionBindings::toVariant(gestures.list)).toJson());
        }
    }

    void savedFile_data()
    {
        QTest::addColumn<QString>("name"); // %1 is the root of both data directories
        QTest::addColumn<QString>("expected");
        QTest::newRow("in the root") << "%1/a.json"
                                     << "a.json";
        QTest::newRow("missing directories are made") << "%1/b/c/d/a.json"
                                                      << "b/c/d/a.json";
        QTest::newRow("user's directory") << "${USERDATA}/gestures/a.json"
                                          << "user/vellix/gestures/a.json";
        QTest::newRow("system's directory") << "${SYSTEMDATA}/a.json"
                                            << "system/vellix/a.json";
        QTest::newRow("only a leading prefix counts") << "%1/${USERDATA}/a.json"
                                                      << "${USERDATA}/a.json";
    }

    void savedFile()
    {
        QFETCH(QString, name);
        const testing::DataTree tree;
        name.replace(QStringLiteral("%1"), tree.root());
        VERIFY_SAVED(name, Gestures(QStringLiteral("a>x")));
        QTEST(testing::filesBelow(tree.root()).join(QLatin1Char(' ')), "expected");
        QCOMPARE(outcome(ActionBindings::loadJson(name)), QStringLiteral("a>x"));
    }

    void aLongerFileIsReplaced()
    {
        const testing::DataTree tree;
        VERIFY_SAVED(path(tree), Gestures(QStringLiteral("a>x b>y c>z")));
        VERIFY_SAVED(path(tree), Gestures(QStringLiteral("a>y")));
        QCOMPARE(testing::readFile(path(tree)),
                 QByteArray("{\n    \"actions\": {\n        \"a\": \"y\"\n    },\n"
                            "    \"version\": 1\n}\n"));
        QCOMPARE(testing::filesBelow(tree.root()).size(), 1);
    }

    void fileThatCanNotBeWritten_data()
    {
        QTest::addColumn<QString>("name"); // %1 is the root of both data directories
        QTest::addColumn<QString>("expected");
        const auto row = [](const char *name, const char *file, const char *expected) {
            QTest::newRow(name) << file << expected;
        };
        row("a directory in its place", "%1/directory", "can not open file: Is a directory (path: %1/directory)");
        row("a directory in its place, by prefix", "${USERDATA}/d",
            "can not open file: Is a directory (path: %1/user/vellix/d)");
        row("a directory's name", "%1/new/", "can not open file: Is a directory (path: %1/new/)");
        row("a file in place of its directory", "%1/file/a.json",
            "can not open file: Not a directory (path: %1/file/a.json)");
        row("a file in place of a directory above", "%1/file/b/a.json",
            "can not open file: Not a directory (path: %1/file/b/a.json)");
        row("no name", "", "can not open file: No file name specified (path: )");
    }

    void fileThatCanNotBeWritten()
    {
        QFETCH(QString, name);
        QFETCH(QString, expected);
        const testing::DataTree tree;
        testing::writeFile(tree.root() + QStringLiteral("/file"), "x");
        testing::writeFile(tree.root() + QStringLiteral("/directory/kept"), "x");
        testing::writeFile(tree.user(QStringLiteral("d/kept")), "x");
        const testing::LogCapture quiet;
        const auto saved = ActionBindings::saveJson(name.replace(QStringLiteral("%1"), tree.root()),
                                                    Gestures(QStringLiteral("a>x")).list);
        QVERIFY2(saved.isLeft(), qPrintable(QString::number(saved.isRight() ? saved.right() : 0)));
        QCOMPARE(saved.left(), expected.replace(QStringLiteral("%1"), tree.root()));
        QCOMPARE(testing::filesBelow(tree.root()).join(QLatin1Char(' ')),
                 QStringLiteral("directory/kept file user/vellix/d/kept"));
    }

    void aNameTooLongIsAMessage()
    {
        const testing::DataTree tree;
        const QString name = tree.root() + QLatin1Char('/') + QString(256, QLatin1Char('a'));
        const auto saved = ActionBindings::saveJson(name, {});
        QVERIFY(saved.isLeft());
        QCOMPARE(saved.left(), QStringLiteral("can not open file: File name too long (path: %1)").arg(name));
    }

    void theMessageInTheLog()
    {
        const testing::DataTree tree;
        const testing::LogCapture log;
        QCOMPARE(ActionBindings::saveJson(tree.root(), {}).qGetOrErr(-3), qint64(-3));
        QCOMPARE(
                log.qtMessages,
                QStringList(QStringLiteral("critical default: \033[31m [error] expected right but \"can not open file: "
                                           "Is a directory (path: %1)\" \033[0m")
                                    .arg(tree.root())));
    }

    void aFailedWriteIsNoError()
    {
        if (!QFile::exists(QStringLiteral("/dev/full")))
            QSKIP("this system has no device that is always full");
        const auto saved = ActionBindings::saveJson(QStringLiteral("/dev/full"), {});
        QVERIFY2(saved.isRight(), qPrintable(saved.isLeft() ? saved.left() : QString()));
        QCOMPARE(saved.right(), qint64(-1));
    }

    void whatIsSavedIsReadBack_data()
    {
        QTest::addColumn<QString>("id");
        QTest::addColumn<QString>("path");
        const auto row = [](const char *name, const QString &id, const QString &path) {
            QTest::newRow(name) << id << path;
        };
        row("plain", QStringLiteral("TapLeftNoDirection"), QStringLiteral("menu/open"));
        row("empty", QString(), QString());
        row("rectangle", QStringLiteral("Tap(0.1,0.2,0.3,0.4)NoDirection"), QStringLiteral("/"));
        row("quotes and backslashes", QStringLiteral("\"\\\"`'"), QStringLiteral("\\u0041"));
        row("control characters", QStringLiteral("a\n\t\r\b\x01"), QStringLiteral("\x1f"));
        row("other scripts", QStringLiteral("жест"), QStringLiteral("手势/𝄞"));
        row("placeholders", QStringLiteral("%1 ${USERDATA}"), QStringLiteral("%2"));
        row("zero character", QString(QChar(0)), QStringLiteral("a") + QChar(0) + QLatin1Char('b'));
        row("long", QString(70000, QLatin1Char('a')), QString(70000, QLatin1Char('b')));
    }

    void whatIsSavedIsReadBack()
    {
        QFETCH(QString, id);
        QFETCH(QString, path);
        const testing::DataTree tree;
        Gestures gestures;
        gestures.add(id, new Action(path, {}, {}));
        gestures.add(QStringLiteral("without"), nullptr);
        gestures.add(QStringLiteral("another"), new Action(QStringLiteral("x"), {}, {}));
        VERIFY_SAVED(::path(tree), gestures);
        const Result result = ActionBindings::loadJson(::path(tree));
        QVERIFY2(result.isRight(), qPrintable(outcome(result)));
        const Bindings expected{{id, path}, {QStringLiteral("another"), QStringLiteral("x")}};
        QCOMPARE(result.right(), expected);
    }
};

QTEST_GUILESS_MAIN(tst_ActionBindings)
#include "tst_actionbindings.moc"
