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
        QTest::newRow("other warm LEDs do not count") << QStringList{"backlight/cold", "leds/warm"} << true << false;
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
