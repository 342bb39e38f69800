#include "testing.h"

#include <vellix/stringutils.h>

using vellix::StringUtils;

class tst_StringUtils : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void capitalizeFirst_data()
    {
        QTest::addColumn<QString>("text");
        QTest::addColumn<QString>("expected");
        QTest::newRow("empty") << ""
                               << "";
        QTest::newRow("digit first") << "3x3"
                                     << "3x3";
        QTest::newRow("upper case already") << "Left"
                                            << "Left";
        QTest::newRow("the rest keeps its case") << "leftTop bAr"
                                                 << "LeftTop bAr";
        QTest::newRow("all lower") << "word"
                                   << "Word";
        QTest::newRow("beyond ASCII") << QString::fromUtf8("äpfel") << QString::fromUtf8("Äpfel");
        QTest::newRow("upper case and not title case") << QString::fromUtf8("ǆa") << QString::fromUtf8("Ǆa");
        QTest::newRow("no locale rules") << "i"
                                         << "I";
        QTest::newRow("one unit only: sharp s stays") << QString::fromUtf8("ßa") << QString::fromUtf8("ßa");
        QTest::newRow("a surrogate pair stays whole") << QString::fromUtf8("𐐨a") << QString::fromUtf8("𐐨a");
    }

    void capitalizeFirst()
    {
        QFETCH(QString, text);
        QTEST(StringUtils::capitalizeFirst(text), "expected");
    }

    void capitalizeFirstOnEach()
    {
        QCOMPARE(StringUtils::capitalizeFirstOnEach({}), QStringList());
        QCOMPARE(StringUtils::capitalizeFirstOnEach({QStringLiteral("a"), QString(), QStringLiteral("bC")}),
                 QStringList({QStringLiteral("A"), QString(), QStringLiteral("BC")}));
    }

    void sortedUnique_data()
    {
        QTest::addColumn<QStringList>("list");
        QTest::addColumn<QStringList>("expected");
        QTest::newRow("none") << QStringList() << QStringList();
        QTest::newRow("case kept, empty first")
                << QStringList({"b", "a", "b", "A", ""}) << QStringList({"", "A", "a", "b"});
        QTest::newRow("several empty become one") << QStringList({"", "x", ""}) << QStringList({"", "x"});
        QTest::newRow("by UTF-16 unit") << QStringList({QString::fromUtf8("ﬀ"), QString::fromUtf8("😀"), "z"})
                                        << QStringList({"z", QString::fromUtf8("😀"), QString::fromUtf8("ﬀ")});
    }

    void sortedUnique()
    {
        QFETCH(QStringList, list);
        QTEST(StringUtils::sortedUnique(std::move(list)), "expected");
    }
};

QTEST_GUILESS_MAIN(tst_StringUtils)
#include "tst_stringutils.moc"
