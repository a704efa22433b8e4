#pragma once

#include <QStringView>

#include <array>
#include <cstddef>
#include <optional>

// Persisted enumerations are stored as fixed strings; this maps between the two in declaration
// order, with an exact, case-sensitive comparison and no fallback case.
template <typename Enum, std::size_t N>
class RawValueTable
{
public:
    constexpr explicit RawValueTable(std::array<QStringView, N> values) : m_values(values) {}

    constexpr QStringView rawValue(Enum value) const
    {
        return m_values.at(static_cast<std::size_t>(value));
    }

    constexpr std::optional<Enum> fromRawValue(QStringView raw) const
    {
        for (std::size_t i = 0; i < N; ++i) {
            if (m_values[i] == raw)
                return static_cast<Enum>(i);
        }
        return std::nullopt;
    }

private:
    std::array<QStringView, N> m_values;
};
