// Saves bindings once, between two system calls that a tracer finds: savechild FILE GESTURES LETTER
// Exit status: 0 saved, 1 failed after opening, 2 not opened.

#include <gesture_api/configuration.h>

#include <unistd.h>

using namespace vellix::gesture;

int main(int argc, char *argv[])
{
    if (argc != 4)
        return 99;
    const QString file = QString::fromLocal8Bit(argv[1]);
    const int count = QByteArray(argv[2]).toInt();
    const QString letter = QString::fromLocal8Bit(argv[3]);

    QObject owner;
    QList<Gesture *> gestures;
    for (int i = 0; i < count; ++i) {
        auto *action = new Action(letter, {}, {});
        gestures.append(new Gesture(QStringLiteral("gesture number %1").arg(i), {}, Gesture::Tap, Gesture::wholeZone,
                                    Gesture::NoDirection, {}, action, nullptr, {}, &owner));
    }

    getsid(0);
    const auto saved = Configuration::ActionBindings::saveJson(file, gestures);
    getsid(0);
    if (saved.isLeft())
        return 2;
    return saved.right() > 0 ? 0 : 1;
}
