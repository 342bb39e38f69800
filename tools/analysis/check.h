#pragma once

#include "devices.h"
#include "finding.h"
#include "subject.h"

#include <gesture_api/applicationpaths.h>

#include <memory>
#include <optional>
#include <vector>

namespace analysis {

/// Checks files as the library reads them, on one or several devices. It reports faults and never fails itself.
class Check
{
public:
    /// Checks on these devices; without any, on this one.
    explicit Check(const QVector<QStringList> &devices = {});

    /// The paths of all applications. If the file cannot be used, the library's built-in ones.
    vellix::gesture::ApplicationPathsConfiguration paths(const QString &path);
    /// The configuration of an application, and its user's bindings if a file is named.
    void configuration(const QString &path, const QString &bindings = QString());
    /// A bindings file by itself.
    void bindings(const QString &path);

    /// File by file in the order of the calls, each from its start to its end. The findings point into texts that this
    /// object owns.
    Findings findings() const;
    const QStringList &files() const { return m_files; }

private:
    struct Document
    {
        const JsonText *text;
        QVariant value; // invalid if the file cannot be read or parsed
    };

    /// `consequence` says what follows when the file cannot be read.
    Document read(const QString &path, const QString &consequence);
    std::optional<Choices> readBindings(const Document &document);
    Findings checkOn(const vellix::gesture::FeaturesProvider &features, const Document &document,
                     const std::optional<Choices> &choices) const;

    QVector<QStringList> m_devices;
    Findings m_findings;
    QStringList m_files;
    std::vector<std::unique_ptr<const JsonText>> m_texts;
};

}
