#pragma once

#include <QRect>
#include <QString>

#include <optional>

// Where the window was when the app last closed, kept in the settings as "x y width height",
// so the next start opens it there again, never off every screen and never smaller than usable.
struct WindowPlacement
{
    static constexpr QLatin1StringView settingsKey{"WindowGeometry"};

    static QString toSetting(const QRect &geometry);
    // The saved place moved and shrunk into the screen's available area; nothing for a setting
    // that does not read as four numbers.
    static std::optional<QRect> fromSetting(const QString &setting, const QRect &available);
};
