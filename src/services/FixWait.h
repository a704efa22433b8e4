#pragma once

#include <QObject>
#include <QStringView>
#include <QtQml/qqmlregistration.h>

#include <chrono>
#include <optional>

namespace FixWaits {
Q_NAMESPACE
QML_NAMED_ELEMENT(FixWait)

// How long tracking waits for a receiver that talks but has no fix (a cold start takes from
// half a minute to twelve, indoors for ever) before it gives up.
enum class FixWait
{
    FiveMinutes,
    FifteenMinutes,
    OneHour,
    Unlimited,
};
Q_ENUM_NS(FixWait)

} // namespace FixWaits

using FixWait = FixWaits::FixWait;

QStringView rawValue(FixWait wait);
std::optional<FixWait> fixWaitFromRawValue(QStringView raw);
// None for Unlimited.
std::optional<std::chrono::minutes> fixWaitLimit(FixWait wait);
