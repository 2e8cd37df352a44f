// What a call of the trace log costs without a log and for a category that is off, beside the look-up of the
// category alone.
#include <cstdio>

#include "bench/Rounds.h"
#include "framework/GFrameworkScope.h"
#include "framework/services/GTrace.h"
#include "framework/streams/GMemoryOutStream.h"

namespace {

constexpr int cRounds = 31;
constexpr int cCalls = 20000;

}  // namespace

int main() {
    const GFrameworkScope framework;
    const GBuffer category("BenchDE");
    const GBuffer message("what an entry says");
    GBuffer written;
    GTrace::SetInstance(nullptr);
    const auto trace = [&] {
        for (int i = 0; i < cCalls; ++i) GTraceLog::Trace(category, message);
    };
    volatile bool needed = false;
    const GTrace log(std::make_unique<GMemoryOutStream>(written));
    const std::vector<double> times =
        Rounds(cRounds, cCalls)
            .Measure({{"no log", trace},
                      {"off",
                       [&] {
                           GTrace::SetInstance(new GTrace(std::make_unique<GMemoryOutStream>(written)));
                           trace();
                           GTrace::SetInstance(nullptr);
                       }},
                      {"look-up", [&] {
                           for (int i = 0; i < cCalls; ++i) needed = log.GetNeedsLogging(category);
                       }}});
    std::printf("trace without a log %7.4f us, off %7.4f us, the look-up alone %7.4f us\n", times[0],
                times[1], times[2]);
    return written.IsEmpty() ? 0 : 1;
}
