#pragma once

#include "MapView.h"

#include <QtQml/qqmlregistration.h>

// Makes the map item available to QML as Veltor's MapView; the class itself stays QML-free.
struct MapViewType
{
    Q_GADGET
    QML_FOREIGN(MapView)
    QML_NAMED_ELEMENT(MapView)
};
