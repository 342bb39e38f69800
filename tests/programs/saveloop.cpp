// Saves again and again, and prints the number of each save after it was reported done: saveloop FILE

#include <gesture_api/configuration.h>

#include <cstdio>

using namespace vellix::gesture;

int main(int argc, char *argv[])
{
    if (argc != 2)
        return 99;
    for (int number = 1;; ++number) {
        QObject owner;
        QList<Gesture *> gestures;
        for (int i = 0; i < 20; ++i) {
            auto *action = new Action(QString::number(number), {}, {});
            gestures.append(new Gesture(QStringLiteral("gesture%1").arg(i), {}, Gesture::Tap, Gesture::wholeZone,
                                        Gesture::NoDirection, {}, action, nullptr, {}, &owner));
        }
        const auto saved = Configuration::ActionBindings::saveJson(QString::fromLocal8Bit(argv[1]), gestures);
        if (saved.isLeft() || saved.right() < 0)
            return 1;
        std::printf("%d\n", number);
        std::fflush(stdout);
    }
}
