// What a call of the trace log costs without a log and for a category that is off, beside the look-up of the
// category alone.
#include <memory>

#include "bench/Comparison.h"
#include "framework/GFrameworkScope.h"
#include "framework/services/GTrace.h"
#include "framework/streams/GMemoryOutStream.h"

namespace {

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
    const auto lookUp = [&] {
        for (int i = 0; i < cCalls; ++i) needed = log.GetNeedsLogging(category);
    };
    Comparison::Run({.what = "trace without a log", .count = cCalls}, trace,
                    {{"the look-up alone", {1.0, 1.5}, lookUp}});
    const auto traceOff = [&] {
        GTrace::SetInstance(new GTrace(std::make_unique<GMemoryOutStream>(written)));
        trace();
        GTrace::SetInstance(nullptr);
    };
    Comparison::Run({.what = "trace of a category that is off", .count = cCalls}, traceOff,
                    {{"the look-up alone", {2.0, 3.0}, lookUp}});
    return written.IsEmpty() ? 0 : 1;
}
