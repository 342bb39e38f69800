// Compares the cost of the library with the unavoidable work. `bench` prints the table and fails if a ratio is more
// than 15 % over its target; `bench GROUP...` runs some of its groups; `bench --series` prints load and lookup against
// the number of gestures; `bench --tree DIRECTORY` writes the data of the size S, for a program that is started alone.
//
// Own code instead of Google Benchmark: that runs one side's repetitions after the other's, or in a random order, and
// has no ratios. Here the two sides of each row take turns and every turn has its own ratio.

#include "bench.h"

#include <QGuiApplication>
#include <QTemporaryDir>
#include <QTextStream>

#include <algorithm>

static const std::vector<std::pair<QString, std::vector<Row> (*)()>> groups{
        {"load", benchLoad},   {"refusal", benchRefusal}, {"lookup", benchLookup}, {"save", benchSave},
        {"clone", benchClone}, {"shapes", benchShapes},   {"watch", benchWatch},   {"start", benchStart},
};

static int printSeries()
{
    QTextStream out(stdout);
    out << "# gestures, nanoseconds: load, read + parse + toVariant, lookup, plain loop\n";
    for (const int gestures : {50, 100, 200, 500, 1000, 2000, 5000}) {
        const Size size{"", gestures, gestures * 2 / 5};
        const Comparison load = loadAt(size);
        const Comparison lookup = lookupAt(size);
        out << gestures << ' ' << load.ours << ' ' << load.beside << ' ' << lookup.ours << ' ' << lookup.beside << '\n';
        out.flush();
    }
    return 0;
}

int main(int argc, char *argv[])
{
    qputenv("QT_QPA_PLATFORM", "offscreen"); // the shortcut map asks the platform for its keys
    const QTemporaryDir runtime;
    if (!qEnvironmentVariableIsSet("XDG_RUNTIME_DIR"))
        qputenv("XDG_RUNTIME_DIR", runtime.path().toLocal8Bit()); // its warning would spoil the table
    QGuiApplication app(argc, argv);
    const QStringList wanted = app.arguments().mid(1);
    if (wanted == QStringList("--series"))
        return printSeries();
    if (wanted.value(0) == "--tree" && wanted.size() == 2) {
        writeSampleTree(wanted.last(), sizeS);
        return 0;
    }

    for (const QString &name : wanted) {
        const auto known = [&name](const auto &group) { return group.first == name; };
        if (std::none_of(groups.begin(), groups.end(), known))
            qFatal("no such group: %s", qPrintable(name));
    }
    std::vector<Row> rows;
    for (const auto &[name, run] : groups) {
        if (!wanted.isEmpty() && !wanted.contains(name))
            continue;
        for (const Row &row : run())
            rows.push_back(row);
    }
    printTable(rows);
    return std::any_of(rows.begin(), rows.end(), fails) ? 1 : 0;
}
