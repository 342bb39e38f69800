#pragma once

#include "testing.h"

#include <QDir>

#include <memory>

namespace testing {

/// A test of gesturectl: each of its functions has a user, a system and a current directory of its own.
class Tool : public QObject
{
    Q_OBJECT

protected Q_SLOTS:
    void init()
    {
        m_tree.reset(new DataTree);
        m_directory.reset(new QTemporaryDir);
        QVERIFY(QDir::setCurrent(m_directory->path()));
    }

    void cleanup()
    {
        QDir::setCurrent("/");
        m_directory.reset();
        m_tree.reset();
    }

protected:
    static Run gesturectl(const QStringList &arguments) { return run(GESTURECTL, arguments); }

    /// A bindings file with this text between the braces of its "actions".
    static QByteArray choices(const QByteArray &actions) { return R"({"version": 1, "actions": {)" + actions + "}}"; }

    /// Compares with the row's "status" and "error": a part of the one line on standard error, or empty for no line.
    static void compareEnd(const Run &run)
    {
        QFETCH(QString, error);
        QTEST(run.exitCode, "status");
        QVERIFY2(run.err.contains(error), qPrintable(run.err));
        QCOMPARE(run.err.count('\n'), error.isEmpty() ? 0 : 1);
        QVERIFY(error.isEmpty() || run.out.isEmpty());
    }

    std::unique_ptr<DataTree> m_tree;
    std::unique_ptr<QTemporaryDir> m_directory;
};

}
