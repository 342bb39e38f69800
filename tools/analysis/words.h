#pragma once

#include <vellix/platform/baseutil.h>

#include <QString>
#include <QStringList>

// Texts of files, errors of the library and numbers for people.

namespace analysis {

/// A text on one line, without characters that control a terminal, reverse the text around them or are invalid in XML:
/// these become `\n`, `\r`, `\t`, `\x1b`, `\u009b` or `\U000e0041`, half a character `\ud800`. All others stay, also a
/// backslash. A second call changes nothing.
QString shown(const QString &text);

/// The same for JSON: escapes within its strings, so that a parser reads the same document. Line ends stay.
QString shownJson(const QString &json);

/// A name in quotes, for messages.
QString quoted(const QString &name);

/// As "a, b and c".
QString listed(const QStringList &texts);

/// A share of 1, in tenths of a percent; never rounded to nothing or to the whole.
QString percent(double share);

/// The library's message for the error.
QString messageOf(const vellix::Error &error);

}
