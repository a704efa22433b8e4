#pragma once

#include <QStringView>

#include <chrono>
#include <optional>

// How long tracking waits for a receiver that talks but has no fix (a cold start takes from
// half a minute to twelve, indoors for ever) before it gives up.
enum class FixWait {
    FiveMinutes,
    FifteenMinutes,
    OneHour,
    Unlimited,
};

QStringView rawValue(FixWait wait);
std::optional<FixWait> fixWaitFromRawValue(QStringView raw);
// None for Unlimited.
std::optional<std::chrono::minutes> fixWaitLimit(FixWait wait);
