#include "report.h"

#include <vellix/platform/baseutil.h>

#include <QFileInfo>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QUrl>

#include <algorithm>

namespace analysis {

static QString levelOf(const Finding &finding)
{
    return finding.rule->severity == Severity::Error ? QStringLiteral("error") : QStringLiteral("warning");
}

static QString textOf(const Finding &finding)
{
    return finding.devices.isEmpty() ? finding.text
                                     : finding.text + QStringLiteral(" (") + finding.devices + QLatin1Char(')');
}

// What a terminal shows and does not obey.
static QString printable(const QString &text)
{
    QString shown = text;
    for (QChar &c : shown) {
        if (c == QLatin1Char('\t'))
            c = QLatin1Char(' ');
        else if (c.category() == QChar::Other_Control || c.category() == QChar::Other_Format)
            c = QChar(QChar::ReplacementCharacter);
    }
    return shown;
}

// As many blanks as a text is wide.
static QString blanksFor(const QString &text)
{
    const auto aligned = vellix::Utf8::alignLeftByWhitespace({text.toStdString(), std::string()});
    return QString::fromStdString(aligned.at(1));
}

// The line and what marks the place in it; of a very long line what is near.
static QString excerpt(const Finding &finding)
{
    const int before = 100;
    const int behind = 60;
    const JsonText &text = *finding.file;
    const Span line = text.lineOf(finding.span.begin);
    const int markEnd = std::max(std::min(finding.span.end, line.end), finding.span.begin);
    // As many bytes as so many characters may have.
    const auto part = [&text](int from, int to) {
        return printable(QString::fromUtf8(text.bytes().mid(from, std::min(to - from, 4 * (before + behind)))));
    };
    QString left = part(std::max(line.begin, finding.span.begin - 4 * before), finding.span.begin);
    if (left.size() > before || finding.span.begin - line.begin > 4 * before)
        left = QStringLiteral("…") + left.right(before);
    const QString marked = part(finding.span.begin, markEnd).left(before);
    QString right = part(finding.span.begin, line.end).mid(marked.size());
    if (right.size() > behind)
        right = right.left(behind) + QStringLiteral("…");
    const int length = std::max(1, blanksFor(marked).size());
    return QStringLiteral("    ") + left + marked + right + QStringLiteral("\n    ") + blanksFor(left)
            + QLatin1Char('^') + QString(length - 1, QLatin1Char('~'));
}

QString toText(const Finding &finding)
{
    const Position position = finding.file->positionOf(finding.span.begin);
    QString text =
            QStringLiteral("%1:%2:%3: ").arg(printable(finding.file->path())).arg(position.line).arg(position.column)
            + levelOf(finding) + QStringLiteral(": ") + printable(textOf(finding)) + QStringLiteral(" [")
            + QLatin1String(finding.rule->id) + QStringLiteral("]\n");
    if (!finding.file->bytes().isEmpty())
        text += excerpt(finding) + QLatin1Char('\n');
    if (!finding.hint.isEmpty())
        text += QStringLiteral("    hint: ") + printable(finding.hint) + QLatin1Char('\n');
    return text;
}

QString toJson(const Findings &findings, const QStringList &files)
{
    QJsonArray list;
    for (const Finding &finding : findings.list()) {
        const Position begin = finding.file->positionOf(finding.span.begin);
        const Position end = finding.file->positionOf(finding.span.end);
        list.append(QJsonObject{{QStringLiteral("file"), finding.file->path()},
                                {QStringLiteral("line"), begin.line},
                                {QStringLiteral("column"), begin.column},
                                {QStringLiteral("endLine"), end.line},
                                {QStringLiteral("endColumn"), end.column},
                                {QStringLiteral("severity"), levelOf(finding)},
                                {QStringLiteral("rule"), QLatin1String(finding.rule->id)},
                                {QStringLiteral("text"), finding.text},
                                {QStringLiteral("devices"), finding.devices},
                                {QStringLiteral("hint"), finding.hint}});
    }
    const QJsonObject report{{QStringLiteral("files"), QJsonArray::fromStringList(files)},
                             {QStringLiteral("errors"), findings.count(Severity::Error)},
                             {QStringLiteral("warnings"), findings.count(Severity::Warning)},
                             {QStringLiteral("findings"), list}};
    return QString::fromUtf8(QJsonDocument(report).toJson());
}

static QJsonObject sarifText(const QString &text)
{
    return {{QStringLiteral("text"), text}};
}

static QJsonObject sarifResult(const Finding &finding)
{
    const Position begin = finding.file->positionOf(finding.span.begin);
    const Position end = finding.file->positionOf(finding.span.end);
    const QJsonObject region{{QStringLiteral("startLine"), begin.line},
                             {QStringLiteral("startColumn"), begin.column},
                             {QStringLiteral("endLine"), end.line},
                             {QStringLiteral("endColumn"), end.column}};
    const QString uri =
            QString::fromLatin1(QUrl::fromLocalFile(QFileInfo(finding.file->path()).absoluteFilePath()).toEncoded());
    const QJsonObject location{
            {QStringLiteral("physicalLocation"),
             QJsonObject{{QStringLiteral("artifactLocation"), QJsonObject{{QStringLiteral("uri"), uri}}},
                         {QStringLiteral("region"), region}}}};
    return {{QStringLiteral("ruleId"), QLatin1String(finding.rule->id)},
            {QStringLiteral("ruleIndex"), allRules().indexOf(finding.rule)},
            {QStringLiteral("level"), levelOf(finding)},
            {QStringLiteral("message"), sarifText(textOf(finding) + QStringLiteral("\n") + finding.hint)},
            {QStringLiteral("locations"), QJsonArray{location}}};
}

QString toSarif(const Findings &findings, const QString &toolVersion)
{
    QJsonArray ruleList;
    for (const Rule *rule : allRules()) {
        const bool isError = rule->severity == Severity::Error;
        ruleList.append(QJsonObject{{QStringLiteral("id"), QLatin1String(rule->id)},
                                    {QStringLiteral("shortDescription"), sarifText(QString::fromUtf8(rule->meaning))},
                                    {QStringLiteral("help"), sarifText(QString::fromUtf8(rule->hint))},
                                    {QStringLiteral("defaultConfiguration"),
                                     QJsonObject{{QStringLiteral("level"),
                                                  isError ? QStringLiteral("error") : QStringLiteral("warning")}}}});
    }
    QJsonArray results;
    for (const Finding &finding : findings.list())
        results.append(sarifResult(finding));
    const QJsonObject driver{{QStringLiteral("name"), QStringLiteral("gesturectl")},
                             {QStringLiteral("version"), toolVersion},
                             {QStringLiteral("rules"), ruleList}};
    const QJsonObject run{{QStringLiteral("tool"), QJsonObject{{QStringLiteral("driver"), driver}}},
                          {QStringLiteral("columnKind"), QStringLiteral("unicodeCodePoints")},
                          {QStringLiteral("results"), results}};
    const QJsonObject log{{QStringLiteral("$schema"), QStringLiteral("https://json.schemastore.org/sarif-2.1.0.json")},
                          {QStringLiteral("version"), QStringLiteral("2.1.0")},
                          {QStringLiteral("runs"), QJsonArray{run}}};
    return QString::fromUtf8(QJsonDocument(log).toJson());
}

}
