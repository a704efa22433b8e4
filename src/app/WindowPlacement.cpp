#include "WindowPlacement.h"

#include <QStringList>

#include <algorithm>

namespace {

constexpr int minimumSide = 200;

} // namespace

QString WindowPlacement::toSetting(const QRect &geometry)
{
    return QStringLiteral("%1 %2 %3 %4")
        .arg(geometry.x())
        .arg(geometry.y())
        .arg(geometry.width())
        .arg(geometry.height());
}

std::optional<QRect> WindowPlacement::fromSetting(const QString &setting, const QRect &available)
{
    const QStringList parts = setting.split(u' ', Qt::SkipEmptyParts);
    if (parts.size() != 4)
        return std::nullopt;
    int numbers[4];
    for (int i = 0; i < 4; ++i) {
        bool ok = false;
        numbers[i] = parts[i].toInt(&ok);
        if (!ok)
            return std::nullopt;
    }
    if (available.isEmpty())
        return QRect(numbers[0], numbers[1], std::max(numbers[2], minimumSide),
                     std::max(numbers[3], minimumSide));
    const int width = std::clamp(numbers[2], std::min(minimumSide, available.width()), available.width());
    const int height = std::clamp(numbers[3], std::min(minimumSide, available.height()), available.height());
    const int x = std::clamp(numbers[0], available.left(), available.right() + 1 - width);
    const int y = std::clamp(numbers[1], available.top(), available.bottom() + 1 - height);
    return QRect(x, y, width, height);
}
