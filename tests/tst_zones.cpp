#include "testing.h"

#include <gesture_api/gesture.h>
#include <gesture_api/gestureservice.h>
#include <gesture_api/zones.h>

#include <limits>

using namespace vellix::gesture;
using testing::failure;

static const double notANumber = std::numeric_limits<double>::quiet_NaN();

class tst_Zones : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void zeroDivider_data()
    {
        QTest::addColumn<double>("x");
        QTest::addColumn<double>("y");
        QTest::addColumn<QString>("expected");
        QTest::newRow("both zero: x is told") << 0.0 << 0.0 << "divider.x is 0";
        QTest::newRow("y zero") << 3.0 << 0.0 << "divider.y is 0";
        QTest::newRow("negative zero x") << -0.0 << 5.0 << "divider.x is 0";
        QTest::newRow("negative zero y") << 5.0 << -0.0 << "divider.y is 0";
        QTest::newRow("NaN passes") << notANumber << notANumber << "no failure";
        QTest::newRow("the smallest double passes") << std::numeric_limits<double>::denorm_min() << 1.0 << "no failure";
        QTest::newRow("infinity passes") << std::numeric_limits<double>::infinity() << 1.0 << "no failure";
    }

    void zeroDivider()
    {
        QFETCH(double, x);
        QFETCH(double, y);
        const auto zones = Zones::generate3x3Model(QPointF(x, y));
        QTEST(failure(zones), "expected");
        if (zones.isLeft())
            QCOMPARE(testing::failureFile(zones), QStringLiteral("../../../gesture_api/src/zones"));
    }

    void zeroStripeDivider_data()
    {
        QTest::addColumn<double>("divider");
        QTest::addColumn<QString>("expected");
        QTest::newRow("zero") << 0.0 << "divider.x is 0";
        QTest::newRow("negative zero") << -0.0 << "divider.x is 0";
        QTest::newRow("NaN passes") << notANumber << "no failure";
    }

    void zeroStripeDivider()
    {
        QFETCH(double, divider);
        QTEST(failure(Zones::generateV3Model(divider)), "expected");
    }

    void gridOfThree()
    {
        const auto zones = Zones::generate3x3Model(QPointF(3, 3));
        VERIFY_RIGHT(zones);
        QCOMPARE(zones.right().size(), 9);
        QVERIFY(!zones.right().contains(QStringLiteral("whole")));
        const QRectF center = zones.right().value(QStringLiteral("center"));
        // Subtract first, then divide: exactly these doubles.
        QVERIFY(center.x() == 1 / 3.0 && center.y() == 1 / 3.0);
        QVERIFY(center.width() == (3 - 2) / 3.0 && center.height() == (3 - 2) / 3.0);
        QVERIFY(zones.right().value(QStringLiteral("right")).x() == (3 - 1) / 3.0);
    }

    // Each value is exactly the double of its expression, at dividers where another expression rounds differently.
    void everyExpressionOfTheGrid_data()
    {
        QTest::addColumn<QRectF>("expected");
        const double X = 7;
        const double Y = 27;
        QTest::newRow("center") << QRectF(1 / X, 1 / Y, (X - 2) / X, (Y - 2) / Y);
        QTest::newRow("left") << QRectF(0, 1 / Y, 1 / X, (Y - 2) / Y);
        QTest::newRow("right") << QRectF((X - 1) / X, 1 / Y, 1 / X, (Y - 2) / Y);
        QTest::newRow("top") << QRectF(1 / X, 0, (X - 2) / X, 1 / Y);
        QTest::newRow("bottom") << QRectF(1 / X, (Y - 1) / Y, (X - 2) / X, 1 / Y);
        QTest::newRow("leftTop") << QRectF(0, 0, 1 / X, 1 / Y);
        QTest::newRow("rightTop") << QRectF((X - 1) / X, 0, 1 / X, 1 / Y);
        QTest::newRow("leftBottom") << QRectF(0, (Y - 1) / Y, 1 / X, 1 / Y);
        QTest::newRow("rightBottom") << QRectF((X - 1) / X, (Y - 1) / Y, 1 / X, 1 / Y);
    }

    void everyExpressionOfTheGrid()
    {
        QVERIFY((7 - 1) / 7.0 != 1 - 1 / 7.0); // the order of the operations matters
        QVERIFY((27 - 1) / 27.0 != 1 - 1 / 27.0);
        const auto zones = Zones::generate3x3Model(QPointF(7, 27));
        VERIFY_RIGHT(zones);
        const QRectF zone = zones.right().value(QString::fromLatin1(QTest::currentDataTag()));
        QFETCH(QRectF, expected);
        QVERIFY(zone.x() == expected.x() && zone.y() == expected.y() && zone.width() == expected.width()
                && zone.height() == expected.height());
    }

    void smallDividersGiveEmptyAndNegativeMiddles()
    {
        const auto two = Zones::generate3x3Model(QPointF(2, 2));
        VERIFY_RIGHT(two);
        QVERIFY(two.right().value(QStringLiteral("center")).width() == 0.0);
        const auto less = Zones::generate3x3Model(QPointF(1.5, 1.5));
        VERIFY_RIGHT(less);
        QVERIFY(less.right().value(QStringLiteral("center")).height() == (1.5 - 2) / 1.5);
    }

    void stripes()
    {
        const auto zones = Zones::generateV3Model(3.0);
        VERIFY_RIGHT(zones);
        QCOMPARE(zones.right().size(), 3);
        QVERIFY(zones.right().value(QStringLiteral("centerVerticalLine")) == QRectF(1 / 3.0, 0, 1 / 3.0, 1));
        QVERIFY(zones.right().value(QStringLiteral("leftVerticalLine")) == QRectF(0, 0, 1 / 3.0, 1));
        QVERIFY(zones.right().value(QStringLiteral("rightVerticalLine")) == QRectF(2 / 3.0, 0, 1 / 3.0, 1));
    }

    void whole()
    {
        const QMap<QString, QRectF> expected{{QStringLiteral("whole"), QRectF(0, 0, 1, 1)}};
        QCOMPARE(Zones::wholeZone(), expected);
        QCOMPARE(Gesture::wholeZone, QRectF(0, 0, 1, 1));
    }

    void contains_data()
    {
        QTest::addColumn<QRectF>("outer");
        QTest::addColumn<QRectF>("inner");
        QTest::addColumn<bool>("expected");
        const QRectF outer(0.25, 0.25, 0.5, 0.5);
        QTest::newRow("itself") << outer << outer << true;
        QTest::newRow("edges touch") << QRectF(0, 0, 1, 1) << QRectF(0.75, 0.8, 0.25, 0.2) << true;
        QTest::newRow("elsewhere") << QRectF(0.25, 0.2, 0.5, 0.6) << QRectF(0.2, 0.3, 0.1, 0.1) << false;
        QTest::newRow("over the left edge") << outer << QRectF(0.2, 0.3, 0.2, 0.2) << false;
        QTest::newRow("over the top edge") << outer << QRectF(0.3, 0.2, 0.2, 0.2) << false;
        QTest::newRow("over the right edge") << outer << QRectF(0.3, 0.3, 0.5, 0.2) << false;
        QTest::newRow("over the bottom edge") << outer << QRectF(0.3, 0.3, 0.2, 0.5) << false;
        QTest::newRow("no tolerance") << QRectF(0, 0, 1, 1) << QRectF(0, 0, 1 + 1e-15, 1) << false;
        QTest::newRow("NaN is never inside") << outer << QRectF(notANumber, 0.3, 0.1, 0.1) << false;
    }

    void contains()
    {
        QFETCH(QRectF, outer);
        QFETCH(QRectF, inner);
        QTEST(Zones::contains(outer, inner), "expected");
    }

    void predefined_data()
    {
        QTest::addColumn<QRectF>("expected");
        QTest::newRow("bottom") << QRectF(0.25, 0.8, 0.5, 0.2);
        QTest::newRow("center") << QRectF(0.25, 0.2, 0.5, 0.6);
        QTest::newRow("centerVerticalLine") << QRectF(0.125, 0, 0.75, 1);
        QTest::newRow("left") << QRectF(0, 0.2, 0.25, 0.6);
        QTest::newRow("leftBottom") << QRectF(0, 0.8, 0.25, 0.2);
        QTest::newRow("leftTop") << QRectF(0, 0, 0.25, 0.2);
        QTest::newRow("leftVerticalLine") << QRectF(0, 0, 0.125, 1);
        QTest::newRow("right") << QRectF(0.75, 0.2, 0.25, 0.6);
        QTest::newRow("rightBottom") << QRectF(0.75, 0.8, 0.25, 0.2);
        QTest::newRow("rightTop") << QRectF(0.75, 0, 0.25, 0.2);
        QTest::newRow("rightVerticalLine") << QRectF(0.875, 0, 0.125, 1);
        QTest::newRow("top") << QRectF(0.25, 0, 0.5, 0.2);
        QTest::newRow("whole") << QRectF(0, 0, 1, 1);
    }

    void predefined()
    {
        QCOMPARE(GestureService::predefinedZones.size(), 13);
        const QString name = QString::fromLatin1(QTest::currentDataTag());
        QVERIFY(GestureService::predefinedZones.contains(name));
        const QRectF zone = GestureService::predefinedZones.value(name);
        QFETCH(QRectF, expected);
        QVERIFY(zone.x() == expected.x() && zone.y() == expected.y() && zone.width() == expected.width()
                && zone.height() == expected.height());
    }
};

QTEST_GUILESS_MAIN(tst_Zones)
#include "tst_zones.moc"
