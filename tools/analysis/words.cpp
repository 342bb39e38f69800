#include "words.h"

#include <cmath>

namespace analysis {

static bool isVisible(uint character)
{
    switch (QChar::category(character)) {
    case QChar::Other_Control:
    case QChar::Other_Surrogate:
    case QChar::Separator_Line:
    case QChar::Separator_Paragraph: return false;
    // The two joiners of letters and pictures have no other effect.
    case QChar::Other_Format: return character == 0x200c || character == 0x200d;
    default: return !QChar::isNonCharacter(character);
    }
}

static QString escape(uint character)
{
    switch (character) {
    case '\n': return QStringLiteral("\\n");
    case '\r': return QStringLiteral("\\r");
    case '\t': return QStringLiteral("\\t");
    default: break;
    }
    if (character < 0x80)
        return QString::asprintf("\\x%02x", character);
    return QString::asprintf(character > 0xffff ? "\\U%08x" : "\\u%04x", character);
}

static QString jsonEscape(uint character)
{
    if (character == '\n')
        return QString(QLatin1Char('\n'));
    if (!QChar::requiresSurrogates(character))
        return QString::asprintf("\\u%04x", character);
    return QString::asprintf("\\u%04x\\u%04x", QChar::highSurrogate(character), QChar::lowSurrogate(character));
}

static QString replaced(const QString &text, QString (*escape)(uint character))
{
    QString all;
    all.reserve(text.size());
    for (int i = 0; i < text.size(); ++i) {
        const bool isPair = i + 1 < text.size() && text.at(i).isHighSurrogate() && text.at(i + 1).isLowSurrogate();
        const uint character = isPair ? QChar::surrogateToUcs4(text.at(i), text.at(i + 1)) : text.at(i).unicode();
        if (isVisible(character))
            all.append(text.midRef(i, isPair ? 2 : 1));
        else
            all.append(escape(character));
        i += isPair ? 1 : 0;
    }
    return all;
}

QString shown(const QString &text)
{
    return replaced(text, escape);
}

QString shownJson(const QString &json)
{
    return replaced(json, jsonEscape);
}

QString quoted(const QString &name)
{
    return QLatin1Char('\'') + name + QLatin1Char('\'');
}

QString listed(const QStringList &texts)
{
    if (texts.size() < 2)
        return texts.join(QString());
    return texts.mid(0, texts.size() - 1).join(QStringLiteral(", ")) + QStringLiteral(" and ") + texts.last();
}

QString percent(double share)
{
    if (share < 0.001)
        return QStringLiteral("less than 0.1 %");
    if (share > 0.999 && share < 1 - 1e-9)
        return QStringLiteral("more than 99.9 %");
    return QString::number(std::round(share * 1000) / 10) + QStringLiteral(" %");
}

QString messageOf(const vellix::Error &error)
{
    return error.records.empty() ? QStringLiteral("undefined error")
                                 : QString::fromStdString(error.records.front().message);
}

}
