#include "values.h"

#include <algorithm>
#include <numeric>
#include <vector>

namespace analysis {

QString typeNameOf(const QVariant &value)
{
    switch (value.userType()) {
    case QMetaType::Nullptr: return QStringLiteral("null");
    case QMetaType::Bool: return value.toBool() ? QStringLiteral("true") : QStringLiteral("false");
    case QMetaType::QString: return QStringLiteral("a string");
    case QMetaType::QVariantList: return QStringLiteral("a list");
    case QMetaType::QVariantMap: return QStringLiteral("an object");
    default: return QStringLiteral("a number");
    }
}

// The number of characters to add, drop or replace.
static int distance(const QString &a, const QString &b)
{
    std::vector<int> row(static_cast<std::size_t>(b.size()) + 1);
    std::iota(row.begin(), row.end(), 0);
    for (const QChar character : a) {
        int diagonal = row[0]++;
        for (int j = 0; j < b.size(); ++j) {
            const auto at = static_cast<std::size_t>(j);
            const int same = character.toCaseFolded() == b.at(j).toCaseFolded() ? 0 : 1;
            const int best = std::min({row[at] + 1, row[at + 1] + 1, diagonal + same});
            diagonal = row[at + 1];
            row[at + 1] = best;
        }
    }
    return row.back();
}

QString nearestTo(const QString &name, const QStringList &known)
{
    QString nearest;
    int least = 3;
    for (const QString &candidate : known) {
        const int d = distance(name.left(100), candidate);
        // Of several at one distance, the first by name: the known names can come from a set.
        const bool isNearer = d < least || (d == least && candidate < nearest);
        if (isNearer && 2 * d <= candidate.size()) {
            least = d;
            nearest = candidate;
        }
    }
    return nearest;
}

}
