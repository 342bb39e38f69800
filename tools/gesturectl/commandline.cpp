#include "commandline.h"

#include "helpformatter.h"
#include "output.h"

#include <CLI/CLI.hpp>

#include <analysis/devices.h>
#include <analysis/rule.h>
#include <analysis/values.h>

#include <limits>
#include <memory>
#include <sstream>

using vellix::gesture::Gesture;

namespace gesturectl {

static QString text(const std::string &bytes)
{
    return QString::fromLocal8Bit(bytes.c_str());
}

static QStringList texts(const std::vector<std::string> &list)
{
    QStringList all;
    for (const std::string &bytes : list)
        all.append(text(bytes));
    return all;
}

// "X,Y" as relative screen coordinates.
static std::string checkPosition(const std::string &position)
{
    const QStringList numbers = text(position).split(QLatin1Char(','));
    bool isX = false;
    bool isY = false;
    const double x = numbers.value(0).toDouble(&isX);
    const double y = numbers.value(1).toDouble(&isY);
    if (numbers.size() != 2 || !isX || !isY || !(x >= 0 && x <= 1 && y >= 0 && y <= 1))
        return "'" + position + "' is not X,Y with both from 0 to 1";
    return {};
}

// It becomes a part of paths.
static std::string checkApp(const std::string &app)
{
    const bool isName = app.find('/') == std::string::npos && app != "." && app != "..";
    return isName ? std::string() : "'" + app + "' is no name of an application";
}

static std::string checkName(const std::string &file)
{
    return file.empty() ? "the name of the file is empty" : std::string();
}

// By the name alone, before anything is read.
static std::string checkPicture(const std::string &file)
{
    const QString name = text(file);
    const auto ends = [&name](const char *suffix) { return name.endsWith(QLatin1String(suffix), Qt::CaseInsensitive); };
    return ends(".svg") || ends(".png") ? std::string() : "'" + file + "' is neither .svg nor .png";
}

// As the library of the command line has one, whose templates take the compiler half a minute.
static CLI::Validator oneOf(const std::vector<std::string> &names, Qt::CaseSensitivity sensitivity = Qt::CaseSensitive)
{
    const QString list = QLatin1Char('{') + texts(names).join(QLatin1Char(',')) + QLatin1Char('}');
    return CLI::Validator(
            [names, sensitivity, list](const std::string &value) {
                const bool isOne = texts(names).contains(text(value), sensitivity);
                return isOne ? std::string() : value + " not in " + list.toStdString();
            },
            list.toStdString());
}

static CLI::Validator kinds()
{
    return oneOf({"tap", "hold", "swipe", "drag"}, Qt::CaseInsensitive);
}

static CLI::Validator directions()
{
    return oneOf({"toLeft", "toRight", "toTop", "toBottom", "no"});
}

// An error is one whether it is wanted or not.
static CLI::Validator warnings()
{
    std::vector<std::string> ids;
    for (const analysis::Rule *rule : analysis::allRules()) {
        if (rule->severity == analysis::Severity::Warning)
            ids.emplace_back(rule->id);
    }
    return oneOf(ids);
}

// "none" is a device without features.
static CLI::Validator features()
{
    std::vector<std::string> names{"none"};
    const QStringList known = analysis::knownFeatures();
    for (const QString &name : known)
        names.push_back(name.toStdString());
    return oneOf(names);
}

CommandLine::CommandLine()
    : m_cli(std::make_unique<CLI::App>("Looks into the touch-gesture configuration of an application, and changes it.",
                                       "gesturectl"))
{
    m_cli->formatter(std::make_shared<HelpFormatter>());
    m_cli->set_version_flag("--version", "gesturectl " GESTURECTL_VERSION, "Print the version and exit");
    m_cli->footer("Exit status:\n"
                  "  0  done\n"
                  "  1  nothing matches, or what was asked for was found wanting\n"
                  "  2  wrong use\n"
                  "  3  files that do not load or cannot be written\n"
                  "Example: gesturectl list --app reader");
    m_cli->require_subcommand(0, 1); // none is told behind what was not understood

    addList();
    addFind();
    addExplain();
    addZones();
    addActions();
    addMap();
    addBind();
    addReset();
    addWatch();
    addCheck();
    addDoctor();
    addExport();
    addImport();
    addSchema();
}

CommandLine::~CommandLine() = default;

// The help of the verb that was given, or the version.
static void printWanted(const CLI::App &cli, const CLI::Success &wanted)
{
    std::ostringstream text;
    cli.exit(wanted, text, text);
    QString lines = QString::fromStdString(text.str());
    if (lines.endsWith(QLatin1Char('\n')))
        lines.chop(1);
    print(lines.split(QLatin1Char('\n')));
}

std::optional<int> CommandLine::parse(int argc, char *argv[])
{
    // Else it is told among all that stands behind it.
    const QString first = argc > 1 ? text(argv[1]) : QString();
    if (!first.isEmpty() && !first.startsWith(QLatin1Char('-')) && !verbs().contains(first)) {
        const QString meant = analysis::nearestTo(first, verbs());
        printError(QStringLiteral("there is no verb '%1'%2")
                           .arg(first,
                                meant.isEmpty() ? QStringLiteral(", 'gesturectl --help' shows them")
                                                : QStringLiteral(", did you mean '") + meant + QStringLiteral("'?")));
        return WrongUse;
    }
    try {
        m_cli->parse(argc, argv);
    } catch (const CLI::Success &wanted) { // help, version
        printWanted(*m_cli, wanted);
        return Success;
    } catch (const CLI::ParseError &error) {
        printError(text(error.what()));
        return WrongUse;
    }
    if (!m_verb) {
        printError(QStringLiteral("a verb is missing, 'gesturectl --help' shows them"));
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

CLI::App *CommandLine::add(const char *name, const char *description, const Verb &verb)
{
    CLI::App *command = m_cli->add_subcommand(name, description);
    command->callback([this, verb] { m_verb = verb; });
    command->group("Verbs");
    return command;
}

CLI::Option *CommandLine::addApp(CLI::App *command)
{
    return command->add_option("--app", m_app, "The application, such as reader")->check(checkApp)->type_name("APP");
}

CLI::Option *CommandLine::addFile(CLI::App *command, const char *name, std::string *file, const char *description)
{
    return command->add_option(name, *file, description)->check(checkName)->type_name("FILE");
}

void CommandLine::addJson(CLI::App *command)
{
    command->add_flag("--json", m_json, "Print JSON");
}

void CommandLine::addGesture(CLI::App *command)
{
    command->add_option("GESTURE", m_gesture, "The id of a gesture, as 'list' shows it")->required();
}

void CommandLine::addTouch(CLI::App *command)
{
    command->add_option("--mode", m_mode, "The application's mode")->required()->type_name("MODE");
    command->add_option("--kind", m_kind, "The kind of the touch")->required()->check(kinds());
    command->add_option("--direction", m_direction, "Its direction")->default_str("no")->check(directions());
    command->add_option("--at", m_position, "Where it starts: X,Y from 0 to 1, x to the right, y down")
            ->required()
            ->check(checkPosition, "X,Y");
}

Touch CommandLine::touch() const
{
    const QStringList numbers = text(m_position).split(QLatin1Char(','));
    const QString direction = m_direction.empty() ? QStringLiteral("no") : text(m_direction);
    return {text(m_mode), Gesture::kindFromVariant(text(m_kind)).right(),
            Gesture::directionFromVariant(direction).right(),
            QPointF(numbers.at(0).toDouble(), numbers.at(1).toDouble())};
}

void CommandLine::addList()
{
    CLI::App *command = add("list", "Show the gestures and their current actions",
                            [this] { return list(text(m_app), text(m_kind), text(m_mode), m_json); });
    addApp(command)->required();
    command->add_option("--kind", m_kind, "Only this kind")->check(kinds());
    command->add_option("--mode", m_mode, "Only those that apply in this mode")->type_name("MODE");
    addJson(command);
    command->footer("Example: gesturectl list --app reader --kind swipe");
}

void CommandLine::addFind()
{
    CLI::App *command = add("find", "Show the gesture that a touch matches, and its action",
                            [this] { return find(text(m_app), touch(), m_json); });
    addApp(command)->required();
    addTouch(command);
    addJson(command);
    command->footer("Example: gesturectl find --app reader --mode reading --kind tap --at 0.9,0.5");
}

void CommandLine::addExplain()
{
    CLI::App *command = add("explain", "Show why a touch matches a gesture, and where its action comes from",
                            [this] { return explain(text(m_app), touch(), m_json); });
    addApp(command)->required();
    addTouch(command);
    addJson(command);
    command->footer("Example: gesturectl explain --app reader --mode reading --kind hold --at 0.5,0.1");
}

void CommandLine::addZones()
{
    CLI::App *command =
            add("zones", "Show the zones that a configuration may name", [this] { return zones(text(m_app), m_json); });
    addApp(command)->description("Show the zones of this application, too");
    addJson(command);
    command->footer("Example: gesturectl zones");
}

void CommandLine::addActions()
{
    CLI::App *command = add("actions", "Show the actions of a gesture as its menu tree",
                            [this] { return actions(text(m_app), text(m_gesture), m_json); });
    addApp(command)->required();
    addGesture(command);
    addJson(command);
    command->footer("Example: gesturectl actions --app reader ReadingTapRightNoDirection");
}

void CommandLine::addMap()
{
    CLI::App *command = add("map", "Draw the zones of the gestures, in the order of the lookup", [this] {
        return map(text(m_app), {text(m_mode), text(m_kind), text(m_direction)}, text(m_picture));
    });
    addApp(command)->required();
    command->add_option("--mode", m_mode, "Only what applies in this mode")->type_name("MODE");
    command->add_option("--kind", m_kind, "Only this kind")->check(kinds());
    command->add_option("--direction", m_direction, "Only this direction")->check(directions());
    command->add_option("-o,--output", m_picture, "Draw to this .svg or .png file, else in characters")
            ->check(checkPicture)
            ->type_name("FILE");
    command->footer("Example: gesturectl map --app reader --mode reading -o reading.svg");
}

void CommandLine::addBind()
{
    CLI::App *command = add("bind", "Choose the action of a gesture",
                            [this] { return bind(text(m_app), text(m_gesture), text(m_action)); });
    addApp(command)->required();
    addGesture(command);
    command->add_option("ACTION", m_action, "The path of an action that the gesture offers")->required();
    command->footer("Example: gesturectl bind --app reader ReadingTapRightNoDirection view/menu");
}

void CommandLine::addReset()
{
    CLI::App *command = add("reset", "Forget all choices of the user", [this] { return reset(text(m_app)); });
    addApp(command)->required();
    command->footer("Example: gesturectl reset --app reader");
}

void CommandLine::addWatch()
{
    CLI::App *command = add("watch", "Print a line each time another process changes the bindings",
                            [this] { return watch(text(m_app), m_count, m_json); });
    addApp(command)->required();
    command->add_option("--count", m_count, "End after so many changes, 0 for never")
            ->check(CLI::Range(0, std::numeric_limits<int>::max()));
    addJson(command);
    command->footer("Example: gesturectl watch --app reader");
}

void CommandLine::addCheck()
{
    CLI::App *command = add("check", "Find what is wrong in configurations before they are shipped",
                            [this] { return check(checkRequest()); });
    CLI::Option *app = addApp(command);
    CLI::Option *all = command->add_flag("--all-apps", m_allApps, "All applications that have a configuration");
    CLI::Option *config = addFile(command, "--config", &m_config, "This configuration");
    app->excludes(all)->excludes(config);
    config->excludes(all);
    addFile(command, "--bindings", &m_bindings, "These bindings in place of the user's own")->excludes(all);
    addFile(command, "--paths", &m_paths, "This file in place of the system's application paths");
    CLI::Option *every = command->add_flag("--every-device", m_everyDevice, "All combinations of features");
    command->add_option("--with", m_with,
                        "The features that the device has in place of this machine's, separated by commas")
            ->delimiter(',')
            ->check(features())
            ->excludes(every);
    command->add_flag("--strict", m_strict, "Exit status 1 for warnings");
    command->add_option("--ignore", m_ignored, "Rules whose warnings are not wanted, separated by commas")
            ->delimiter(',')
            ->check(warnings())
            ->type_name("RULE");
    command->add_option("--format", m_format, "How findings are printed")
            ->capture_default_str()
            ->check(oneOf({"text", "json", "sarif"}));
    command->footer("Errors give the exit status 3, warnings with --strict 1.\n"
                    "Example: gesturectl check --app reader --every-device --strict");
}

CheckRequest CommandLine::checkRequest() const
{
    CheckRequest request;
    request.paths = text(m_paths);
    request.config = text(m_config);
    request.bindings = text(m_bindings);
    request.appId = text(m_app);
    request.allApps = m_allApps;
    if (!m_with.empty())
        request.with = texts(m_with);
    request.everyDevice = m_everyDevice;
    request.strict = m_strict;
    request.ignored = texts(m_ignored);
    if (m_format == "json")
        request.format = CheckRequest::Json;
    if (m_format == "sarif")
        request.format = CheckRequest::Sarif;
    return request;
}

void CommandLine::addDoctor()
{
    CLI::App *command =
            add("doctor", "Show what an update of the default configuration does to the user's choices",
                [this] { return doctor(text(m_old), text(m_new), text(m_bindings), text(m_app), m_write, m_json); });
    addFile(command, "--old", &m_old, "The configuration before the update")->required();
    addFile(command, "--new", &m_new, "The configuration after it")->required();
    addFile(command, "--bindings", &m_bindings, "A file of choices");
    addApp(command)->description("In place of a file, the user's choices for this application");
    command->add_flag("--write", m_write, "Drop what the new configuration refuses or has not; the old file is kept");
    addJson(command);
    command->footer("Exit status 1 when a choice would be refused or could not be reached any more.\n"
                    "Example: gesturectl doctor --old old.json --new new.json --app reader");
}

void CommandLine::addExport()
{
    CLI::App *command = add("export", "Print the user's choices as a file for 'import'",
                            [this] { return exportBindings(text(m_app)); });
    addApp(command)->required();
    command->footer("Example: gesturectl export --app reader > choices.json");
}

void CommandLine::addImport()
{
    CLI::App *command = add("import", "Replace the user's choices by those of a file, and show the difference",
                            [this] { return importBindings(text(m_app), text(m_bindings), m_dryRun); });
    addApp(command)->required();
    addFile(command, "FILE", &m_bindings, "What 'export' printed")->required();
    command->add_flag("--dry-run", m_dryRun, "Only show the difference");
    command->footer("Example: gesturectl import --app reader choices.json --dry-run");
}

void CommandLine::addSchema()
{
    CLI::App *command =
            add("schema", "Print the JSON Schema of a file, for editors", [this] { return schema(text(m_schema)); });
    command->add_option("FILE", m_schema, "gesture-config, bindings or application-paths")
            ->required()
            ->check(oneOf({"gesture-config", "bindings", "application-paths"}));
    command->footer("Example: gesturectl schema gesture-config > gesture-config.schema.json");
}

}
