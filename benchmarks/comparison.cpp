#include "comparison.h"

#include <algorithm>
#include <cstdio>

Comparison compare(const Measurement &ours, const Measurement &beside, int turns)
{
    ours(); // not counted: the first call of each side fills the caches
    beside();
    std::vector<double> oursAll, besideAll, ratios;
    for (int turn = 0; turn < turns; ++turn) {
        // Each turn swaps the first and the second side.
        const bool first = turn % 2;
        const double a = first ? ours() : 0;
        const double b = beside();
        oursAll.push_back(first ? a : ours());
        besideAll.push_back(b);
        ratios.push_back(oursAll.back() / b);
    }
    return {median(oursAll), median(besideAll), median(ratios)};
}

double median(std::vector<double> values)
{
    const auto middle = values.begin() + static_cast<std::ptrdiff_t>(values.size() / 2);
    std::nth_element(values.begin(), middle, values.end());
    return *middle;
}

bool fails(const Row &row)
{
    return !row.ofThisMachine && row.value > row.goal * 1.15;
}

QString verdict(const Row &row)
{
    return fails(row) ? "FAILED" : row.value > row.goal ? "missed" : "met";
}

Row ratioRow(const QString &what, const QString &beside, const Comparison &comparison, double goal)
{
    return {what, beside, timeText(comparison.ours), timeText(comparison.beside), comparison.ratio, QString(), goal};
}

Row shown(Row row)
{
    row.ofThisMachine = true;
    return row;
}

QString timeText(double nanoseconds)
{
    if (nanoseconds < 1e3)
        return QString("%1 ns").arg(nanoseconds, 0, 'f', 1);
    if (nanoseconds < 1e6)
        return QString("%1 us").arg(nanoseconds / 1e3, 0, 'f', 1);
    return QString("%1 ms").arg(nanoseconds / 1e6, 0, 'f', 2);
}

void printTable(const std::vector<Row> &rows)
{
    std::printf("%-52s %12s %12s %11s %11s  %s\n", "what / beside", "median", "beside", "value", "goal", "");
    for (const Row &row : rows) {
        const QString unit = row.unit.isEmpty() ? QString() : ' ' + row.unit;
        std::printf("%-52s %12s %12s %11s %11s  %s\n", qPrintable(row.what + " / " + row.beside), qPrintable(row.ours),
                    qPrintable(row.theirs), qPrintable(QString::number(row.value, 'f', 2) + unit),
                    qPrintable(QString::number(row.goal, 'f', 2) + unit), qPrintable(verdict(row)));
    }
}
