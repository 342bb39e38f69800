#include "helpformatter.h"
#include "verbs.h"

#include <analysis/devices.h>
#include <analysis/rule.h>

#include <CLI/CLI.hpp>

#include <QCoreApplication>
#include <QGuiApplication>

#include <cstdio>
#include <functional>
#include <memory>
#include <string>
#include <vector>

using namespace gesturectl;
using vellix::gesture::Gesture;

static QString text(const std::string &bytes)
{
    return QString::fromLocal8Bit(bytes.c_str());
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

static std::string checkName(const std::string &file)
{
    return file.empty() ? "the name of the file is empty" : std::string();
}

namespace {
// What the options of all verbs are read into.
struct Options
{
    std::string app;
    std::string kind;
    std::string mode;
    std::string direction = "no";
    std::string position;
    std::string gesture;
    std::string action;
    int count = 0;
    bool json = false;

    std::string paths;
    std::string config;
    std::string bindings;
    std::vector<std::string> with;
    std::vector<std::string> ignored;
    std::string format = "text";
    std::string schema;
    bool allApps = false;
    bool everyDevice = false;
    bool strict = false;
};
}

static std::vector<std::string> ruleIds()
{
    std::vector<std::string> ids;
    for (const analysis::Rule *rule : analysis::allRules())
        ids.push_back(rule->id);
    return ids;
}

// "none" is a device without features.
static std::vector<std::string> featureNames()
{
    std::vector<std::string> names{"none"};
    for (const QString &name : analysis::knownFeatures())
        names.push_back(name.toStdString());
    return names;
}

static QStringList texts(const std::vector<std::string> &list)
{
    QStringList all;
    for (const std::string &bytes : list)
        all.append(text(bytes));
    return all;
}

static CheckRequest checkRequestOf(const Options &options)
{
    CheckRequest request;
    request.paths = text(options.paths);
    request.config = text(options.config);
    request.bindings = text(options.bindings);
    request.appId = text(options.app);
    request.allApps = options.allApps;
    if (!options.with.empty())
        request.with = texts(options.with);
    request.everyDevice = options.everyDevice;
    request.strict = options.strict;
    request.ignored = texts(options.ignored);
    request.format = options.format == "json" ? CheckRequest::Json
            : options.format == "sarif"       ? CheckRequest::Sarif
                                              : CheckRequest::Text;
    return request;
}

static Touch touchOf(const Options &options)
{
    const QStringList numbers = text(options.position).split(QLatin1Char(','));
    return {text(options.mode), Gesture::kindFromVariant(text(options.kind)).right(),
            Gesture::directionFromVariant(text(options.direction)).right(),
            QPointF(numbers.at(0).toDouble(), numbers.at(1).toDouble())};
}

// Only what draws needs fonts, and needs no display for it.
static std::unique_ptr<QCoreApplication> applicationFor(const std::string &verb, int &argc, char *argv[])
{
    if (verb != "map")
        return std::make_unique<QCoreApplication>(argc, argv);
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    return std::make_unique<QGuiApplication>(argc, argv);
}

int main(int argc, char *argv[])
{
    CLI::App cli("Looks into the touch-gesture configuration of an application, and changes it.", "gesturectl");
    cli.formatter(std::make_shared<HelpFormatter>());
    cli.set_version_flag("--version", "gesturectl " GESTURECTL_VERSION, "Print the version and exit");
    cli.footer("Exit status:\n"
               "  0  done\n"
               "  1  nothing matches, or what was asked for was found wanting\n"
               "  2  wrong use\n"
               "  3  files that do not load or cannot be written\n"
               "Example: gesturectl list --app reader");
    cli.require_subcommand(0, 1); // none is told below, after what was not understood

    Options options;
    std::function<Result<ExitStatus>()> verb;
    const CLI::IsMember kinds({"tap", "hold", "swipe", "drag"}, CLI::ignore_case);
    const CLI::IsMember directions({"toLeft", "toRight", "toTop", "toBottom", "no"});

    const auto add = [&](const char *name, const char *description, const std::function<Result<ExitStatus>()> &run) {
        CLI::App *command = cli.add_subcommand(name, description);
        command->callback([&verb, run] { verb = run; });
        command->group("Verbs");
        return command;
    };
    const auto withApp = [&](CLI::App *command) {
        return command->add_option("--app", options.app, "The application, such as reader")->type_name("APP");
    };
    const auto withJson = [&](CLI::App *command) { command->add_flag("--json", options.json, "Print JSON"); };
    const auto withGesture = [&](CLI::App *command) {
        command->add_option("GESTURE", options.gesture, "The id of a gesture, as 'list' shows it")->required();
    };

    const auto withTouch = [&](CLI::App *command) {
        command->add_option("--mode", options.mode, "The application's mode")->required()->type_name("MODE");
        command->add_option("--kind", options.kind, "The kind of the touch")->required()->check(kinds);
        command->add_option("--direction", options.direction, "Its direction")
                ->capture_default_str()
                ->check(directions);
        command->add_option("--at", options.position, "Where it starts: X,Y from 0 to 1, x to the right, y down")
                ->required()
                ->check(checkPosition, "X,Y");
    };

    CLI::App *command = add("list", "Show the gestures and their current actions", [&] {
        return list(text(options.app), text(options.kind), text(options.mode), options.json);
    });
    withApp(command)->required();
    command->add_option("--kind", options.kind, "Only this kind")->check(kinds);
    command->add_option("--mode", options.mode, "Only those that apply in this mode")->type_name("MODE");
    withJson(command);
    command->footer("Example: gesturectl list --app reader --kind swipe");

    command = add("find", "Show the gesture that a touch matches, and its action",
                  [&] { return find(text(options.app), touchOf(options), options.json); });
    withApp(command)->required();
    withTouch(command);
    withJson(command);
    command->footer("Example: gesturectl find --app reader --mode reading --kind tap --at 0.9,0.5");

    command = add("explain", "Show why a touch matches a gesture, and where its action comes from",
                  [&] { return explain(text(options.app), touchOf(options), options.json); });
    withApp(command)->required();
    withTouch(command);
    withJson(command);
    command->footer("Example: gesturectl explain --app reader --mode reading --kind hold --at 0.5,0.1");

    command = add("zones", "Show the zones that a configuration may name",
                  [&] { return zones(text(options.app), options.json); });
    withApp(command)->description("Show the zones of this application, too");
    withJson(command);
    command->footer("Example: gesturectl zones");

    command = add("actions", "Show the actions of a gesture as its menu tree",
                  [&] { return actions(text(options.app), text(options.gesture), options.json); });
    withApp(command)->required();
    withGesture(command);
    withJson(command);
    command->footer("Example: gesturectl actions --app reader ReadingTapRightNoDirection");

    command = add("bind", "Choose the action of a gesture",
                  [&] { return bind(text(options.app), text(options.gesture), text(options.action)); });
    withApp(command)->required();
    withGesture(command);
    command->add_option("ACTION", options.action, "The path of an action that the gesture offers")->required();
    command->footer("Example: gesturectl bind --app reader ReadingTapRightNoDirection view/menu");

    command = add("reset", "Forget all choices of the user", [&] { return reset(text(options.app)); });
    withApp(command)->required();
    command->footer("Example: gesturectl reset --app reader");

    command = add("watch", "Print a line each time another process changes the bindings",
                  [&] { return watch(text(options.app), options.count, options.json); });
    withApp(command)->required();
    command->add_option("--count", options.count, "End after so many changes")->check(CLI::NonNegativeNumber);
    withJson(command);
    command->footer("Example: gesturectl watch --app reader");

    command = add("check", "Find what is wrong in configurations before they are shipped",
                  [&] { return check(checkRequestOf(options)); });
    CLI::Option *app = withApp(command);
    CLI::Option *allApps =
            command->add_flag("--all-apps", options.allApps, "All applications that have a configuration");
    CLI::Option *config = command->add_option("--config", options.config, "This configuration")->type_name("FILE");
    app->excludes(allApps)->excludes(config);
    config->excludes(allApps);
    command->add_option("--bindings", options.bindings, "These bindings in place of the user's own")->type_name("FILE");
    command->add_option("--paths", options.paths, "This file in place of the system's application paths")
            ->type_name("FILE");
    command->add_option("--with", options.with, "The features that the device has, in place of this machine's")
            ->delimiter(',')
            ->check(CLI::IsMember(featureNames()))
            ->excludes(command->add_flag("--every-device", options.everyDevice, "All combinations of features"));
    command->add_flag("--strict", options.strict, "Exit status 1 for warnings");
    command->add_option("--ignore", options.ignored, "Rules whose findings are not wanted")
            ->delimiter(',')
            ->check(CLI::IsMember(ruleIds()))
            ->type_name("RULE");
    command->add_option("--format", options.format, "How findings are printed")
            ->capture_default_str()
            ->check(CLI::IsMember({"text", "json", "sarif"}));
    command->footer("Errors give the exit status 3, warnings with --strict 1.\n"
                    "Example: gesturectl check --app reader --every-device --strict");

    command =
            add("schema", "Print the JSON Schema of a file, for editors", [&] { return schema(text(options.schema)); });
    command->add_option("FILE", options.schema, "The kind of file")
            ->required()
            ->check(CLI::IsMember({"gesture-config", "bindings", "application-paths"}));
    command->footer("Example: gesturectl schema gesture-config > gesture-config.schema.json");
    // What an update, or another device, does to the user's choices.
    std::string oldFile;
    std::string newFile;
    std::string bindingsFile;
    bool isWriting = false;
    bool isDryRun = false;
    command = add("doctor", "Show what an update of the default configuration does to the user's choices", [&] {
        return doctor(text(oldFile), text(newFile), text(bindingsFile), text(options.app), isWriting, options.json);
    });
    command->add_option("--old", oldFile, "The configuration before the update")->required()->check(checkName);
    command->add_option("--new", newFile, "The configuration after it")->required()->check(checkName);
    command->add_option("--bindings", bindingsFile, "A file of choices")->check(checkName);
    withApp(command)->description("In place of a file, the user's choices for this application");
    command->add_flag("--write", isWriting, "Drop what the new configuration would refuse; the old file is kept");
    withJson(command);
    command->footer("Exit status 1 when a choice would be refused or could not be reached any more.\n"
                    "Example: gesturectl doctor --old old.json --new new.json --app reader");

    command = add("export", "Print the user's choices as a file for 'import'",
                  [&] { return exportBindings(text(options.app)); });
    withApp(command)->required();
    command->footer("Example: gesturectl export --app reader > choices.json");

    command = add("import", "Replace the user's choices by those of a file, and show the difference",
                  [&] { return importBindings(text(options.app), text(bindingsFile), isDryRun); });
    withApp(command)->required();
    command->add_option("FILE", bindingsFile, "What 'export' printed")->required()->check(checkName);
    command->add_flag("--dry-run", isDryRun, "Only show the difference");
    command->footer("Example: gesturectl import --app reader choices.json --dry-run");

    try {
        cli.parse(argc, argv);
    } catch (const CLI::Success &wanted) { // help, version
        return cli.exit(wanted);
    } catch (const CLI::ParseError &error) {
        printError(text(error.what()));
        return WrongUse;
    }

    if (!verb) {
        printError(QStringLiteral("a verb is missing, 'gesturectl --help' shows them"));
        return WrongUse;
    }
    // Arguments are read as the locale has them, which the application sets.
    const auto application = applicationFor(cli.get_subcommands().front()->get_name(), argc, argv);
    const Result<ExitStatus> result = verb();
    if (std::fflush(stdout) != 0 || std::ferror(stdout)) {
        printError(QStringLiteral("the output could not be written"));
        return BadFiles;
    }
    if (result.isRight())
        return result.right();
    printError(result.left().message);
    return result.left().status;
}
