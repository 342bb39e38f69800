#pragma once

#include <analysis/words.h>

#include <QJsonDocument>
#include <QList>
#include <QString>
#include <QStringList>

// The terminal: only this class writes to standard output or standard error. Callers pass texts unchanged; control
// characters are made visible here, so that no verb can forget it.

namespace gesturectl {

using analysis::messageOf;
using analysis::percent;
using analysis::quoted;
using analysis::shown;

/// One line, whatever characters the text has.
void print(const QString &line);
void print(const QStringList &lines);
void print(const QJsonDocument &document, QJsonDocument::JsonFormat format = QJsonDocument::Indented);

/// Columns as wide as their widest text; the last text of a row is not padded.
void printTable(const QList<QStringList> &rows);
QStringList tableLines(const QList<QStringList> &rows);

/// One line on standard error.
void printError(const QString &message);

/// Also writes Qt's messages here.
void takeQtMessages();

/// Whether all of standard output could be written; reports a failure.
bool isPrinted();

}
