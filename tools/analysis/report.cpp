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

// Without a cut half of a character.
static QString whole(QString text)
{
    if (!text.isEmpty() && text.at(0).isLowSurrogate())
        text.remove(0, 1);
    if (!text.isEmpty() && text.at(text.size() - 1).isHighSurrogate())
        text.chop(1);
    return text;
}

// A part of a line as it is shown: tabs become blanks.
static QString shownPart(const QString &text)
{
    return shown(whole(text).replace(QLatin1Char('\t'), QLatin1Char(' ')));
}

// As many blanks as a text is wide.
static QString blanksFor(const QString &text)
{
    const auto aligned = vellix::Utf8::alignLeftByWhitespace({text.toStdString(), std::string()});
    return QString::fromStdString(aligned.at(1));
}

// The line, and a mark under the place in it; only the surroundings of a very long line.
static QString excerpt(const Finding &finding)
{
    const int before = 100;
    const int behind = 60;
    const JsonText &text = *finding.file;
    const Span line = text.lineOf(finding.span.begin);
    const int markEnd = std::max(std::min(finding.span.end, line.end), finding.span.begin);
    // The largest number of bytes for this number of characters.
    const auto part = [&text](int from, int to) {
        return QString::fromUtf8(text.bytes().mid(from, std::min(to - from, 4 * (before + behind))));
    };
    QString left = part(std::max(line.begin, finding.span.begin - 4 * before), finding.span.begin);
    const bool isCut = left.size() > before || finding.span.begin - line.begin > 4 * before;
    left = isCut ? QStringLiteral("…") + shownPart(left.right(before)) : shownPart(left);
    QString marked = whole(part(finding.span.begin, markEnd).left(before)); // the rest is for the part after it
    QString right = part(finding.span.begin, line.end).mid(marked.size());
    right = right.size() > behind ? shownPart(right.left(behind)) + QStringLiteral("…") : shownPart(right);
    marked = shownPart(marked);
    const int length = std::max(1, blanksFor(marked).size());
    return QStringLiteral("    ") + left + marked + right + QStringLiteral("\n    ") + blanksFor(left)
            + QLatin1Char('^') + QString(length - 1, QLatin1Char('~'));
}

QString toText(const Finding &finding)
{
    const Position position = finding.file->positionOf(finding.span.begin);
    QString text = QStringLiteral("%1:%2:%3: ").arg(shown(finding.file->path())).arg(position.line).arg(position.column)
            + levelOf(finding) + QStringLiteral(": ") + shown(textOf(finding)) + QStringLiteral(" [")
            + QLatin1String(finding.rule->id) + QStringLiteral("]\n");
    if (!finding.file->bytes().isEmpty())
        text += excerpt(finding) + QLatin1Char('\n');
    if (!finding.hint.isEmpty())
        text += QStringLiteral("    hint: ") + shown(finding.hint) + QLatin1Char('\n');
    return text;
}

QJsonDocument toJson(const Findings &findings, const QStringList &files)
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
    return QJsonDocument(report);
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

QJsonDocument toSarif(const Findings &findings, const QString &toolVersion)
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
    return QJsonDocument(log);
}

}
