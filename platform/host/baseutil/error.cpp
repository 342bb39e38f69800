#include <vellix/platform/baseutil.h>
#include <vellix/platform/host.h>

#include <ostream>

namespace vellix {

std::string CodeLocation::toString(const std::string &file, int line)
{
    return file + ":" + std::to_string(line);
}

Error::Error(const CodeLocation &location, const std::string &message) : records{{location, message}} {}

Error::Error(const CodeLocation &location, const char *message) : Error(location, std::string(message ? message : ""))
{
}

std::ostream &operator<<(std::ostream &out, const Error &error)
{
    if (error.records.empty())
        return out << "undefined error";

    const char *separator = "";
    for (const Error::err &record : error.records) {
        out << separator << CodeLocation::toString(record.location.file, record.location.line) << ": "
            << record.message;
        separator = ", then ";
    }
    return out;
}

namespace EitherPrivate {

static bool exitOnError = false;

bool shouldExitOnError()
{
    return exitOnError;
}

void setExitOnError(bool on)
{
    exitOnError = on;
}

}
}
