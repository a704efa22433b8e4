#include "Appearance.h"

#include "RawValueTable.h"

namespace {

constexpr RawValueTable<Appearance, 4> table{
    {u"AppearanceDay", u"AppearanceNight", u"AppearanceRed", u"AppearanceAutomatic"}};
constexpr RawValueTable<Appearance, 4> names{{u"day", u"night", u"red", u"automatic"}};

} // namespace

QStringView rawValue(Appearance appearance)
{
    return table.rawValue(appearance);
}

std::optional<Appearance> appearanceFromRawValue(QStringView raw)
{
    return table.fromRawValue(raw);
}

std::optional<Appearance> appearanceFromName(QStringView name)
{
    return names.fromRawValue(name);
}
