#pragma once

#include <QObject>
#include <QString>

/// The data directories of this process, in a temporary directory, for tests in QML: the sample configuration, with
/// the application "launcher" prohibited.
class TestTree : public QObject
{
    Q_OBJECT

public:
    static void useForThisProcess();

    /// Restores the original sample configuration, and removes the user's files.
    Q_INVOKABLE void reset();
    /// The text of an application's configuration, and of the user's bindings; empty if there is no file.
    Q_INVOKABLE QString configuration(const QString &appId) const;
    Q_INVOKABLE void setConfiguration(const QString &appId, const QString &text);
    Q_INVOKABLE QString choices(const QString &appId) const;
    /// In one step, like another process.
    Q_INVOKABLE void setChoices(const QString &appId, const QString &text);
    /// Every file of the user's directory, relative to it, in order.
    Q_INVOKABLE QStringList userFiles() const;
};
