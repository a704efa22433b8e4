#include "DeviceIdiom.h"

#include <algorithm>

DeviceIdiom deviceIdiomForScreen(const QSizeF &screenSize)
{
    return std::min(screenSize.width(), screenSize.height()) < 600.0 ? DeviceIdiom::Phone
                                                                      : DeviceIdiom::Tablet;
}
