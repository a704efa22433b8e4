// Arbitrary bytes into both locator decoders: the UTF-8 one must agree exactly with the QString one,
// and every result must be a finite coordinate within ±90 latitude and ±180 longitude.

#include "Coordinate.h"
#include "VeltorFormatter.h"

#include <QString>

#include <cmath>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <string_view>

namespace {

[[noreturn]] void fail(const char *what, std::string_view input, Coordinate fast, Coordinate text)
{
    std::fprintf(stderr, "fuzz-locator-decoder: %s\n  input (%zu bytes):", what, input.size());
    for (const char c : input)
        std::fprintf(stderr, " %02x", static_cast<unsigned char>(c));
    std::fprintf(stderr,
                 "\n  decode(string_view):          %.17g, %.17g"
                 "\n  coordinateFromString(QString): %.17g, %.17g\n",
                 fast.latitude, fast.longitude, text.latitude, text.longitude);
    std::abort();
}

bool withinRange(Coordinate c)
{
    return std::isfinite(c.latitude) && std::isfinite(c.longitude) && std::fabs(c.latitude) <= 90.0 &&
           std::fabs(c.longitude) <= 180.0;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    const std::string_view input(reinterpret_cast<const char *>(data), size);

    const Coordinate fast = VeltorFormatter::decode(input);
    const Coordinate text =
        VeltorFormatter().coordinateFromString(QString::fromUtf8(input.data(), qsizetype(size)));

    if (!withinRange(fast))
        fail("decode(string_view) gave a coordinate out of range", input, fast, text);
    if (!withinRange(text))
        fail("coordinateFromString gave a coordinate out of range", input, fast, text);
    // Both are finite here, so == is the exact comparison wanted (it only equates +0 and -0).
    if (!(fast == text))
        fail("the two decoders disagree", input, fast, text);
    return 0;
}
