#pragma once

// Two functions measured in turns within one run, so that other work of the machine affects both alike.

#include <QString>

#include <chrono>
#include <functional>
#include <utility>
#include <vector>

/// Runs one turn and returns its cost: nanoseconds, or the unit of the row.
using Measurement = std::function<double()>;

struct Comparison
{
    double ours; // medians
    double beside;
    double ratio; // the median of the turns' own ratios
};

/// Measures both in turns, `turns` times each.
Comparison compare(const Measurement &ours, const Measurement &beside, int turns);

double median(std::vector<double> values);

/// The nanoseconds that a call takes. Its result is destroyed after the clock has stopped.
template <class Call>
double nanoseconds(const Call &call)
{
    const auto start = std::chrono::steady_clock::now();
    const auto result = call();
    const auto end = std::chrono::steady_clock::now();
    asm volatile("" : : "g"(&result) : "memory"); // uses the result, so the compiler keeps the call
    return std::chrono::duration<double, std::nano>(end - start).count();
}

/// One line of the table. A ratio has no unit.
struct Row
{
    QString what;
    QString beside;
    QString ours; // medians, as text
    QString theirs;
    double value; // compared with the target
    QString unit;
    double goal;
    bool ofThisMachine = false; // another machine would give another value
};

/// A row fails if it is more than 15 % over its target, unless it depends on the machine.
bool fails(const Row &row);

/// "met", "missed" or "FAILED".
QString verdict(const Row &row);

Row ratioRow(const QString &what, const QString &beside, const Comparison &comparison, double goal);

/// A row that never fails. Other work of the machine, on its memory or its disk, turns it over: its counts decide.
Row shown(Row row);

/// Nanoseconds for people.
QString timeText(double nanoseconds);

void printTable(const std::vector<Row> &rows);
