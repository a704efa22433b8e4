#pragma once

#include <QVariant>

// Whether a QVariant holds a plain number (what a boxed number may carry); text never counts.
inline bool holdsNumber(const QVariant &value)
{
    switch (value.metaType().id()) {
    case QMetaType::Double:
    case QMetaType::Float:
    case QMetaType::Int:
    case QMetaType::UInt:
    case QMetaType::LongLong:
    case QMetaType::ULongLong:
        return true;
    default:
        return false;
    }
}
