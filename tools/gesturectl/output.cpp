#include "output.h"

#include <QRegularExpression>

#include <cstdio>
#include <string>
#include <vector>

namespace gesturectl {

static void write(const QString &visible, std::FILE *stream)
{
    const QByteArray bytes = visible.toUtf8() + '\n';
    std::fwrite(bytes.constData(), 1, static_cast<std::size_t>(bytes.size()), stream);
    std::fflush(stream);
}

void print(const QString &line)
{
    write(shown(line), stdout);
}

void print(const QStringList &lines)
{
    QStringList visible;
    for (const QString &line : lines)
        visible.append(shown(line));
    if (!visible.isEmpty())
        write(visible.join(QLatin1Char('\n')), stdout);
}

void print(const QJsonDocument &document, QJsonDocument::JsonFormat format)
{
    write(analysis::shownJson(QString::fromUtf8(document.toJson(format).trimmed())), stdout);
}

// Whether the row has no text to the right.
static bool isLast(const QStringList &row, int column)
{
    for (int i = column + 1; i < row.size(); ++i) {
        if (!row.at(i).isEmpty())
            return false;
    }
    return true;
}

static void appendColumn(QStringList *lines, const QList<QStringList> &rows, int column)
{
    std::vector<std::string> texts;
    for (const QStringList &row : rows)
        texts.push_back(shown(row.at(column)).toStdString());
    const std::vector<std::string> aligned = vellix::Utf8::alignLeftByWhitespace(texts);
    for (int i = 0; i < rows.size(); ++i) {
        const auto at = static_cast<std::size_t>(i);
        const bool last = isLast(rows.at(i), column);
        (*lines)[i] += QString::fromStdString(last ? texts[at] : aligned[at] + "  ");
    }
}

QStringList tableLines(const QList<QStringList> &rows)
{
    QStringList lines;
    for (int i = 0; i < rows.size(); ++i)
        lines.append(QString());
    for (int column = 0; !rows.isEmpty() && column < rows.first().size(); ++column)
        appendColumn(&lines, rows, column);
    return lines;
}

void printTable(const QList<QStringList> &rows)
{
    print(tableLines(rows));
}

void printError(const QString &message)
{
    write(QStringLiteral("gesturectl: ") + shown(message), stderr);
}

// The library's critical messages have colours: keep them.
static void printQtMessage(QtMsgType type, const QMessageLogContext &context, const QString &text)
{
    static const QRegularExpression colour(QStringLiteral("\033\\[[0-9;]*m"));
    const QString message = qFormatLogMessage(type, context, text);
    QString visible;
    int end = 0;
    auto colours = type == QtCriticalMsg ? colour.globalMatch(message) : QRegularExpressionMatchIterator();
    while (colours.hasNext()) {
        const QRegularExpressionMatch match = colours.next();
        visible += shown(message.mid(end, match.capturedStart() - end)) + match.captured();
        end = match.capturedEnd();
    }
    write(visible + shown(message.mid(end)), stderr);
}

void takeQtMessages()
{
    qInstallMessageHandler(printQtMessage);
}

bool isPrinted()
{
    if (std::fflush(stdout) == 0 && !std::ferror(stdout))
        return true;
    printError(QStringLiteral("the output could not be written"));
    return false;
}

}
