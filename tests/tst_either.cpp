#include "testing.h"

#include <vellix/platform/host.h>

#include <QMap>
#include <QProcess>
#include <QRectF>

#include <sstream>

using namespace vellix;
using testing::debugText;
using testing::LogCapture;

using Result = Either<Error, int>;

static const Error oneRecord({"dir/file", 12}, "a message");

static Error chain()
{
    Error error({"a", 1}, "first");
    error.records.push_back({{"b", 2}, "second"});
    error.records.push_back({{"c", 3}, "third"});
    return error;
}

class tst_Either : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void buildersConvertToAnyResult()
    {
        const auto fails = []() -> Result { return Left(oneRecord); };
        const auto works = []() -> Result { return Right(7); };
        QVERIFY(fails().isLeft());
        QVERIFY(!fails().isRight());
        QCOMPARE(fails().left().records.front().message, std::string("a message"));
        QVERIFY(works().isRight());
        QCOMPARE(works().right(), 7);
        const Either<QString, qint64> text = Left(QStringLiteral("x"));
        QCOMPARE(text.left(), QStringLiteral("x"));
    }

    void sidesOfOneTypeStayApart()
    {
        const Either<int, int> left = Left(1);
        const Either<int, int> right = Right(1);
        QVERIFY(left.isLeft());
        QVERIFY(right.isRight());
    }

    void wrongSideThrows()
    {
        QVERIFY_EXCEPTION_THROWN(Result(Right(1)).left(), boost::bad_get);
        QVERIFY_EXCEPTION_THROWN(Result(Left(oneRecord)).right(), boost::bad_get);
    }

    void errorHoldsOneRecord()
    {
        QCOMPARE(oneRecord.records.size(), std::size_t(1));
        QCOMPARE(oneRecord.records.front().location.file, std::string("dir/file"));
        QCOMPARE(oneRecord.records.front().location.line, 12);
        const Error copy = chain();
        QCOMPARE(copy.records.size(), std::size_t(3));
        QCOMPARE(copy.records.back().message, std::string("third"));
        QVERIFY(Error().records.empty());
    }

    void mapMakesARightValue()
    {
        const auto mapped = Result(Right(2)).map([](int i) { return QString::number(i * 2); });
        QCOMPARE(mapped.right(), QStringLiteral("4"));
        const std::function<double(int)> half = [](int i) { return i / 2.0; };
        QCOMPARE(Result(Right(3)).map(half).right(), 1.5);
    }

    void mapNeverCallsOnALeftValue()
    {
        bool called = false;
        const auto mapped = Result(Left(oneRecord)).map([&](int i) {
            called = true;
            return i;
        });
        QVERIFY(!called);
        QCOMPARE(testing::failure(mapped), QStringLiteral("a message"));
    }

    void flatMapChains()
    {
        const auto next = [](int i) -> Either<Error, QString> {
            if (i < 0)
                return Left(Error({"next", 1}, "negative"));
            return Right(QString::number(i));
        };
        QCOMPARE(Result(Right(5)).flatMap(next).right(), QStringLiteral("5"));
        QCOMPARE(testing::failure(Result(Right(-5)).flatMap(next)), QStringLiteral("negative"));
        QCOMPARE(testing::failure(Result(Left(oneRecord)).flatMap(next)), QStringLiteral("a message"));
    }

    void functionMayReturnAReference()
    {
        const Result kept = Right(7);
        const auto same = [&kept](int) -> const Result & { return kept; };
        const auto text = [](const Error &error) -> const Error & { return error; };
        const Result one = Right(1);
        QVERIFY((std::is_same_v<decltype(one.flatMap(same)), Result>));
        QVERIFY((std::is_same_v<decltype(one.mapLeft(text)), Result>));
        QCOMPARE(one.flatMap(same).right(), 7);
        QCOMPARE(testing::failure(Result(Left(oneRecord)).flatMap(same)), QStringLiteral("a message"));
    }

    void flatMapNeverCallsOnALeftValue()
    {
        bool called = false;
        Result(Left(oneRecord)).flatMap([&](int i) -> Result {
            called = true;
            return Right(i);
        });
        QVERIFY(!called);
    }

    void mapLeftMakesALeftValue()
    {
        const auto words = [](const Error &e) { return QString::fromStdString(e.records.front().message); };
        QCOMPARE(Result(Left(oneRecord)).mapLeft(words).left(), QStringLiteral("a message"));
    }

    void mapLeftNeverCallsOnARightValue()
    {
        bool called = false;
        const auto mapped = Result(Right(1)).mapLeft([&](const Error &) {
            called = true;
            return 0;
        });
        QVERIFY(!called);
        QCOMPARE(mapped.right(), 1);
    }

    void emptyFunctionThrows()
    {
        QVERIFY_EXCEPTION_THROWN(Result(Right(1)).map(std::function<int(int)>()), std::bad_function_call);
        QVERIFY_EXCEPTION_THROWN(Result(Right(1)).flatMap(std::function<Result(int)>()), std::bad_function_call);
        QVERIFY_EXCEPTION_THROWN(Result(Left(oneRecord)).mapLeft(std::function<int(const Error &)>()),
                                 std::bad_function_call);
        // The function of the other side is not called, so it may be empty.
        QVERIFY(Result(Left(oneRecord)).map(std::function<int(int)>()).isLeft());
        QVERIFY(Result(Right(1)).mapLeft(std::function<int(const Error &)>()).isRight());
    }

    void rightValueLogsNothing_data()
    {
        QTest::addColumn<bool>("exitOnError");
        QTest::newRow("switch off") << false;
        QTest::newRow("switch on") << true;
    }

    void rightValueLogsNothing()
    {
        QFETCH(bool, exitOnError);
        LogCapture log;
        EitherPrivate::setExitOnError(exitOnError);
        const Result result = Right(3);
        QCOMPARE(result.getOrErr(0), 3);
        QCOMPARE(result.getOrWarn(0), 3);
        QCOMPARE(result.qGetOrErr(0), 3);
        EitherPrivate::setExitOnError(false);
        QVERIFY(log.lines.isEmpty());
        QVERIFY(log.qtMessages.isEmpty());
    }

    void getOrErrLogsAnError()
    {
        LogCapture log;
        const Either<Error, QMap<QString, QRectF>> result = Left(oneRecord);
        const QMap<QString, QRectF> fallback{{QStringLiteral("f"), QRectF(0, 0, 1, 1)}};
        QCOMPARE(result.getOrErr(fallback), fallback);
        QCOMPARE(log.lines.size(), 1);
        QCOMPARE(log.lines[0].level, QStringLiteral("error"));
        QVERIFY(log.lines[0].file.endsWith(QStringLiteral("either.h")));
        QCOMPARE(log.lines[0].line, 183);
        QCOMPARE(log.lines[0].body, QStringLiteral("expected right but dir/file:12: a message"));
        const QString signature = log.lines[0].function;
        for (const QString &part : {QStringLiteral("vellix::Either<"), QStringLiteral("::getOrErr(const R&) const"),
                                    QStringLiteral("vellix::Error"), QStringLiteral("QMap<QString, QRectF>")})
            QVERIFY2(QString(signature).replace(QStringLiteral("R &"), QStringLiteral("R&")).contains(part),
                     qPrintable(signature));
    }

    void getOrWarnLogsAWarningAndNeverEnds()
    {
        LogCapture log;
        EitherPrivate::setExitOnError(true);
        const Result result = Left(oneRecord);
        QCOMPARE(result.getOrWarn(9), 9);
        EitherPrivate::setExitOnError(false);
        QCOMPARE(log.lines.size(), 1);
        QCOMPARE(log.lines[0].level, QStringLiteral("warn"));
        QVERIFY(log.lines[0].file.endsWith(QStringLiteral("either.h")));
        QCOMPARE(log.lines[0].line, 162);
        QVERIFY(log.lines[0].function.contains(QStringLiteral("getOrWarn")));
        QCOMPARE(log.lines[0].body, QStringLiteral("expected right but dir/file:12: a message"));
    }

    void qGetOrErrIsACriticalMessage()
    {
        LogCapture log;
        QCOMPARE(Result(Left(oneRecord)).qGetOrErr(4), 4);
        QCOMPARE(log.qtMessages,
                 QStringList(QStringLiteral("critical default: \033[31m [error] expected right but \033[31m "
                                            "\"dir/file:12\" :  \"a message\" \033[0m \033[0m")));
        QCOMPARE(log.qtPlaces, QStringList(QStringLiteral(":0 "))); // without any place
        QVERIFY(log.lines.isEmpty());
    }

    void textIsUtf8()
    {
        const Error error({"dir/ä", 1}, "ü");
        QCOMPARE(debugText([&](QDebug &out) { out.nospace().noquote() << error; }),
                 QString::fromUtf8("\033[31mdir/ä:1: ü\033[0m"));
    }

    void functionMayReturnABuilder()
    {
        const auto nested = Result(Right(1)).map([](int i) { return Right(i); });
        QCOMPARE(nested.right().value(), 1);
    }

    void qGetOrErrQuotesAText()
    {
        LogCapture log;
        QCOMPARE((Either<QString, qint64>(Left(QStringLiteral("x"))).qGetOrErr(-5)), qint64(-5));
        QCOMPARE(log.qtMessages,
                 QStringList(QStringLiteral("critical default: \033[31m [error] expected right but \"x\" \033[0m")));
    }

    void exitSwitch_data()
    {
        QTest::addColumn<QString>("scenario");
        QTest::addColumn<int>("exitCode");
        QTest::newRow("getOrErr, switch on") << "getOrErr on" << 255;
        QTest::newRow("getOrErr, switch off") << "getOrErr off" << 0;
        QTest::newRow("qGetOrErr, switch on") << "qGetOrErr on" << 255;
        QTest::newRow("qGetOrErr, switch off") << "qGetOrErr off" << 0;
        QTest::newRow("getOrWarn, switch on") << "getOrWarn on" << 0;
    }

    void exitSwitch()
    {
        QFETCH(QString, scenario);
        QProcess child;
        child.start(QStringLiteral(TEST_PROGRAMS "/exitchild"), scenario.split(QLatin1Char(' ')));
        QVERIFY(child.waitForFinished(testing::patience));
        QCOMPARE(child.exitStatus(), QProcess::NormalExit);
        QTEST(child.exitCode(), "exitCode");
        const QByteArray errors = child.readAllStandardError();
        QVERIFY2(errors.contains("expected right but"), errors.constData());
        QVERIFY2(errors.contains("dir/file") && errors.contains("12") && errors.contains("a message"),
                 errors.constData());
        // Exit handlers run at either end of the process, now or later.
        QCOMPARE(child.readAllStandardOutput(), QByteArray("prepareExit\n"));
    }

    void debugForm_data()
    {
        QTest::addColumn<int>("records");
        QTest::addColumn<QString>("text");
        QTest::newRow("no record") << 0 << "\033[31m undefined error \033[0m ";
        QTest::newRow("one record") << 1 << "\033[31m \"dir/file:12\" :  \"a message\" \033[0m ";
        QTest::newRow("three records") << 3
                                       << "error:\n \033[3;41;30m causes chain: \033[0m \n "
                                          "\033[31m \t \"a:1\" :  \"first\" \033[0m \n "
                                          "\033[31m \t \"b:2\" :  \"second\" \033[0m \n "
                                          "\033[31m \t \"c:3\" :  \"third\" \033[0m \n "
                                          "\033[3;41;30m < ---- ---- > \033[0m \n ";
    }

    void debugForm()
    {
        QFETCH(int, records);
        const Error error = records == 0 ? Error() : records == 1 ? oneRecord : chain();
        QTEST(debugText([&](QDebug &out) { QCOMPARE(&(out << error), &out); }), "text");
    }

    void debugFormFollowsTheStream()
    {
        const QString text = debugText([](QDebug &out) { out.nospace().noquote() << oneRecord; });
        QCOMPARE(text, QStringLiteral("\033[31mdir/file:12: a message\033[0m"));
    }

    void streamForm_data()
    {
        QTest::addColumn<int>("records");
        QTest::addColumn<QString>("text");
        QTest::newRow("no record") << 0 << "undefined error";
        QTest::newRow("one record") << 1 << "dir/file:12: a message";
        QTest::newRow("three records") << 3 << "a:1: first, then b:2: second, then c:3: third";
    }

    void streamForm()
    {
        QFETCH(int, records);
        std::ostringstream out;
        out << (records == 0 ? Error() : records == 1 ? oneRecord : chain());
        QTEST(QString::fromStdString(out.str()), "text");
    }
};

QTEST_GUILESS_MAIN(tst_Either)
#include "tst_either.moc"
