#pragma once

#include <QString>
#include <QStringList>
#include <QVariant>
#include <QVector>

// The members of each JSON object in the files, as the library reads them. The schemas describe the same objects.

namespace analysis {

/// How the library converts a value of another type.
enum class Conversion { None, Text, Texts, Number };

struct Field
{
    QString name;
    int check;      // its position among the checks of the library's reader; 0 if it accepts any value
    QVariant valid; // a value that the reader accepts
    bool isNeeded;  // in the smallest valid object
    Conversion conversion = Conversion::None;
    QString excluded = {}; // a needed member that cannot stand beside it
};

/// In the order of the hint that lists them.
using Fields = QVector<Field>;

namespace format {

const Fields &configuration();
const Fields &rectangle();
const Fields &action();
const Fields &gesture();
const Fields &bindings();
const Fields &paths();

/// The path of an action that no file defines. The gesture of the smallest valid object has this action.
extern const char *const validAction;

}

QStringList namesOf(const Fields &fields);

/// The members that the reader checks, in the order of its checks.
Fields checkedOf(const Fields &fields);

/// The smallest object that the reader accepts.
QVariantMap validObject(const Fields &fields);

}
