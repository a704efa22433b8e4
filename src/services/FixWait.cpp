#include "FixWait.h"

#include "RawValueTable.h"

namespace {

constexpr RawValueTable<FixWait, 4> table{
    {u"FixWaitFiveMinutes", u"FixWaitFifteenMinutes", u"FixWaitOneHour", u"FixWaitUnlimited"}};

} // namespace

QStringView rawValue(FixWait wait)
{
    return table.rawValue(wait);
}

std::optional<FixWait> fixWaitFromRawValue(QStringView raw)
{
    return table.fromRawValue(raw);
}

std::optional<std::chrono::minutes> fixWaitLimit(FixWait wait)
{
    using namespace std::chrono_literals;
    switch (wait) {
    case FixWait::FiveMinutes:
        return 5min;
    case FixWait::FifteenMinutes:
        return 15min;
    case FixWait::OneHour:
        return 60min;
    case FixWait::Unlimited:
        break;
    }
    return std::nullopt;
}
