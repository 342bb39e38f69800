#include "finding.h"

#include <algorithm>

namespace analysis {

void Findings::add(const char *ruleId, const Place &place, const QString &text, const QString &hint)
{
    const Rule &rule = ruleOf(ruleId);
    m_list.append({&rule, text, hint.isEmpty() ? QString::fromUtf8(rule.hint) : hint, &place.text(), place.span(), {}});
}

int Findings::count(Severity severity) const
{
    return static_cast<int>(std::count_if(m_list.cbegin(), m_list.cend(),
                                          [severity](const Finding &one) { return one.rule->severity == severity; }));
}

bool Findings::hasErrorAt(const Place &place) const
{
    return std::any_of(m_list.cbegin(), m_list.cend(), [&place](const Finding &one) {
        return one.rule->severity == Severity::Error && one.file == &place.text()
                && one.span.begin == place.span().begin;
    });
}

void Findings::sort(const QStringList &files)
{
    std::stable_sort(m_list.begin(), m_list.end(), [&files](const Finding &a, const Finding &b) {
        if (a.file != b.file)
            return files.indexOf(a.file->path()) < files.indexOf(b.file->path());
        if (a.span.begin != b.span.begin)
            return a.span.begin < b.span.begin;
        return a.rule->severity < b.rule->severity;
    });
}

void Findings::drop(const QStringList &ruleIds)
{
    const auto isDropped = [&ruleIds](const Finding &one) { return ruleIds.contains(QLatin1String(one.rule->id)); };
    m_list.erase(std::remove_if(m_list.begin(), m_list.end(), isDropped), m_list.end());
}

}
