#pragma once

#include <QStringView>

#include <optional>

// How the screens look: day, night (dark surfaces) or red (night vision).
enum class Appearance {
    Day,
    Night,
    Red,
};

QStringView rawValue(Appearance appearance);
std::optional<Appearance> appearanceFromRawValue(QStringView raw);
