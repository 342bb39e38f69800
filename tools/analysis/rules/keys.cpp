#include "keys.h"

#include "families.h"

#include <analysis/hint.h>
#include <analysis/subject.h>
#include <analysis/values.h>

#include <QSet>

#include <algorithm>
#include <functional>

namespace analysis {

static void reportDuplicateKeysIn(const JsonText &text, const JsonText::Node &node, Findings *findings)
{
    QSet<QString> known;
    for (const JsonText::Node &child : node.children) {
        if (child.nameSpan.end > 0) {
            if (known.contains(child.name))
                findings->add("duplicate-key", Place(&text, &child, child.nameSpan),
                              quoted(child.name) + QStringLiteral(" was set before: the earlier value is ignored"));
            known.insert(child.name);
        }
        reportDuplicateKeysIn(text, child, findings);
    }
}

void reportDuplicateKeys(const JsonText &text, Findings *findings)
{
    reportDuplicateKeysIn(text, text.root(), findings);
}

void reportUnknownKeys(const QVariantMap &object, const Place &place, const Fields &fields, Findings *findings)
{
    for (auto member = object.cbegin(); member != object.cend(); ++member) {
        if (std::any_of(fields.cbegin(), fields.cend(), [&](const Field &field) { return field.name == member.key(); }))
            continue;
        const QStringList known = namesOf(fields);
        const QString nearest = nearestHint(member.key(), known);
        findings->add("unknown-key", place[member.key()].name(), QStringLiteral("unknown key ") + quoted(member.key()),
                      nearest.isEmpty() ? QStringLiteral("Known keys: ") + known.join(QStringLiteral(", ")) : nearest);
    }
}

void reportConverted(const QVariant &value, const Place &place, const QString &readAs, Findings *findings)
{
    findings->add("converted-value", place, typeNameOf(value) + QStringLiteral(" is read as ") + readAs);
}

static void reportConvertedText(const QVariant &value, const Place &place, Findings *findings)
{
    if (!isString(value))
        reportConverted(value, place, QLatin1Char('"') + value.toString() + QLatin1Char('"'), findings);
}

static void reportConvertedTexts(const QVariant &value, const Place &place, Findings *findings)
{
    if (!isList(value))
        return;
    const QVariantList texts = value.toList();
    for (int i = 0; i < texts.size(); ++i)
        reportConvertedText(texts.at(i), place[i], findings);
}

void reportConvertedValues(const QVariantMap &object, const Place &place, const Fields &fields, Findings *findings)
{
    for (const Field &field : fields) {
        const auto value = object.constFind(field.name);
        if (value == object.constEnd())
            continue;
        const Place where = place[field.name];
        if (field.conversion == Conversion::Text)
            reportConvertedText(*value, where, findings);
        else if (field.conversion == Conversion::Texts)
            reportConvertedTexts(*value, where, findings);
        else if (field.conversion == Conversion::Number && typeNameOf(*value) != QLatin1String("a number"))
            reportConverted(*value, where, QString::number(value->toDouble()), findings);
    }
}

using ObjectFunction = std::function<void(const QVariantMap &, const Place &, const Fields &)>;

static void forEachObject(const Subject &subject, const ObjectFunction &function)
{
    function(subject.root, subject.place(), format::configuration());
    subject.forEachRectangle(
            [&function](const QVariantMap &map, const Place &place) { function(map, place, format::rectangle()); });
    for (const ActionValue &value : subject.actionValues)
        function(value.value.toMap(), value.place, format::action());
    for (const WrittenEntry &entry : subject.writtenEntries)
        function(entry.map, entry.place, format::gesture());
}

static void findUnknownKeys(const Subject &subject, Findings *findings)
{
    forEachObject(subject, [findings](const QVariantMap &object, const Place &place, const Fields &fields) {
        reportUnknownKeys(object, place, fields, findings);
    });
}

static void findConvertedValues(const Subject &subject, Findings *findings)
{
    forEachObject(subject, [findings](const QVariantMap &object, const Place &place, const Fields &fields) {
        reportConvertedValues(object, place, fields, findings);
    });
}

Rules keyRules()
{
    const Severity warning = Severity::Warning;
    return {
            // In every file, as soon as its text is read.
            {11, "duplicate-key", warning, "An object has the same key twice.",
             "Remove one of them. Only the last one counts."},
            {12, "unknown-key", warning, "A key is unknown.", "Correct or remove it. The library ignores it.",
             findUnknownKeys},
            {13, "converted-value", warning, "A value of another type is converted.",
             "Write the value in the expected type.", findConvertedValues},
    };
}

}
