#include "options.h"

#include <CLI/CLI.hpp>

#include <limits>
#include <vector>

namespace gesturectl {

QString text(const std::string &bytes)
{
    return QString::fromLocal8Bit(bytes.c_str());
}

// The id becomes part of paths.
static std::string checkApp(const std::string &app)
{
    const bool isName = app.find('/') == std::string::npos && app != "." && app != "..";
    return isName ? std::string() : "'" + app + "' is not a valid application name";
}

static std::string checkName(const std::string &file)
{
    return file.empty() ? "the file name is empty" : std::string();
}

Option &Option::required()
{
    m_option->required();
    return *this;
}

Option &Option::type(const char *name)
{
    m_option->type_name(name);
    return *this;
}

Option &Option::defaultText(const char *value)
{
    m_option->default_str(value);
    return *this;
}

Option &Option::check(Check test, const char *type)
{
    m_option->check(test, type);
    return *this;
}

// CLI11 has the same function, but its templates cost half a minute of compile time.
Option &Option::oneOf(const QStringList &values, Qt::CaseSensitivity sensitivity)
{
    const std::string list = '{' + values.join(QLatin1Char(',')).toStdString() + '}';
    const auto check = [values, sensitivity, list](const std::string &value) {
        return values.contains(text(value), sensitivity) ? std::string() : value + " not in " + list;
    };
    m_option->check(CLI::Validator(check, list));
    return *this;
}

Option &Option::excludes(const Option &other)
{
    m_option->excludes(other.m_option);
    return *this;
}

Option Options::flag(const char *name, bool *value, const char *description)
{
    return Option(m_command->add_flag(name, *value, description));
}

Option Options::number(const char *name, int *value, const char *description)
{
    return Option(
            m_command->add_option(name, *value, description)->check(CLI::Range(0, std::numeric_limits<int>::max())));
}

Option Options::value(const char *name, const std::function<void(const QString &)> &read, const char *description)
{
    const std::function<void(const std::string &)> readBytes = [read](const std::string &bytes) {
        read(gesturectl::text(bytes));
    };
    return Option(m_command->add_option_function(name, readBytes, description));
}

Option Options::text(const char *name, QString *value, const char *description)
{
    return this->value(
            name, [value](const QString &text) { *value = text; }, description);
}

Option Options::list(const char *name, QStringList *values, const char *description)
{
    const std::function<void(const std::vector<std::string> &)> read = [values](const std::vector<std::string> &list) {
        values->clear();
        for (const std::string &bytes : list)
            values->append(gesturectl::text(bytes));
    };
    return Option(m_command->add_option_function(name, read, description)->delimiter(','));
}

Option Options::file(const char *name, QString *value, const char *description)
{
    return text(name, value, description).check(checkName).type("FILE");
}

Option Options::app(QString *id, const char *description)
{
    return text("--app", id, description).check(checkApp).type("APP");
}

Option Options::gesture(QString *id)
{
    return text("GESTURE", id, "The id of a gesture, as 'list' shows it").required();
}

Option Options::mode(QString *mode, const char *description)
{
    return text("--mode", mode, description).type("MODE");
}

Option Options::json(bool *value)
{
    return flag("--json", value, "Print JSON");
}

}
