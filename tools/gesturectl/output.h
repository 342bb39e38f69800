#pragma once

#include <analysis/words.h>

#include <QJsonDocument>
#include <QList>
#include <QString>
#include <QStringList>

// All that the program prints: nothing else writes to its standard output or standard error. Texts come as they are and
// are made visible here, so that no verb can forget it.

namespace gesturectl {

using analysis::messageOf;
using analysis::percent;
using analysis::quoted;
using analysis::shown;

/// One line, whatever the text holds.
void print(const QString &line);
void print(const QStringList &lines);
void print(const QJsonDocument &document, QJsonDocument::JsonFormat format = QJsonDocument::Indented);

/// Columns as wide as their widest text is shown; what stands last in a row is left as it is.
void printTable(const QList<QStringList> &rows);
QStringList tableLines(const QList<QStringList> &rows);

/// One line on standard error.
void printError(const QString &message);

/// Qt's messages go through here as well.
void takeQtMessages();

/// Whether all of standard output could be written; if not, it is reported.
bool isPrinted();

}
