#pragma once

#include "verb.h"

#include <functional>
#include <memory>
#include <optional>
#include <string>

namespace gesturectl {

/// What a person may type: the verbs, each with its options.
class CommandLine
{
public:
    CommandLine();
    ~CommandLine();

    /// The exit status, when nothing is left to run: help was asked for, or the arguments are wrong.
    std::optional<int> parse(int argc, char *argv[]);
    /// The name of the verb, and what it does.
    std::string verb() const;
    Result<ExitStatus> run() const { return m_run(); }

private:
    void add(const Verb &verb);
    QStringList verbs() const;

    const std::unique_ptr<CLI::App> m_cli;
    std::function<Result<ExitStatus>()> m_run;
};

}
