#include "testing.h"

#include <vellix/platform/devcaps.h>
#include <vellix/platform/host.h>

#include <QDir>

using namespace vellix;

class tst_DevCaps : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void frontlight_data()
    {
        QTest::addColumn<QStringList>("entries");
        QTest::addColumn<bool>("light");
        QTest::addColumn<bool>("colour");
        QTest::newRow("nothing") << QStringList() << false << false;
        QTest::newRow("a backlight") << QStringList{"backlight/lcd"} << true << false;
        QTest::newRow("a front-light LED") << QStringList{"leds/frontlight"} << true << false;
        QTest::newRow("its name in capitals") << QStringList{"leds/FrontLight0"} << true << false;
        QTest::newRow("another LED is no light") << QStringList{"leds/power", "leds/capslock"} << false << false;
        QTest::newRow("warm and cold backlights") << QStringList{"backlight/warm", "backlight/cold"} << true << true;
        QTest::newRow("warm and cold LEDs")
                << QStringList{"leds/frontlight_amber", "leds/frontlight_white"} << true << true;
        QTest::newRow("one of each sort") << QStringList{"backlight/white", "leds/frontlight:warm"} << true << true;
        QTest::newRow("warm alone") << QStringList{"backlight/warm"} << true << false;
        QTest::newRow("two cold ones") << QStringList{"backlight/cold0", "backlight/cold1"} << true << false;
        QTest::newRow("one channel of a warm white") << QStringList{"backlight/lm3630a_warm_white"} << true << false;
        QTest::newRow("two channels of a warm white")
                << QStringList{"backlight/warm_white0", "leds/frontlight_white_warm"} << true << false;
        QTest::newRow("a warm and a cold white")
                << QStringList{"backlight/warm_white", "backlight/cold_white"} << true << true;
        QTest::newRow("a warm white and a white")
                << QStringList{"backlight/warm_white", "backlight/white"} << true << true;
        QTest::newRow("one channel of both names") << QStringList{"backlight/warm_cold"} << true << false;
        QTest::newRow("other warm LEDs do not count") << QStringList{"backlight/cold", "leds/warm"} << true << false;
    }

    // Each word is enough.
    void words_data()
    {
        QTest::addColumn<QString>("entry");
        QTest::addColumn<QString>("other"); // makes it a coloured light
        for (const char *frontlight : {"frontlight", "front-light", "front_light", "my_FRONT-light0"})
            QTest::newRow(frontlight) << QStringLiteral("leds/%1_warm").arg(frontlight) << "backlight/cold";
        for (const char *warm : {"warm", "amber", "orange"})
            QTest::newRow(warm) << QStringLiteral("backlight/%1").arg(warm) << "backlight/cold";
        for (const char *cold : {"cold", "cool", "white"})
            QTest::newRow(cold) << QStringLiteral("backlight/%1").arg(cold) << "backlight/warm";
    }

    void words()
    {
        QFETCH(QString, entry);
        QFETCH(QString, other);
        QTemporaryDir sysClass;
        QVERIFY(QDir(sysClass.path()).mkpath(entry));
        QVERIFY(devcaps::hasFrontlight(sysClass.path().toStdString()));
        QVERIFY(!devcaps::hasColourFrontlight(sysClass.path().toStdString()));
        QVERIFY(QDir(sysClass.path()).mkpath(other));
        QVERIFY(devcaps::hasColourFrontlight(sysClass.path().toStdString()));
    }

    void frontlight()
    {
        QFETCH(QStringList, entries);
        QTemporaryDir sysClass;
        for (const QString &entry : entries)
            QVERIFY(QDir(sysClass.path()).mkpath(entry));
        QTEST(devcaps::hasFrontlight(sysClass.path().toStdString()), "light");
        QTEST(devcaps::hasColourFrontlight(sysClass.path().toStdString()), "colour");
    }

    void theRunningSystemIsAsked()
    {
        QCOMPARE(device_has_frontlight(), devcaps::hasFrontlight("/sys/class"));
        QCOMPARE(hw_is_frontlight_color_supported() != 0, devcaps::hasColourFrontlight("/sys/class"));
    }
};

QTEST_GUILESS_MAIN(tst_DevCaps)
#include "tst_devcaps.moc"
