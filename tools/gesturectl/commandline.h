#pragma once

#include "verbs.h"

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

// Its header alone takes the compiler many seconds.
namespace CLI {
class App;
class Option;
}

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
    Result<ExitStatus> run() const { return m_verb(); }

private:
    using Verb = std::function<Result<ExitStatus>()>;

    QStringList verbs() const;
    CLI::App *add(const char *name, const char *description, const Verb &verb);
    CLI::Option *addApp(CLI::App *command);
    CLI::Option *addFile(CLI::App *command, const char *name, std::string *file, const char *description);
    void addJson(CLI::App *command);
    void addGesture(CLI::App *command);
    void addTouch(CLI::App *command);

    void addList();
    void addFind();
    void addExplain();
    void addZones();
    void addActions();
    void addMap();
    void addBind();
    void addReset();
    void addWatch();
    void addCheck();
    void addDoctor();
    void addExport();
    void addImport();
    void addSchema();

    Touch touch() const;
    CheckRequest checkRequest() const;

    const std::unique_ptr<CLI::App> m_cli;
    Verb m_verb;

    // What the options are read into.
    std::string m_app;
    std::string m_kind;
    std::string m_mode;
    std::string m_direction;
    std::string m_position;
    std::string m_gesture;
    std::string m_action;
    std::string m_picture;
    std::string m_schema;
    std::string m_paths;
    std::string m_config;
    std::string m_old;
    std::string m_new;
    std::string m_bindings;
    std::string m_format = "text";
    std::vector<std::string> m_with;
    std::vector<std::string> m_ignored;
    int m_count = 0;
    bool m_json = false;
    bool m_allApps = false;
    bool m_everyDevice = false;
    bool m_strict = false;
    bool m_write = false;
    bool m_dryRun = false;
};

}
