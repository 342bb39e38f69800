#pragma once

#include "jsontext.h"
#include "rule.h"
#include "words.h"

#include <QString>
#include <QStringList>
#include <QVector>

namespace analysis {

/// A single finding of a check. The text that it points into must outlive it.
struct Finding
{
    const Rule *rule;
    QString text;
    QString hint;
    const JsonText *file;
    Span span;
    QString devices; // the devices that have it; empty for all requested ones
};

class Findings
{
public:
    /// `ruleId` must be the id of a rule. A finding without a hint of its own gets that of its rule.
    void add(const char *ruleId, const Place &place, const QString &text, const QString &hint = QString());
    const QVector<Finding> &list() const & { return m_list; }
    const QVector<Finding> &list() const && = delete; // it would be destroyed
    bool hasErrorAt(const Place &place) const;
    int count(Severity severity) const;
    void append(const Finding &one) { m_list.append(one); }
    void append(const Findings &others) { m_list += others.m_list; }
    /// By file in this order, each from its start to its end; errors first at one place.
    void sort(const QStringList &files);
    void drop(const QStringList &ruleIds);

private:
    QVector<Finding> m_list;
};

}
