#include "touch.h"

#include <QStringList>

namespace gesturectl {

// "X,Y" as relative screen coordinates.
static std::string checkPosition(const std::string &position)
{
    const QStringList numbers = text(position).split(QLatin1Char(','));
    bool isX = false;
    bool isY = false;
    const double x = numbers.value(0).toDouble(&isX);
    const double y = numbers.value(1).toDouble(&isY);
    if (numbers.size() != 2 || !isX || !isY || !(x >= 0 && x <= 1 && y >= 0 && y <= 1))
        return "'" + position + "' is not X,Y with two numbers from 0 to 1";
    return {};
}

void declareTouch(Options *options, Touch *touch)
{
    const auto readPosition = [touch](const QString &position) {
        const QStringList numbers = position.split(QLatin1Char(','));
        touch->position = QPointF(numbers.at(0).toDouble(), numbers.at(1).toDouble());
    };
    options->mode(&touch->mode, "The application's mode").required();
    options->kind(&touch->kind, "The kind of the touch").required();
    options->direction(&touch->direction, "The direction of the touch").defaultText("no");
    options->value("--at", readPosition, "The start of the touch: X,Y from 0 to 1, x to the right, y down")
            .required()
            .check(checkPosition, "X,Y");
}

}
