#include "testing.h"

#include <comparison.h>
#include <sample.h>

#include <gesture_api/gestureservice.h>

#include <QJsonDocument>
#include <QJsonObject>

using namespace vellix::gesture;

Q_DECLARE_METATYPE(Row)
Q_DECLARE_METATYPE(Size)

class tst_Benchmarks : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void sampleLoads_data()
    {
        QTest::addColumn<Size>("size");
        for (const Size &size : {sizeS, sizeM, sizeL})
            QTest::newRow(size.name) << size;
    }
    void sampleLoads()
    {
        QFETCH(Size, size);
        const SampleTree tree(size);
        const SampleFeatures features;
        const GestureService service(ApplicationPaths({}, {}, tree.defaultFile()), &features, true);
        const QList<Gesture *> &gestures = service.gestureList();
        QCOMPARE(gestures.size(), size.gestures);
        const QVariantMap root = QJsonDocument::fromJson(sampleConfiguration(size)).object().toVariantMap();
        QCOMPARE(root.value("actions").toList().size(), size.actions);

        // A save of all must not merge any two of them.
        QSet<QString> ids;
        for (const Gesture *gesture : gestures)
            ids.insert(gesture->id());
        QCOMPARE(ids.size(), size.gestures);

        const std::vector<Touch> touches = sampleTouches(gestures);
        const auto hits = std::count_if(touches.begin(), touches.end(), [&](const Touch &touch) {
            return service.findGesture(touch.mode, touch.kind, touch.direction, touch.position);
        });
        QCOMPARE(touches.size(), 4096u);
        QCOMPARE(hits, 2048);
    }

    void sampleIsAlwaysTheSame()
    {
        const QByteArray text = sampleConfiguration(sizeS);
        QCOMPARE(text, sampleConfiguration(sizeS));
        QVERIFY2(text.size() > 31000 && text.size() < 35000, qPrintable(QString::number(text.size())));
    }

    void iniHoldsEveryEntry()
    {
        const QByteArray ini = sampleIni(sizeS);
        QCOMPARE(ini.count("[Gesture "), sizeS.gestures);
        QCOMPARE(ini.count("[Action "), sizeS.actions);
        QCOMPARE(ini.count("defaultAction="), sizeS.gestures);
    }

    void verdict_data()
    {
        QTest::addColumn<Row>("row");
        QTest::addColumn<QString>("expected");
        const auto row = [](double value, bool ofThisMachine = false) {
            return Row{{}, {}, {}, {}, value, {}, 2, ofThisMachine};
        };
        QTest::newRow("below the goal") << row(1.5) << "met";
        QTest::newRow("at the goal") << row(2) << "met";
        QTest::newRow("15 % over") << row(2.3) << "missed";
        QTest::newRow("more than 15 % over") << row(2.31) << "FAILED";
        QTest::newRow("far over, on this machine") << row(20, true) << "missed";
    }
    void verdict()
    {
        QFETCH(Row, row);
        QTEST(::verdict(row), "expected");
        QCOMPARE(fails(row), ::verdict(row) == QLatin1String("FAILED"));
    }

    void medianOfTurns()
    {
        QCOMPARE(median({5}), 5.0);
        QCOMPARE(median({9, 1, 5}), 5.0);
    }

    // The machine becomes ten times slower half way: the ratio stays.
    void ratioOfTurns()
    {
        int call = 0;
        const auto slowdown = [&] { return ++call > 40 ? 10.0 : 1.0; };
        const Comparison comparison = compare([&] { return 3 * slowdown(); }, [&] { return 2 * slowdown(); }, 41);
        QCOMPARE(comparison.ratio, 1.5);
    }
};

QTEST_GUILESS_MAIN(tst_Benchmarks)
#include "tst_benchmarks.moc"
