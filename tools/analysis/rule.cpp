#include "rule.h"

#include "rules/families.h"

#include <QByteArray>

#include <algorithm>
#include <iterator>

namespace analysis {

static const QVector<Rules> &families()
{
    static const QVector<Rules> all{readingRules(), keyRules(),     zoneRules(),   actionRules(),
                                    lookupRules(),  gestureRules(), bindingRules()};
    return all;
}

static QVector<const Rule *> sortedRules()
{
    QVector<const Rule *> rules;
    for (const Rules &family : families())
        std::transform(family.cbegin(), family.cend(), std::back_inserter(rules),
                       [](const Rule &rule) { return &rule; });
    std::sort(rules.begin(), rules.end(), [](const Rule *a, const Rule *b) {
        return a->severity != b->severity ? a->severity < b->severity : a->number < b->number;
    });
    return rules;
}

const QVector<const Rule *> &allRules()
{
    static const QVector<const Rule *> all = sortedRules();
    return all;
}

const Rule &ruleOf(const char *id)
{
    const auto found = std::find_if(allRules().cbegin(), allRules().cend(),
                                    [id](const Rule *rule) { return qstrcmp(rule->id, id) == 0; });
    Q_ASSERT(found != allRules().cend());
    return **found;
}

void findAll(const Subject &subject, bool isDeviceChosen, Findings *findings)
{
    for (const Rules &family : families()) {
        Rule::Finder last = nullptr;
        for (const Rule &rule : family) {
            if (rule.find && rule.find != last && (isDeviceChosen || !rule.isOfDevice))
                rule.find(subject, findings);
            last = rule.find;
        }
    }
}

}
