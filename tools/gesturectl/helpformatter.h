#pragma once

#include <CLI/CLI.hpp>

#include <string>

namespace gesturectl {

/// The layout of the help and of the man pages made from it: a heading for examples, a comma and a blank between the
/// names of an option, and the accepted values in place of a type's name.
class HelpFormatter : public CLI::Formatter
{
public:
    HelpFormatter()
    {
        label("Positionals", "Arguments");
        label("SUBCOMMAND", "VERB");
    }

    std::string make_footer(const CLI::App *app) const override
    {
        const std::string mark = "Example: ";
        std::string notes;
        std::string examples;
        for (const std::string &line : CLI::detail::split(app->get_footer(), '\n')) {
            if (line.compare(0, mark.size(), mark) == 0)
                examples += "  $ " + line.substr(mark.size()) + '\n';
            else
                notes += line + '\n';
        }
        if (examples.empty())
            return notes;
        return notes + (notes.empty() ? "Examples:\n" : "\nExamples:\n") + examples;
    }

    std::string make_option_name(const CLI::Option *option, bool isPositional) const override
    {
        return CLI::detail::find_and_replace(Formatter::make_option_name(option, isPositional), ",", ", ");
    }

    // "TEXT:{tap,hold}" is {tap,hold}, "INT:NONNEGATIVE" is INT.
    std::string make_option_opts(const CLI::Option *option) const override
    {
        const std::string type = option->get_type_name();
        const std::size_t colon = type.find(':');
        if (option->get_type_size() == 0 || option->get_positional())
            return {};
        return ' ' + (type.substr(0, colon) == "TEXT" ? type.substr(colon + 1) : type.substr(0, colon));
    }

    std::string make_option_desc(const CLI::Option *option) const override
    {
        std::string description = option->get_description();
        if (option->get_required() && !option->get_positional())
            description += " (required)";
        if (!option->get_default_str().empty())
            description += " (default: " + option->get_default_str() + ')';
        return description;
    }
};

}
