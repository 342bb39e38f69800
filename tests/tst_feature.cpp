#include "testing.h"

#include <gesture_api/feature.h>

#include <vellix/platform/devcaps.h>
#include <vellix/platform/slateview.h>

#include <sstream>

using namespace vellix::gesture;
using testing::failure;

// The test's own device takes precedence over the platform libraries.
static struct
{
    bool frontlight = false;
    int colour = 0;
    bool speech = false;
    int asked = 0;
} device;

extern "C" bool device_has_frontlight(void)
{
    ++device.asked;
    return device.frontlight;
}

extern "C" int hw_is_frontlight_color_supported(void)
{
    ++device.asked;
    return device.colour;
}

extern "C" bool SvTTSSupported(void)
{
    ++device.asked;
    return device.speech;
}

static QStringList namesOf(const QList<Feature *> &features)
{
    QStringList names;
    for (const Feature *feature : features)
        names.append(feature->name());
    return names;
}

static QSet<QString> setOf(const QStringList &names)
{
    return QSet<QString>(names.cbegin(), names.cend());
}

// Features by letters: y supported, n not, e with an empty predicate, 0 no feature. Queried ones are noted by their
// place.
static QList<Feature *> featuresOf(const QString &letters, QObject *parent, QStringList *asked)
{
    QList<Feature *> features;
    for (int i = 0; i < letters.size(); ++i) {
        const QChar letter = letters.at(i);
        std::function<bool()> predicate = [letter, i, asked] {
            asked->append(QString::number(i));
            return letter == QLatin1Char('y');
        };
        if (letter == QLatin1Char('e'))
            predicate = nullptr;
        features.append(letter == QLatin1Char('0') ? nullptr : new Feature(letter, predicate, parent));
    }
    return features;
}

class tst_Feature : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init() { device = {}; }

    void supported_data()
    {
        QTest::addColumn<QString>("letter");
        QTest::addColumn<bool>("supported");
        QTest::addColumn<int>("asked");
        QTest::newRow("true on every read, asked once") << "y" << true << 1;
        QTest::newRow("false on every read, asked once") << "n" << false << 1;
        QTest::newRow("an empty predicate is never supported") << "e" << false << 0;
    }

    void supported()
    {
        QFETCH(QString, letter);
        QFETCH(bool, supported);
        QObject parent;
        QStringList asked;
        const Feature *feature = featuresOf(letter, &parent, &asked).first();
        QCOMPARE(feature->name(), letter);
        QCOMPARE(feature->parent(), &parent);
        QCOMPARE(asked.size(), 0);
        for (int read = 0; read < 3; ++read)
            QCOMPARE(feature->supported(), supported);
        QTEST(asked.size(), "asked");
    }

    void theFirstAnswerStays()
    {
        bool answer = true;
        const Feature feature(QStringLiteral("light"), [&answer] { return answer; });
        QVERIFY(feature.supported());
        answer = false;
        QVERIFY(feature.supported());
        QCOMPARE(feature.property("supported"), QVariant(true));
        QCOMPARE(feature.property("name"), QVariant(QStringLiteral("light")));
    }

    void allSupported_data()
    {
        QTest::addColumn<QString>("features");
        QTest::addColumn<bool>("supported");
        QTest::addColumn<QString>("asked");
        QTest::newRow("none") << "" << true << "";
        QTest::newRow("one with an empty predicate") << "e" << false << "";
        QTest::newRow("all, in list order") << "yyy" << true << "0 1 2";
        QTest::newRow("stops at the first unsupported") << "ynyn" << false << "0 1";
        QTest::newRow("stops at an empty predicate") << "yey" << false << "0";
        QTest::newRow("the last counts") << "yyn" << false << "0 1 2";
        QTest::newRow("no feature is passed over") << "0y" << true << "1";
    }

    void allSupported()
    {
        QFETCH(QString, features);
        QObject parent;
        QStringList asked;
        QTEST(Feature::allSupported(featuresOf(features, &parent, &asked)), "supported");
        QTEST(asked.join(QLatin1Char(' ')), "asked");
    }

    void unknownNames_data()
    {
        QTest::addColumn<QStringList>("names");
        QTest::addColumn<QString>("expected");
        const auto row = [](const char *tag, const QStringList &names, const char *unknown) {
            QTest::newRow(tag) << names << QStringLiteral("unknown feature: `%1`").arg(QString::fromUtf8(unknown));
        };
        row("unknown", {QStringLiteral("none")}, "none");
        row("one of several", {QStringLiteral("tts"), QStringLiteral("none"), QStringLiteral("frontlight")}, "none");
        row("case counts", {QStringLiteral("frontlight"), QStringLiteral("Frontlight")}, "Frontlight");
        row("the whole name counts", {QStringLiteral("frontligh")}, "frontligh");
        row("blanks count", {QStringLiteral("tts ")}, "tts ");
        row("empty name", {QString()}, "");
        row("a placeholder in the name", {QStringLiteral("%1")}, "%1");
        row("a backquote in the name", {QStringLiteral("a`b")}, "a`b");
        row("beyond ASCII", {QString::fromUtf8("Licht-ä")}, "Licht-ä");
    }

    void unknownNames()
    {
        QFETCH(QStringList, names);
        const testing::Features provider{{"frontlight", false}, {"tts", false}};
        const auto result = provider.featuresByNames(setOf(names));
        QTEST(failure(result), "expected");
        QCOMPARE(testing::failureFile(result), QStringLiteral("../../../gesture_api/src/feature"));
    }

    void theFirstUnknownOfTheSetIsTold()
    {
        const testing::Features provider;
        QSet<QString> names;
        for (int i = 0; i < 20; ++i)
            names.insert(QString::number(i));
        QCOMPARE(failure(provider.featuresByNames(names)),
                 QStringLiteral("unknown feature: `%1`").arg(*names.cbegin()));
    }

    void noNamesNoFeatures()
    {
        const auto none = testing::Features{{"tts", false}}.featuresByNames({});
        VERIFY_RIGHT(none);
        QCOMPARE(none.right(), QList<Feature *>());
        VERIFY_RIGHT(testing::Features().featuresByNames({}));
    }

    void foundInTheOrderOfTheSet()
    {
        testing::Features provider;
        QSet<QString> names;
        for (int i = 0; i < 20; ++i) {
            provider.add(QString::number(i), false);
            names.insert(QString::number(i));
        }
        const auto found = provider.featuresByNames(names);
        VERIFY_RIGHT(found);
        QCOMPARE(namesOf(found.right()), QStringList(names.values()));
    }

    void theFirstOfOneNameIsFound()
    {
        testing::Features provider{{"tts", false}, {"tts", false}};
        provider.features.prepend(nullptr);
        const auto found = provider.featuresByNames({QStringLiteral("tts")});
        VERIFY_RIGHT(found);
        QCOMPARE(found.right(), QList<Feature *>{provider.features.at(1)});
    }

    void defaultFeatures()
    {
        QObject parent;
        const auto *provider = new DefaultFeaturesProvider(&parent);
        QCOMPARE(provider->parent(), &parent);
        QCOMPARE(namesOf(provider->allFeatures()),
                 QStringList({QStringLiteral("frontlight"), QStringLiteral("smartlight"), QStringLiteral("tts")}));
        const QList<Feature *> features = provider->allFeatures();
        for (const Feature *feature : features)
            QCOMPARE(feature->parent(), provider);
        const auto found = provider->featuresByNames({QStringLiteral("smartlight")});
        VERIFY_RIGHT(found);
        QCOMPARE(found.right(), QList<Feature *>{features.at(1)});
    }

    void defaultFeaturesAskTheDevice_data()
    {
        QTest::addColumn<bool>("frontlight");
        QTest::addColumn<int>("colour");
        QTest::addColumn<bool>("speech");
        QTest::addColumn<QList<bool>>("supported");
        QTest::newRow("nothing") << false << 0 << false << QList<bool>{false, false, false};
        QTest::newRow("front light") << true << 0 << false << QList<bool>{true, false, false};
        QTest::newRow("colour is 1") << false << 1 << false << QList<bool>{false, true, false};
        QTest::newRow("any colour but 0") << false << 2 << false << QList<bool>{false, true, false};
        QTest::newRow("a negative colour") << false << -1 << false << QList<bool>{false, true, false};
        QTest::newRow("a colour beyond a byte") << false << 256 << false << QList<bool>{false, true, false};
        QTest::newRow("speech") << false << 0 << true << QList<bool>{false, false, true};
    }

    void defaultFeaturesAskTheDevice()
    {
        QFETCH(bool, frontlight);
        QFETCH(int, colour);
        QFETCH(bool, speech);
        const DefaultFeaturesProvider provider;
        const QList<Feature *> features = provider.allFeatures();
        QCOMPARE(device.asked, 0);
        // The device at the first read counts.
        device.frontlight = frontlight;
        device.colour = colour;
        device.speech = speech;
        QList<bool> supported;
        for (const Feature *feature : features)
            supported.append(feature->supported());
        QTEST(supported, "supported");
        QCOMPARE(device.asked, 3);

        device = {};
        supported.clear();
        for (const Feature *feature : features)
            supported.append(feature->supported());
        QTEST(supported, "supported");
        QCOMPARE(device.asked, 0);
    }

    void prettyPrint_data()
    {
        QTest::addColumn<QStringList>("features");
        QTest::addColumn<QString>("text");
        const QString yes = QStringLiteral(" - \033[38;2;0;255;0myes\033[0m\n");
        const QString no = QStringLiteral(" - \033[38;2;255;0;0mno \033[0m\n");
        const QString heading = QStringLiteral("features:\n");
        QTest::newRow("heading only") << QStringList() << heading;
        QTest::newRow("names are padded to the widest")
                << QStringList({QStringLiteral("+frontlight"), QStringLiteral("-tts")})
                << heading + QStringLiteral("  frontlight") + yes + QStringLiteral("  tts       ") + no;
        QTest::newRow("in list order") << QStringList(
                {QStringLiteral("-b"), QStringLiteral("+a"), QStringLiteral("-b")})
                                       << heading + QStringLiteral("  b") + no + QStringLiteral("  a") + yes
                        + QStringLiteral("  b") + no;
        QTest::newRow("padded by display width")
                << QStringList({QString::fromUtf8("+灯光"), QStringLiteral("+abcde"), QString::fromUtf8("+ä")})
                << heading + QString::fromUtf8("  灯光 ") + yes + QStringLiteral("  abcde") + yes
                        + QString::fromUtf8("  ä    ") + yes;
        QTest::newRow("what is none is left out")
                << QStringList({QString(), QStringLiteral("+a"), QString()}) << heading + QStringLiteral("  a") + yes;
    }

    void prettyPrint()
    {
        QFETCH(QStringList, features);
        QObject parent;
        QList<Feature *> list;
        for (const QString &feature : qAsConst(features)) {
            const bool supported = feature.startsWith(QLatin1Char('+'));
            list.append(feature.isEmpty() ? nullptr
                                          : new Feature(
                                                  feature.mid(1), [supported] { return supported; }, &parent));
        }
        std::ostringstream out;
        Feature::prettyPrintListMultiline(out, list);
        QTEST(QString::fromStdString(out.str()), "text");
    }

    void prettyPrintAsksAndFlushes()
    {
        struct CountingBuffer : std::stringbuf
        {
            int flushes = 0;
            int sync() override
            {
                ++flushes;
                return 0;
            }
        } buffer;
        std::ostream out(&buffer);
        QObject parent;
        QStringList asked;
        const QList<Feature *> features = featuresOf(QStringLiteral("ny"), &parent, &asked);
        Feature::prettyPrintListMultiline(out, features);
        QCOMPARE(asked, QStringList({QStringLiteral("0"), QStringLiteral("1")}));
        QCOMPARE(buffer.flushes, 3);
        Feature::prettyPrintListMultiline(out, features);
        QCOMPARE(asked.size(), 2);
    }
};

QTEST_GUILESS_MAIN(tst_Feature)
#include "tst_feature.moc"
