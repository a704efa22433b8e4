#include "DoubleValue.h"

#include "AsciiCharacters.h"

#include <QByteArray>

#include <charconv>
#include <cmath>
#include <limits>

namespace {

using AsciiCharacters::isBlank;
using AsciiCharacters::isDigit;

bool startsWithWord(std::string_view text, std::size_t at, std::string_view word)
{
    if (text.size() - at < word.size())
        return false;
    for (std::size_t i = 0; i < word.size(); ++i) {
        const char c = text[at + i];
        const char lower = (c >= 'A' && c <= 'Z') ? char(c - 'A' + 'a') : c;
        if (lower != word[i])
            return false;
    }
    return true;
}

struct Scan
{
    std::size_t numberBegin = 0; // first character after the sign
    std::size_t end = 0;         // one past the prefix; 0 when there is no number
    bool negative = false;
    enum class Kind
    {
        None,
        Finite,
        Infinite,
        NotANumber
    } kind = Kind::None;
};

Scan scan(std::string_view text)
{
    Scan result;
    std::size_t i = 0;
    while (i < text.size() && isBlank(text[i]))
        ++i;
    if (i < text.size() && (text[i] == '+' || text[i] == '-')) {
        result.negative = text[i] == '-';
        ++i;
    }
    result.numberBegin = i;
    if (startsWithWord(text, i, "infinity")) {
        result.kind = Scan::Kind::Infinite;
        result.end = i + 8;
        return result;
    }
    if (startsWithWord(text, i, "inf")) {
        result.kind = Scan::Kind::Infinite;
        result.end = i + 3;
        return result;
    }
    if (startsWithWord(text, i, "nan")) {
        result.kind = Scan::Kind::NotANumber;
        result.end = i + 3;
        return result;
    }
    std::size_t digits = 0;
    while (i < text.size() && isDigit(text[i])) {
        ++i;
        ++digits;
    }
    if (i < text.size() && text[i] == '.') {
        ++i;
        while (i < text.size() && isDigit(text[i])) {
            ++i;
            ++digits;
        }
    }
    if (digits == 0)
        return result;
    // An exponent counts only when digits follow it: "2e" reads as 2.
    if (i < text.size() && (text[i] == 'e' || text[i] == 'E')) {
        std::size_t j = i + 1;
        if (j < text.size() && (text[j] == '+' || text[j] == '-'))
            ++j;
        if (j < text.size() && isDigit(text[j])) {
            while (j < text.size() && isDigit(text[j]))
                ++j;
            i = j;
        }
    }
    result.kind = Scan::Kind::Finite;
    result.end = i;
    return result;
}

} // namespace

std::size_t numericPrefixLength(std::string_view text)
{
    return scan(text).end;
}

double doubleValue(std::string_view text)
{
    const Scan s = scan(text);
    double magnitude = 0.0;
    switch (s.kind) {
    case Scan::Kind::None:
        return 0.0;
    case Scan::Kind::Infinite:
        magnitude = std::numeric_limits<double>::infinity();
        break;
    case Scan::Kind::NotANumber:
        magnitude = std::numeric_limits<double>::quiet_NaN();
        break;
    case Scan::Kind::Finite: {
        const char *first = text.data() + s.numberBegin;
        const char *last = text.data() + s.end;
        const auto result = std::from_chars(first, last, magnitude);
        // Out of range: from_chars leaves the value alone, where strtod answers ±HUGE_VAL or 0.
        if (result.ec == std::errc::result_out_of_range) {
            const std::string_view number(first, std::size_t(last - first));
            const std::size_t e = number.find_first_of("eE");
            const bool underflow =
                e != std::string_view::npos && e + 1 < number.size() && number[e + 1] == '-';
            magnitude = underflow ? 0.0 : std::numeric_limits<double>::infinity();
        }
        break;
    }
    }
    return s.negative ? -magnitude : magnitude;
}

double doubleValue(QStringView text)
{
    // Only ASCII can be part of a number; anything past the first other character is not read.
    QByteArray ascii;
    ascii.reserve(text.size());
    for (const QChar c : text) {
        if (c.unicode() >= 0x80)
            break;
        ascii.append(char(c.unicode()));
    }
    return doubleValue(std::string_view(ascii.constData(), std::size_t(ascii.size())));
}
