#include "commandline.h"

#include "helpformatter.h"
#include "output.h"
#include "verbs/verbs.h"

#include <CLI/CLI.hpp>

#include <analysis/values.h>

#include <memory>
#include <sstream>

namespace gesturectl {

CommandLine::CommandLine()
    : m_cli(std::make_unique<CLI::App>("Inspects and changes an application's touch-gesture configuration.",
                                       "gesturectl"))
{
    m_cli->formatter(std::make_shared<HelpFormatter>());
    m_cli->set_version_flag("--version", "gesturectl " GESTURECTL_VERSION, "Print the version and exit");
    m_cli->footer("Exit status:\n"
                  "  0  done\n"
                  "  1  no match, or problems found\n"
                  "  2  usage error\n"
                  "  3  a file cannot be loaded or written\n"
                  "Example: gesturectl list --app reader");
    m_cli->require_subcommand(0, 1); // a missing verb is reported last

    for (const auto &verb : {listVerb, findVerb, explainVerb, zonesVerb, actionsVerb, mapVerb, bindVerb, resetVerb,
                             watchVerb, checkVerb, doctorVerb, exportVerb, importVerb, schemaVerb})
        add(verb());
}

CommandLine::~CommandLine() = default;

// The help of the program or of a verb, or the version.
static void printHelp(const CLI::App &cli, const CLI::Success &help)
{
    std::ostringstream text;
    cli.exit(help, text, text);
    QString lines = QString::fromStdString(text.str());
    if (lines.endsWith(QLatin1Char('\n')))
        lines.chop(1);
    print(lines.split(QLatin1Char('\n')));
}

std::optional<int> CommandLine::parse(int argc, char *argv[])
{
    // CLI11 would list every following argument as unexpected.
    const QString first = argc > 1 ? text(argv[1]) : QString();
    if (!first.isEmpty() && !first.startsWith(QLatin1Char('-')) && !verbs().contains(first)) {
        const QString near = analysis::nearestTo(first, verbs());
        printError(QStringLiteral("unknown verb '%1'%2")
                           .arg(first,
                                near.isEmpty() ? QStringLiteral(", 'gesturectl --help' lists the verbs")
                                               : QStringLiteral(", did you mean '") + near + QStringLiteral("'?")));
        return WrongUse;
    }
    try {
        m_cli->parse(argc, argv);
    } catch (const CLI::Success &help) { // also the version
        printHelp(*m_cli, help);
        return Success;
    } catch (const CLI::ParseError &error) {
        printError(text(error.what()));
        return WrongUse;
    }
    if (!m_run) {
        printError(QStringLiteral("no verb given, 'gesturectl --help' lists the verbs"));
        return WrongUse;
    }
    return {};
}

std::string CommandLine::verb() const
{
    return m_cli->get_subcommands().front()->get_name();
}

QStringList CommandLine::verbs() const
{
    QStringList names;
    for (const CLI::App *command : m_cli->get_subcommands([](const CLI::App *) { return true; }))
        names.append(text(command->get_name()));
    return names;
}

void CommandLine::add(const Verb &verb)
{
    CLI::App *command = m_cli->add_subcommand(verb.name, verb.description);
    command->callback([this, run = verb.run] { m_run = run; });
    command->group("Verbs");
    command->footer(verb.footer);
    Options options(command);
    verb.declare(&options);
}

}
