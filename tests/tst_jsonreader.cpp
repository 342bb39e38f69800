#include "testing.h"

#include "jsonreader.h"

#include <vellix/platform/vxcomponents.h>

#include <QJsonDocument>

#include <cstring>

using namespace vellix::components;

// The reader's answers are Qt's, also in the types, or it leaves the document to Qt's parser.
class tst_JsonReader : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void document_data()
    {
        QTest::addColumn<QByteArray>("text");
        QTest::addColumn<bool>("isRead"); // without Qt's parser
        addStructures();
        addNumbers();
        addStrings();
        addDuplicates();
        addFaults();
    }

    void document()
    {
        QFETCH(QByteArray, text);
        QFETCH(bool, isRead);
        QJsonParseError error;
        const QVariant expected = QJsonDocument::fromJson(text, &error).toVariant();

        QVariant read;
        QCOMPARE(readJson(text, &read), isRead);
        if (isRead)
            QCOMPARE(described(read), described(expected));

        QTemporaryDir directory;
        const QString file = directory.filePath(QStringLiteral("file.json"));
        testing::writeFile(file, text);
        const auto loaded = VariantLoader::loadJson(file);
        QCOMPARE(loaded.isRight(), error.error == QJsonParseError::NoError);
        if (loaded.isRight())
            QCOMPARE(described(loaded.right()), described(expected));
        else
            QCOMPARE(testing::failure(loaded).section(QStringLiteral(": "), 1), error.errorString());
    }

    // Qt's parser would not free them, so the expected value is not read by it.
    void replacedContainersAreFreed()
    {
        QTemporaryDir directory;
        const QString file = directory.filePath(QStringLiteral("file.json"));
        testing::writeFile(file, R"({"a": [1], "a": {"b": {}, "b": [2]}, "a": ["x"]})");
        const auto loaded = VariantLoader::loadJson(file);
        VERIFY_RIGHT(loaded);
        QCOMPARE(described(loaded.right()), described(QVariantMap{{"a", QVariantList{"x"}}}));
    }

    // All that the description of a document must distinguish.
    void descriptionDistinguishes_data()
    {
        QTest::addColumn<QVariant>("one");
        QTest::addColumn<QVariant>("other");
        QTest::newRow("types") << QVariant(1) << QVariant(1LL);
        QTest::newRow("nulls") << QVariant() << QVariant::fromValue(nullptr);
        QTest::newRow("zeros") << QVariant(0.0) << QVariant(-0.0);
        QTest::newRow("neighbouring doubles") << QVariant(0.3) << QVariant(0.1 + 0.2);
        QTest::newRow("values in a map") << QVariant(QVariantMap{{"a", 1}}) << QVariant(QVariantMap{{"a", 1.0}});
        QTest::newRow("keys") << QVariant(QVariantMap{{"a", 1}}) << QVariant(QVariantMap{{"b", 1}});
        QTest::newRow("values in a list") << QVariant(QVariantList{1}) << QVariant(QVariantList{1.0});
        QTest::newRow("strings") << QVariant(QString("a")) << QVariant(QString("b"));
        QTest::newRow("null strings") << QVariant(QString()) << QVariant(QString(""));
        QTest::newRow("nesting") << QVariant(QVariantList{QVariantList{1}, 2})
                                 << QVariant(QVariantList{QVariantList{1, 2}});
    }

    void descriptionDistinguishes()
    {
        QFETCH(QVariant, one);
        QFETCH(QVariant, other);
        QVERIFY(described(one) != described(other));
    }

    // The memory of names that occur many times is shared, as in a list of gestures.
    void repeatedStringsAreShared()
    {
        QVariant read;
        QVERIFY(readJson(R"(      [{"kind": "swipe"}, {"kind": "swipe"}])", &read));
        const QVariantMap one = read.toList().at(0).toMap();
        const QVariantMap other = read.toList().at(1).toMap();
        QCOMPARE(one.firstKey().constData(), other.firstKey().constData());
        QCOMPARE(one.first().toString().constData(), other.first().toString().constData());
    }

    // Strings of one length and one end, and of one slot in the cache, are different ones.
    void manyStrings()
    {
        QByteArrayList strings;
        for (int i = 0; i < 5000; ++i)
            strings.append('"' + QByteArray::number(i % 1700) + "_long_common_end\"");
        // The second has as many bytes as the first has characters. Some pairs share a slot.
        for (char c = '0'; c < 'z'; ++c) {
            for (char d = '0'; d < 'z' && c != '\\'; ++d)
                strings << QByteArray("\"ää") + c + (d == '\\' ? ' ' : d) + '"' << "\"ää\"";
        }
        const QByteArray text = '[' + strings.join(',') + ']';
        QVariant read;
        QVERIFY(readJson(text, &read));
        QCOMPARE(described(read), described(QJsonDocument::fromJson(text).toVariant()));
    }

    // RapidJSON alone rounds some of them to the neighbour of the nearest double.
    void manyDigits()
    {
        QByteArrayList numbers;
        for (qint64 digits = 9007199254740993; digits < 9007199254741393; ++digits) {
            for (int place = 1; place < 16; ++place)
                numbers.append(QByteArray::number(digits).insert(place, '.'));
            for (const char *exponent : {"E+10", "e+22", "E-30", "e-300", "E3", "e290"})
                numbers.append('-' + QByteArray::number(digits) + exponent);
        }
        const QByteArray text = '[' + numbers.join(',') + ']';
        QVariant read;
        QVERIFY(readJson(text, &read));
        QCOMPARE(described(read), described(QJsonDocument::fromJson(text).toVariant()));
    }

    // Blanks and strings of all lengths, at all distances from the end.
    void alignment()
    {
        for (int blanks = 0; blanks < 40; ++blanks) {
            for (int size = 0; size < 40; ++size) {
                const QByteArray text = QByteArray(blanks, ' ') + "[\"" + QByteArray(size, 'x') + "\","
                        + QByteArray(blanks, '\n') + "1]" + QByteArray(size, '\t');
                QVariant read;
                QVERIFY(readJson(text, &read));
                QCOMPARE(described(read), described(QJsonDocument::fromJson(text).toVariant()));
            }
        }
    }

private:
    static void row(const char *name, const QByteArray &text, bool isRead) { QTest::newRow(name) << text << isRead; }
    static void value(const QByteArray &text, bool isRead)
    {
        QTest::newRow(text.left(60).toPercentEncoding(" ,+\"\\")) << '[' + text + ']' << isRead;
    }

    static void string(const QByteArray &text, bool isRead) { value('"' + text + "\", \"" + text + '"', isRead); }

    void addStructures()
    {
        row("an empty list", "[]", true);
        row("an empty object", "{}", true);
        row("empty ones inside", R"([[], {}, {"a": [], "b": {}}])", true);
        row("constants", "[null, true, false]", true);
        row("keys in order", R"({"a": 1, "ab": 2, "b": 3})", true);
        row("keys in any order", R"({"c": 1, "a": 2, "b": 3, "B": 4, "": 5})", true);
        row("an empty key", R"({"": 1})", true);
        row("blanks", " \t\r\n[ \t\r\n1 \t\r\n, 2 ] \n", true);
        row("a blank of another kind", "[\f1]", false);
        row("a byte order mark", "\xef\xbb\xbf[1]", true);
        row("two byte order marks", "\xef\xbb\xbf\xef\xbb\xbf[1]", false);
        row("deep", QByteArray(64, '[') + QByteArray(64, ']'), true);
        row("deeper", QByteArray(65, '[') + QByteArray(65, ']'), false);
        row("deeper objects", QByteArray("{\"a\":").repeated(65) + '1' + QByteArray(65, '}'), false);
        row("deep one after the other", '[' + QByteArray("[{}],").repeated(100) + "1]", true);
        row("the deepest", QByteArray(1024, '[') + QByteArray(1024, ']'), false);
        row("too deep", QByteArray(1025, '[') + QByteArray(1025, ']'), false);
        row("much too deep", QByteArray(1000000, '['), false);
    }

    void addNumbers()
    {
        for (const char *whole :
             {"0", "-0", "1", "-1", "2147483647", "2147483648", "-2147483648", "-2147483649", "4294967295",
              "4294967296", "9007199254740992", "9007199254740993", "9223372036854775807", "9223372036854775808",
              "-9223372036854775808", "-9223372036854775809", "18446744073709551615", "18446744073709551616",
              "123456789012345678901234567890"})
            value(whole, true);
        for (const char *wholeDouble :
             {"1.0", "-0.0", "0.0", "0e5", "1e3", "1E+3", "10e-1", "9007199254740993.0", "1e18",
              "9223372036854775807.0", "9223372036854774784.0", "-9223372036854775808.0", "1e19"})
            value(wholeDouble, true);
        for (const char *fraction :
             {"0.1",
              "-0.1",
              "0.30000000000000004",
              "0.9868011474609375",
              "123456789.01234567",
              "0.000000000000001",
              "999999999999.999",
              "1.7976931348623157e308",
              "2.2250738585072014e-308",
              "5e-324",
              "4.9e-324",
              "1e-5",
              "2.2250738585072011e-308",
              "1e22",
              "1e23",
              "8.41e21",
              "9.5367431640625e-7",
              "0.1e1",
              "1.5E-1",
              "17976931348623158079372897140530341507993413271003782693617377898044496829276475094664901797758720709633"
              "0"
              "28641669288791094655554785194040263065748867150582068190890200070838367627385484581771153176447573027006"
              "98"
              "55571366959622842914819860834936475292719074168444365510704342711559699508093042880"})
            value(fraction, true);
        for (const char *odd : {"1e-999", "1e999", "-1e999", "1.", ".5", "-", "01", "-01", "+1", "1e", "1e+", "0x1",
                                "1.e1", "-.5", "1e-400", "NaN", "Infinity", "1.0.0", "1e1e1"})
            value(odd, false);
        value("0e-999", true);
        row("numbers at the end of everything", "[1.5", false);
        row("a number between brackets and signs", R"({"a":-1.25e2,"e":0.5,"-":1e0})", true);
    }

    void addStrings()
    {
        for (const char *usual :
             {"", "a", R"(\"\\\/\b\f\n\r\t)", R"(a\u0000b)", R"(\u0000)", R"(\u00e4\u20ac)", R"(\ud83d\ude00)",
              R"(text \ud83d\ude00 text)", R"(\u0041\uFFFE\uffff)", "äö€😀", R"(ä\u00e4)", R"(\\)", R"(\\\")", R"(a\\)",
              "\x7f", "\xef\xbf\xbe\xef\xbf\xbf", "\xf4\x8f\xbf\xbf", "a\xef\xbb\xbf", "\x01\x1a\x1f\n"})
            string(usual, true);
        for (const char *odd : {"\xff",
                                "\x80",
                                "\xc0\x80",
                                "\xc1\xbf",
                                "\xe0\x80\x80",
                                "\xf0\x80\x80\x80",
                                "\xed\xa0\x80",
                                "\xed\xb0\x80",
                                "\xf4\x90\x80\x80",
                                "\xf8\x88\x80\x80\x80",
                                "\xc3",
                                "\xe2\x82",
                                "\xc3(",
                                "\xef\xbf\xbd",
                                "\xef\xbb\xbf",
                                "\xef\xbb\xbf+",
                                R"(\ufeff)",
                                R"(\ufeffa)",
                                R"(\ud800)",
                                R"(\ude00)",
                                R"(\ud800\ud800)",
                                R"(\ud800a)",
                                R"(\ude00\ud83d)",
                                R"(\ufffd)",
                                R"(\q)",
                                R"(\')",
                                R"(\u12g4)",
                                R"(\u12)",
                                R"(\)"})
            string(odd, false);
        for (const char *unquoted : {"\"a", "'a'", "a"})
            value(unquoted, false);
        row("a raw NUL", QByteArray("[\"a\0b\", \"\0\"]", 12), true);
        row("an invalid key", "{\"\xff\": 1}", false);
        row("a key with a byte order mark",
            "{\"\xef\xbb\xbf"
            "a\": 1, \"a\": 2}",
            false);
        row("keys of other alphabets", R"({"ä": 1, "я": 2, "€": 3, "😀": 4, "￮": 5, "z": 6})", true);
        row("escaped keys", "{\"\\u0061\\n\": 1, \"\\u0000\": 2, \"\\ud83d\\ude00\": 3}", true);
        row("a lone surrogate in a key", "{\"\\ud800\": 1}", false);
    }

    void addDuplicates()
    {
        row("the last of two", R"({"a": 1, "b": 2, "a": 3})", true);
        row("one escaped", "{\"a\": 1, \"\\u0061\": 2}", true);
        row("with other alphabets", "{\"ä\": 1, \"\\u00e4\": 2, \"a\": 3}", false);
        row("with other alphabets elsewhere", R"({"a": 1, "a": "ä"})", false);
        row("as many as Qt keeps in order", '{' + QByteArray("\"a\":1,\"b\":2,").repeated(7) + "\"b\":3,\"a\":4}",
            true);
        row("more", '{' + QByteArray("\"a\":1,\"b\":2,").repeated(8) + "\"a\":3}", false);
        row("many different keys", differentKeys(1000), true);
    }

    void addFaults()
    {
        row("nothing", "", false);
        row("blanks only", " \n", false);
        for (const char *scalar : {"5", "\"a\"", "null", "true", "-1.5 "})
            row(scalar, scalar, false);
        for (const char *text :
             {"[",         "{",        "]",        "}",         "[1",         "[1,",        "[1,]",  "[,]",
              "{\"a\"",    "{\"a\":",  "{\"a\":1", "{\"a\":1,", "{\"a\":1,}", "{a:1}",      "{1:1}", "[1 2]",
              "{\"a\" 1}", "[1] [2]",  "[1]x",     "[1]]",      "{}{}",       "[tru]",      "[nul",  "[True]",
              "[1]//",     "/* */[1]", "[1}",      "{]",        "[\"a\":1]",  "[undefined]"})
            row(text, text, false);
        row("a NUL after the document", QByteArray("[1]\0", 4), false);
        row("a NUL and more", QByteArray("[1]\0[2]", 7), false);
        row("a NUL within", QByteArray("[1\0]", 4), false);
        row("UTF-16", QByteArray("\xff\xfe[\0]\0", 6), false);
        row("UTF-16 without a mark", QByteArray("[\0]\0", 4), false);
        row("big-endian UTF-16", QByteArray("\0[\0]", 4), false);
    }

    static QByteArray differentKeys(int count)
    {
        QByteArrayList members;
        for (int i = 0; i < count; ++i)
            members.append('"' + QByteArray::number(i * 7919 % count) + "\": " + QByteArray::number(i));
        return '{' + members.join(',') + '}';
    }

    // A text for the value with every type, and with every bit of a double.
    static QString described(const QVariant &value)
    {
        const QString type = QString::fromLatin1(value.typeName());
        QStringList parts;
        if (value.userType() == QMetaType::QVariantMap) {
            const QVariantMap map = value.toMap();
            for (auto member = map.cbegin(); member != map.cend(); ++member)
                parts.append(quoted(member.key()) + QLatin1Char('=') + described(*member));
        } else if (value.userType() == QMetaType::QVariantList) {
            for (const QVariant &element : value.toList())
                parts.append(described(element));
        } else if (value.userType() == QMetaType::Double) {
            quint64 bits;
            const double number = value.toDouble();
            std::memcpy(&bits, &number, sizeof bits);
            parts.append(QString::number(bits, 16));
        } else {
            parts.append(quoted(value.toString()));
        }
        return type + (value.isValid() ? QString() : QStringLiteral("invalid")) + QLatin1Char('(')
                + parts.join(QLatin1String(", ")) + QLatin1Char(')');
    }

    // Every code unit; a null string differs from an empty one.
    static QString quoted(const QString &string)
    {
        QString units = string.isNull() ? QStringLiteral("null") : QString();
        for (const QChar unit : string)
            units += QString::number(unit.unicode(), 16) + QLatin1Char(' ');
        return units;
    }
};

QTEST_GUILESS_MAIN(tst_JsonReader)
#include "tst_jsonreader.moc"
