#pragma once

#include "application.h"
#include "options.h"

#include <functional>
#include <memory>

namespace gesturectl {

/// A verb of the command line. It prints to standard output and returns the exit status, or the failure that ends it.
struct Verb
{
    const char *name;
    const char *description;
    const char *footer; // notes, then "Example: " and a command
    std::function<void(Options *)> declare;
    std::function<Result<ExitStatus>()> run;
};

/// A verb whose options are read into a request of its own.
template <class Request>
Verb verb(const char *name, const char *description, const char *footer, void (*declare)(Options *, Request *),
          Result<ExitStatus> (*run)(const Request &))
{
    const auto request = std::make_shared<Request>();
    return {name, description, footer, [declare, request](Options *options) { declare(options, request.get()); },
            [run, request] { return run(*request); }};
}

}
