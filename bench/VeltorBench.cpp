// Timings of locator encoding and decoding and of the degree notations, next to hamlib's
// longlat2locator / locator2longlat on the same inputs.
//
// Every benchmark cycles through the same pre-generated inputs (fixed seed), so the numbers of
// different benchmarks are comparable. After the table, a summary prints each Veltor timing
// against its hamlib peer. The summary takes over the console output, so use
// --benchmark_out=FILE --benchmark_out_format=json for machine-readable results.

#include "Coordinate.h"
#include "CoordinateFormat.h"
#include "CoordinateFormatter.h"
#include "VeltorFormat.h"
#include "VeltorFormatter.h"

#include "RunTimeReporter.h"

#include <benchmark/benchmark.h>
#include <hamlib/rig.h>
#include <hamlib/rotator.h>

#include <QString>

#include <unistd.h>

#include <algorithm>
#include <cctype>
#include <cmath>
#include <cstdio>
#include <map>
#include <random>
#include <string>
#include <string_view>
#include <vector>

namespace {

constexpr std::size_t inputCount = 4096; // a power of two, cycled through with a mask
constexpr std::size_t inputMask = inputCount - 1;
static_assert((inputCount & inputMask) == 0);

struct Inputs
{
    std::vector<Coordinate> coordinates;
    std::vector<std::string> locators; // 8 characters, as Veltor encodes them
    std::vector<QString> locatorStrings;
    std::vector<QString> latitudeTexts;   // "51° 30′ 29″ N"
    std::vector<QString> coordinateTexts; // "51° 30′ 29″ N, 0° 7′ 39″ W"
};

std::string dms(double degrees, std::string_view hemisphere)
{
    std::string text;
    CoordinateFormatter::appendDegrees(text, CoordinateFormat::DegreesMinutesSeconds,
                                       CoordinateFormatter::Form::Display, degrees, hemisphere);
    return text;
}

const Inputs &inputs()
{
    static const Inputs generated = [] {
        Inputs in;
        std::mt19937_64 random(0x5eed'1ab5'0f'ce11ULL);
        std::uniform_real_distribution<double> latitude(-90.0, 90.0);
        std::uniform_real_distribution<double> longitude(-180.0, 180.0);
        for (std::size_t i = 0; i < inputCount; ++i) {
            // Drawn in two statements so that the order of the draws is fixed.
            const double lat = latitude(random);
            const double lon = longitude(random);
            const Coordinate c{lat, lon};
            in.coordinates.push_back(c);

            char buffer[VeltorFormatter::maximumEncodedLength];
            const int length = VeltorFormatter::encode(c, VeltorFormat::EightCharacters, buffer);
            in.locators.emplace_back(buffer, std::size_t(length));
            in.locatorStrings.push_back(QString::fromLatin1(buffer, length));

            const std::string latText = dms(lat, lat < 0 ? "S" : "N");
            const std::string lonText = dms(lon, lon < 0 ? "W" : "E");
            in.latitudeTexts.push_back(QString::fromStdString(latText));
            in.coordinateTexts.push_back(QString::fromStdString(latText + ", " + lonText));
        }
        return in;
    }();
    return generated;
}

void finish(benchmark::State &state)
{
    state.SetItemsProcessed(state.iterations());
}

// ---- encode ----------------------------------------------------------------------------------

void veltorEncode(benchmark::State &state, VeltorFormat format)
{
    const std::vector<Coordinate> &coordinates = inputs().coordinates;
    char buffer[VeltorFormatter::maximumEncodedLength];
    std::size_t i = 0;
    for (auto _ : state) {
        Coordinate c = coordinates[i];
        i = (i + 1) & inputMask;
        benchmark::DoNotOptimize(c);
        int length = VeltorFormatter::encode(c, format, buffer);
        benchmark::DoNotOptimize(length);
        benchmark::DoNotOptimize(buffer);
        benchmark::ClobberMemory();
    }
    finish(state);
}

void veltorEncodeQString(benchmark::State &state)
{
    const std::vector<Coordinate> &coordinates = inputs().coordinates;
    VeltorFormatter formatter;
    formatter.setFormat(VeltorFormat::EightCharacters);
    std::size_t i = 0;
    for (auto _ : state) {
        Coordinate c = coordinates[i];
        i = (i + 1) & inputMask;
        benchmark::DoNotOptimize(c);
        QString text = formatter.stringFromCoordinate(c);
        benchmark::DoNotOptimize(text);
        benchmark::ClobberMemory();
    }
    finish(state);
}

void hamlibEncode(benchmark::State &state, int pairCount)
{
    const std::vector<Coordinate> &coordinates = inputs().coordinates;
    char buffer[2 * 6 + 1 + 3]; // hamlib writes 2 * pair_count characters and a terminator
    // Checked once, outside the timed loop.
    if (longlat2locator(coordinates[0].longitude, coordinates[0].latitude, buffer, pairCount) !=
        RIG_OK) {
        state.SkipWithError("longlat2locator failed");
        return;
    }
    std::size_t i = 0;
    for (auto _ : state) {
        Coordinate c = coordinates[i];
        i = (i + 1) & inputMask;
        benchmark::DoNotOptimize(c);
        int status = longlat2locator(c.longitude, c.latitude, buffer, pairCount);
        benchmark::DoNotOptimize(status);
        benchmark::DoNotOptimize(buffer);
        benchmark::ClobberMemory();
    }
    finish(state);
}

// ---- decode ----------------------------------------------------------------------------------

void veltorDecode(benchmark::State &state)
{
    const std::vector<std::string> &locators = inputs().locators;
    std::size_t i = 0;
    for (auto _ : state) {
        std::string_view text = locators[i];
        i = (i + 1) & inputMask;
        benchmark::DoNotOptimize(text);
        Coordinate c = VeltorFormatter::decode(text);
        benchmark::DoNotOptimize(c);
    }
    finish(state);
}

void veltorDecodeQString(benchmark::State &state)
{
    const std::vector<QString> &locators = inputs().locatorStrings;
    const VeltorFormatter formatter;
    std::size_t i = 0;
    for (auto _ : state) {
        const QString &text = locators[i];
        i = (i + 1) & inputMask;
        Coordinate c = formatter.coordinateFromString(text);
        benchmark::DoNotOptimize(c);
    }
    finish(state);
}

void hamlibDecode(benchmark::State &state)
{
    const std::vector<std::string> &locators = inputs().locators;
    double longitude = 0.0;
    double latitude = 0.0;
    if (locator2longlat(&longitude, &latitude, locators[0].c_str()) != RIG_OK) {
        state.SkipWithError("locator2longlat failed");
        return;
    }
    std::size_t i = 0;
    for (auto _ : state) {
        const char *text = locators[i].c_str();
        i = (i + 1) & inputMask;
        benchmark::DoNotOptimize(text);
        int status = locator2longlat(&longitude, &latitude, text);
        benchmark::DoNotOptimize(status);
        benchmark::DoNotOptimize(longitude);
        benchmark::DoNotOptimize(latitude);
    }
    finish(state);
}

// ---- degree notations ------------------------------------------------------------------------

void notationFormat(benchmark::State &state, CoordinateFormat format)
{
    const std::vector<Coordinate> &coordinates = inputs().coordinates;
    std::string out;
    out.reserve(64);
    std::size_t i = 0;
    for (auto _ : state) {
        double latitude = coordinates[i].latitude;
        i = (i + 1) & inputMask;
        benchmark::DoNotOptimize(latitude);
        out.clear();
        CoordinateFormatter::appendDegrees(out, format, CoordinateFormatter::Form::Display,
                                           latitude, latitude < 0 ? "S" : "N");
        benchmark::DoNotOptimize(out.data());
        benchmark::ClobberMemory();
    }
    finish(state);
}

void notationFormatQString(benchmark::State &state)
{
    const std::vector<Coordinate> &coordinates = inputs().coordinates;
    CoordinateFormatter formatter;
    formatter.setFormat(CoordinateFormat::DegreesMinutesSeconds);
    std::size_t i = 0;
    for (auto _ : state) {
        Coordinate c = coordinates[i];
        i = (i + 1) & inputMask;
        benchmark::DoNotOptimize(c);
        QString text = formatter.latitudeStringFromCoordinate(c);
        benchmark::DoNotOptimize(text);
        benchmark::ClobberMemory();
    }
    finish(state);
}

void notationParse(benchmark::State &state)
{
    const std::vector<QString> &texts = inputs().latitudeTexts;
    std::size_t i = 0;
    for (auto _ : state) {
        QStringView text = texts[i];
        i = (i + 1) & inputMask;
        benchmark::DoNotOptimize(text);
        double degrees = CoordinateFormatter::degreesFromString(text);
        benchmark::DoNotOptimize(degrees);
    }
    finish(state);
}

void notationParseCoordinate(benchmark::State &state)
{
    const std::vector<QString> &texts = inputs().coordinateTexts;
    std::size_t i = 0;
    for (auto _ : state) {
        QStringView text = texts[i];
        i = (i + 1) & inputMask;
        benchmark::DoNotOptimize(text);
        Coordinate c = CoordinateFormatter::coordinateFromString(text);
        benchmark::DoNotOptimize(c);
    }
    finish(state);
}

// ---- registration and summary ----------------------------------------------------------------

void registerBenchmarks()
{
    const VeltorFormat formats[] = {VeltorFormat::TwoCharacters, VeltorFormat::FourCharacters,
                                    VeltorFormat::SixCharacters, VeltorFormat::EightCharacters};
    for (int pairs = 1; pairs <= 4; ++pairs) {
        const std::string chars = std::to_string(2 * pairs);
        benchmark::RegisterBenchmark(("veltor/encode/" + chars).c_str(), veltorEncode,
                                     formats[pairs - 1]);
        benchmark::RegisterBenchmark(("hamlib/encode/" + chars).c_str(), hamlibEncode, pairs);
    }
    benchmark::RegisterBenchmark("veltor/encode/8/QString", veltorEncodeQString);

    benchmark::RegisterBenchmark("veltor/decode/8", veltorDecode);
    benchmark::RegisterBenchmark("hamlib/decode/8", hamlibDecode);
    benchmark::RegisterBenchmark("veltor/decode/8/QString", veltorDecodeQString);

    benchmark::RegisterBenchmark("notation/format/dms", notationFormat,
                                 CoordinateFormat::DegreesMinutesSeconds);
    benchmark::RegisterBenchmark("notation/format/ddm", notationFormat,
                                 CoordinateFormat::DegreesDecimalMinutes);
    benchmark::RegisterBenchmark("notation/format/dd", notationFormat,
                                 CoordinateFormat::DecimalDegrees);
    benchmark::RegisterBenchmark("notation/format/dms/QString", notationFormatQString);
    benchmark::RegisterBenchmark("notation/parse/dms", notationParse);
    benchmark::RegisterBenchmark("notation/parse/dms-coordinate", notationParseCoordinate);
}

class SummaryReporter : public RunTimeReporter
{
public:
    using RunTimeReporter::RunTimeReporter;

    void printSummary() const
    {
        std::map<std::string, double> nanoseconds;
        for (const auto &[name, value] : seconds())
            nanoseconds[name] = value * 1e9;
        if (nanoseconds.empty())
            return;
        std::printf("\nVeltor against hamlib (CPU time per operation):\n");
        const auto line = [&](const std::string &veltor, const std::string &hamlib,
                              const char *goal) {
            const auto v = nanoseconds.find(veltor);
            const auto h = nanoseconds.find(hamlib);
            if (v == nanoseconds.end() || h == nanoseconds.end())
                return;
            const double ratio = h->second / v->second;
            std::printf("  %-24s %8.1f ns   %-16s %8.1f ns   %6.1fx faster%s\n", veltor.c_str(),
                        v->second, hamlib.c_str(), h->second, ratio,
                        goal ? (ratio >= 10.0 ? "   (goal 10x: met)" : "   (goal 10x: MISSED)")
                             : "");
        };
        for (const char *chars : {"2", "4", "6", "8"}) {
            const std::string suffix = chars;
            line("veltor/encode/" + suffix, "hamlib/encode/" + suffix,
                 suffix == "8" ? "10x" : nullptr);
        }
        line("veltor/encode/8/QString", "hamlib/encode/8", nullptr);
        line("veltor/decode/8", "hamlib/decode/8", "10x");
        line("veltor/decode/8/QString", "hamlib/decode/8", nullptr);
        if (const auto e = nanoseconds.find("veltor/encode/8"); e != nanoseconds.end())
            std::printf("  veltor/encode/8 %.1f ns (goal <= 30 ns: %s)\n", e->second,
                        e->second <= 30.0 ? "met" : "MISSED");
        std::fflush(stdout);
    }

};

// How many of the inputs hamlib turns into the same 8 characters as Veltor, and how far its
// decoded centres are from Veltor's; only printed, never a failure.
void printAgreement()
{
    const Inputs &in = inputs();
    std::size_t sameLocator = 0;
    double largestDifference = 0.0;
    std::string firstDifference;
    for (std::size_t i = 0; i < inputCount; ++i) {
        char buffer[2 * 4 + 1 + 3] = {};
        longlat2locator(in.coordinates[i].longitude, in.coordinates[i].latitude, buffer, 4);
        std::string hamlib(buffer);
        std::string veltor = in.locators[i];
        const auto lower = [](std::string s) {
            std::transform(s.begin(), s.end(), s.begin(),
                           [](unsigned char c) { return char(std::tolower(c)); });
            return s;
        };
        if (lower(hamlib) == lower(veltor))
            ++sameLocator;
        else if (firstDifference.empty()) {
            char text[160];
            std::snprintf(text, sizeof text, "; first difference: %.17g, %.17g is %s here, %s in hamlib",
                          in.coordinates[i].latitude, in.coordinates[i].longitude, veltor.c_str(),
                          hamlib.c_str());
            firstDifference = text;
        }

        double longitude = 0.0;
        double latitude = 0.0;
        locator2longlat(&longitude, &latitude, in.locators[i].c_str());
        const Coordinate centre = VeltorFormatter::decode(in.locators[i]);
        largestDifference = std::max({largestDifference, std::fabs(centre.latitude - latitude),
                                      std::fabs(centre.longitude - longitude)});
    }
    std::printf("  hamlib gives the same 8-character locator for %zu of %zu inputs%s\n"
                "  decoded centres of the same locators differ by at most %.3g degrees\n",
                sameLocator, inputCount, firstDifference.c_str(), largestDifference);
}

} // namespace

int main(int argc, char **argv)
{
    rig_set_debug(RIG_DEBUG_NONE);
    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv))
        return 1;
    inputs(); // generated before any timing
    registerBenchmarks();

    runAndSummarize<SummaryReporter>();
    printAgreement();
    benchmark::Shutdown();
    return 0;
}
