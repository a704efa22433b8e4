// Throughput of veltor-locate --adif: a block of records rewritten in memory, with LAT and LON
// to fill from GRIDSQUARE, GRIDSQUARE from LAT and LON, and DISTANCE from --from.

#include "AdifRewriter.h"

#include <benchmark/benchmark.h>

#include <cstdio>
#include <string>

namespace {

std::string records(int count)
{
    std::string log;
    for (int i = 0; i < count; ++i) {
        char record[256];
        std::snprintf(record, sizeof record,
                      i % 2 ? "<CALL:6>G4A%03d<BAND:3>20m<MODE:3>SSB<GRIDSQUARE:6>JO%02dqm<EOR>\r\n"
                            : "<CALL:6>G4A%03d<BAND:3>20m<MODE:3>SSB<LAT:11>N051 %02d.674"
                              "<LON:11>W000 05.988<EOR>\r\n",
                      i % 1000, i % 60);
        log += record;
    }
    return log;
}

void BM_AdifRewrite(benchmark::State &state)
{
    std::string error;
    const auto options =
        LocateCommand::parseArguments({"--adif", "--from", "JN58td"}, &error).value();
    const std::string log = records(10000);
    std::string out;
    std::string errors;
    for (auto _ : state) {
        AdifRewriter rewriter(options);
        out.clear();
        rewriter.feed(log, out, errors);
        rewriter.finish(out, errors);
        benchmark::DoNotOptimize(out.data());
    }
    state.SetItemsProcessed(state.iterations() * 10000);
    state.SetBytesProcessed(state.iterations() * std::int64_t(log.size()));
}
BENCHMARK(BM_AdifRewrite);

} // namespace

BENCHMARK_MAIN();
