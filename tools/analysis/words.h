#pragma once

#include <vellix/platform/baseutil.h>

#include <QString>
#include <QStringList>

// Texts of files, errors of the library and numbers, as a person reads them.

namespace analysis {

/// A text on one line, with nothing in it that a terminal obeys, that turns the text around it or that no XML may hold:
/// such characters become `\n`, `\r`, `\t`, `\x1b`, `\u009b` or `\U000e0041`, half a character `\ud800`. All others
/// stay, a backslash, too. What is shown once more stays the same.
QString shown(const QString &text);

/// The same for JSON: escapes within its strings, so that a parser reads the same document. Ends of lines stay.
QString shownJson(const QString &json);

/// A name as messages write it, in quotes.
QString quoted(const QString &name);

/// As "a, b and c".
QString listed(const QStringList &texts);

/// A share of 1, in tenths of a percent; never rounded to nothing or to all.
QString percent(double share);

/// The words of the library's error.
QString messageOf(const vellix::Error &error);

}
