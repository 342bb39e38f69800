#pragma once

#include "check.h"

#include <QJsonDocument>
#include <QString>

// Findings as text for a person, JSON for a program and SARIF for a code review.

namespace analysis {

/// `FILE:LINE:COLUMN: error|warning: TEXT [RULE]`, the line of the file with the place marked under it, and a hint:
/// each is one line.
QString toText(const Finding &finding);

QJsonDocument toJson(const Findings &findings, const QStringList &files);

/// SARIF 2.1.0.
QJsonDocument toSarif(const Findings &findings, const QString &toolVersion);

}
