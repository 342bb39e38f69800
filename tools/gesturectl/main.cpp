#include "commandline.h"
#include "output.h"

#include <QCoreApplication>
#include <QGuiApplication>
#include <QLoggingCategory>

#include <clocale>
#include <memory>

using namespace gesturectl;

// Only `map` draws. It needs fonts, but no display, whatever platform a device exports for its own programs.
static std::unique_ptr<QCoreApplication> applicationFor(const std::string &verb, int &argc, char *argv[])
{
    if (verb != "map")
        return std::make_unique<QCoreApplication>(argc, argv);
    qputenv("QT_QPA_PLATFORM", "offscreen");
    // Qt would warn about a missing directory for sockets and the like, which `map` does not need.
    QLoggingCategory::setFilterRules(QStringLiteral("default.warning=false"));
    auto application = std::make_unique<QGuiApplication>(argc, argv);
    QLoggingCategory::setFilterRules(QString());
    return application;
}

int main(int argc, char *argv[])
{
    std::setlocale(LC_CTYPE, ""); // as the application object would, but the arguments are read before it exists
    takeQtMessages();
    CommandLine commandLine;
    if (const auto status = commandLine.parse(argc, argv))
        return isPrinted() ? *status : BadFiles;
    const auto application = applicationFor(commandLine.verb(), argc, argv);
    const Result<ExitStatus> result = commandLine.run();
    if (!isPrinted())
        return BadFiles;
    if (result.isRight())
        return result.right();
    printError(result.left().message);
    return result.left().status;
}
