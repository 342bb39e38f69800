#include "bench.h"

#include <gesture_api/configuration.h>
#include <gesture_api/gestureserviceprovider.h>
#include <vellix/platform/vxcomponents.h>

#include <QEventLoop>
#include <QFile>
#include <QFileInfo>
#include <QJsonDocument>

#include <sys/inotify.h>
#include <unistd.h>

#include <thread>

using namespace vellix::gesture;

using Clock = std::chrono::steady_clock;

// Another writer. It replaces the file by one rename while we wait.
class Replacement
{
public:
    Replacement(const QString &file, const QByteArray &content)
        : m_thread([this, target = QFile::encodeName(file), content] {
              const QByteArray fresh = target + ".new";
              writeFile(QFile::decodeName(fresh), content);
              std::this_thread::sleep_for(std::chrono::milliseconds(5)); // the other side waits by now
              m_time = Clock::now();
              std::rename(fresh, target);
          })
    {
    }

    /// The nanoseconds since the rename began.
    double age()
    {
        const auto now = Clock::now();
        m_thread.join();
        return std::chrono::duration<double, std::nano>(now - m_time).count();
    }

private:
    Clock::time_point m_time;
    std::thread m_thread;
};

// Never returns the same bytes twice.
static QByteArray nextBindings()
{
    static int number = 0;
    const int action = ++number % 40;
    return QString(R"({"actions": {"Gesture1": "group%1/action%2"}, "version": 1})")
            .arg(action / 8)
            .arg(action)
            .toUtf8();
}

static double rawInotify(int descriptor, const QString &file)
{
    const QByteArray name = QFile::encodeName(QFileInfo(file).fileName());
    Replacement replacement(file, nextBindings());
    alignas(inotify_event) char buffer[4096];
    for (;;) {
        const ssize_t size = read(descriptor, buffer, sizeof buffer);
        for (const char *at = buffer; at < buffer + size;) {
            const auto *event = reinterpret_cast<const inotify_event *>(at);
            if (event->mask & IN_MOVED_TO && name == event->name)
                return replacement.age();
            at += sizeof(inotify_event) + event->len;
        }
    }
}

static double callbackTime(const QString &file)
{
    QEventLoop loop;
    double time = 0;
    Replacement *replacement = nullptr;
    QObject context;
    vellix::components::fs::__watchFileChange(file, &context, [&] {
        time = replacement->age();
        loop.quit();
    });
    Replacement change(file, nextBindings());
    replacement = &change;
    loop.exec();
    return time;
}

static Comparison changeToCallback()
{
    const SampleTree tree(sizeS);
    const QString file = tree.userFile();
    writeFile(file, nextBindings());
    const int descriptor = inotify_init1(IN_CLOEXEC);
    const auto raw = [&] {
        const QByteArray directory = QFile::encodeName(QFileInfo(file).path());
        const int watch = inotify_add_watch(descriptor, directory, IN_MOVED_TO);
        const double time = rawInotify(descriptor, file);
        inotify_rm_watch(descriptor, watch);
        return time;
    };
    const Comparison comparison = compare([&] { return callbackTime(file); }, raw, 101);
    close(descriptor);
    return comparison;
}

static double firstAnswer(GestureServiceProvider &provider, const QString &file)
{
    QEventLoop loop;
    double time = 0;
    Replacement replacement(file, nextBindings());
    QObject context;
    QObject::connect(&provider, &GestureServiceProvider::serviceChanged, &context, [&](GestureService *service) {
        if (!service)
            return;
        if (!findFirst(*service))
            qFatal("no answer");
        time = replacement.age();
        loop.quit();
    });
    loop.exec();
    return time;
}

static Comparison changeToAnswer()
{
    const SampleTree tree(sizeS);
    writeFile(tree.userFile(), nextBindings());
    const SampleFeatures features;
    GestureServiceProvider provider(&features);
    provider.setAppId("sample");
    const auto parse = [&] {
        return nanoseconds([&] {
            QFile file(tree.defaultFile());
            return file.open(QIODevice::ReadOnly) ? QJsonDocument::fromJson(file.readAll()).toVariant() : QVariant();
        });
    };
    return compare([&] { return firstAnswer(provider, tree.userFile()); }, parse, 101);
}

std::vector<Row> benchWatch()
{
    return {
            ratioRow("change on disk to callback", "blocking read of inotify", changeToCallback(), 2),
            ratioRow("change on disk to the new service's answer", "read, parse, toVariant at S", changeToAnswer(),
                     3.5),
    };
}
