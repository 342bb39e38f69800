#include "verbs.h"

#include <CLI/CLI.hpp>

#include <QCoreApplication>
#include <QGuiApplication>
#include <QLoggingCategory>

#include <cstdio>
#include <functional>
#include <memory>

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

// By the name alone, before anything is read.
static std::string checkPicture(const std::string &file)
{
    const QString name = text(file);
    const auto ends = [&name](const char *suffix) { return name.endsWith(QLatin1String(suffix), Qt::CaseInsensitive); };
    return ends(".svg") || ends(".png") ? std::string() : "'" + file + "' is neither .svg nor .png";
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
    std::string picture;
    int count = 0;
    bool json = false;
};
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
    // It would tell that there is no directory for sockets and the like; none is needed.
    QLoggingCategory::setFilterRules(QStringLiteral("default.warning=false"));
    auto application = std::make_unique<QGuiApplication>(argc, argv);
    QLoggingCategory::setFilterRules(QString());
    return application;
}

int main(int argc, char *argv[])
{
    CLI::App cli("Looks into the touch-gesture configuration of an application, and changes it.\n"
                 "Exit status: 0 done, 1 nothing matches, 2 wrong use, 3 files that do not load or cannot be written.",
                 "gesturectl");
    cli.require_subcommand(0, 1); // none is told below, after what was not understood

    Options options;
    std::function<Result<ExitStatus>()> verb;
    const CLI::IsMember kinds({"tap", "hold", "swipe", "drag"}, CLI::ignore_case);
    const CLI::IsMember directions({"toLeft", "toRight", "toTop", "toBottom", "no"});

    const auto add = [&](const char *name, const char *description, const std::function<Result<ExitStatus>()> &run) {
        CLI::App *command = cli.add_subcommand(name, description);
        command->callback([&verb, run] { verb = run; });
        return command;
    };
    const auto withApp = [&](CLI::App *command) {
        return command->add_option("--app", options.app, "The application, such as reader");
    };
    const auto withJson = [&](CLI::App *command) { command->add_flag("--json", options.json, "Print JSON"); };
    const auto withGesture = [&](CLI::App *command) {
        command->add_option("GESTURE", options.gesture, "The id of a gesture, as 'list' shows it")->required();
    };

    CLI::App *command = add("list", "Show the gestures and their current actions", [&] {
        return list(text(options.app), text(options.kind), text(options.mode), options.json);
    });
    withApp(command)->required();
    command->add_option("--kind", options.kind, "Only this kind")->check(kinds);
    command->add_option("--mode", options.mode, "Only those that apply in this mode");
    withJson(command);
    command->footer("Example: gesturectl list --app reader --kind swipe");

    command = add("find", "Show the gesture that a touch matches, and its action",
                  [&] { return find(text(options.app), touchOf(options), options.json); });
    withApp(command)->required();
    command->add_option("--mode", options.mode, "The application's mode")->required();
    command->add_option("--kind", options.kind, "The kind of the touch")->required()->check(kinds);
    command->add_option("--direction", options.direction, "Its direction")->capture_default_str()->check(directions);
    command->add_option("--at", options.position, "Where it starts: X,Y from 0 to 1, x to the right, y down")
            ->required()
            ->check(checkPosition, "X,Y");
    withJson(command);
    command->footer("Example: gesturectl find --app reader --mode reading --kind tap --at 0.9,0.5");

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

    std::string only; // a direction; that of a touch has a default
    command = add("map", "Draw the zones of the gestures, in the order of the lookup", [&] {
        return map(text(options.app), {text(options.mode), text(options.kind), text(only)}, text(options.picture));
    });
    withApp(command)->required();
    command->add_option("--mode", options.mode, "Only what applies in this mode");
    command->add_option("--kind", options.kind, "Only this kind")->check(kinds);
    command->add_option("--direction", only, "Only this direction")->check(directions);
    command->add_option("-o,--output", options.picture, "Draw to this file, else in characters")
            ->check(checkPicture, ".svg or .png");
    command->footer("Example: gesturectl map --app reader --mode reading -o reading.svg");

    try {
        cli.parse(argc, argv);
    } catch (const CLI::Success &wanted) { // help
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
