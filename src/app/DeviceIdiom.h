#pragma once

#include <QSizeF>

// Phone or tablet, decided once for the run from the screen: a phone's shorter side is under
// 600 points. The command line may force either.
enum class DeviceIdiom {
    Phone,
    Tablet,
};

DeviceIdiom deviceIdiomForScreen(const QSizeF &screenSize);
