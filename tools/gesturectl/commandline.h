#pragma once

#include "verb.h"

#include <functional>
#include <memory>
#include <optional>
#include <string>

namespace gesturectl {

/// The command line: the verbs, each with its options.
class CommandLine
{
public:
    CommandLine();
    ~CommandLine();

    /// The exit status if there is nothing to run: the help was printed, or the arguments are invalid.
    std::optional<int> parse(int argc, char *argv[]);
    /// The name of the verb.
    std::string verb() const;
    /// Does its work.
    Result<ExitStatus> run() const { return m_run(); }

private:
    void add(const Verb &verb);
    QStringList verbs() const;

    const std::unique_ptr<CLI::App> m_cli;
    std::function<Result<ExitStatus>()> m_run;
};

}
