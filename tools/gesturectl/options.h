#pragma once

#include <gesture_api/gesture.h>

#include <QString>
#include <QStringList>

#include <functional>
#include <string>

// The options of the command line, as the verbs declare them.

// CLI11's header costs many seconds of compile time: no verb includes it.
namespace CLI {
class App;
class Option;
}

namespace gesturectl {

/// An argument of the command line in its own encoding.
QString text(const std::string &bytes);

/// A declared option or argument.
class Option
{
public:
    /// Returns why a value is invalid, or an empty string.
    using Check = std::string (*)(const std::string &value);

    explicit Option(CLI::Option *option) : m_option(option) {}

    Option &required();
    /// The help shows `name` for the value.
    Option &type(const char *name);
    /// The help shows `value` as the default.
    Option &defaultText(const char *value);
    /// `type` completes the type that the help shows for the value.
    Option &check(Check test, const char *type = "");
    Option &oneOf(const QStringList &values, Qt::CaseSensitivity sensitivity = Qt::CaseSensitive);
    Option &excludes(const Option &other);

private:
    CLI::Option *m_option;
};

/// Declares the options of a verb, each with the variable that gets its value. A variable keeps its value if its option
/// is not given.
class Options
{
public:
    explicit Options(CLI::App *command) : m_command(command) {}

    Option flag(const char *name, bool *value, const char *description);
    Option number(const char *name, int *value, const char *description); // from 0
    Option text(const char *name, QString *value, const char *description);
    Option list(const char *name, QStringList *values, const char *description); // separated by commas
    Option file(const char *name, QString *value, const char *description);
    /// `read` gets the value after its validation.
    Option value(const char *name, const std::function<void(const QString &)> &read, const char *description);

    // Options that several verbs share.
    Option app(QString *id, const char *description = "The application, such as reader");
    Option gesture(QString *id);
    Option mode(QString *mode, const char *description);
    Option json(bool *value);

    /// To a kind, or to an optional one.
    template <class Kind>
    Option kind(Kind *kind, const char *description)
    {
        return value(
                       "--kind",
                       [kind](const QString &name) { *kind = vellix::gesture::Gesture::kindFromVariant(name).right(); },
                       description)
                .oneOf({QStringLiteral("tap"), QStringLiteral("hold"), QStringLiteral("swipe"), QStringLiteral("drag")},
                       Qt::CaseInsensitive);
    }

    /// To a direction, or to an optional one.
    template <class Direction>
    Option direction(Direction *direction, const char *description)
    {
        return value(
                       "--direction",
                       [direction](const QString &name) {
                           *direction = vellix::gesture::Gesture::directionFromVariant(name).right();
                       },
                       description)
                .oneOf({QStringLiteral("toLeft"), QStringLiteral("toRight"), QStringLiteral("toTop"),
                        QStringLiteral("toBottom"), QStringLiteral("no")});
    }

private:
    CLI::App *m_command;
};

}
