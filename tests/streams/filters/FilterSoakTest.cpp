#include "framework/streams/GStreamSupport.h"
#include "tests/streams/filters/FilterTestSupport.h"

namespace {

constexpr long long cLength = (4LL << 30) + 12345;
constexpr std::size_t cPeriod = 65521;

/// More than four gibibytes that repeat with a period, without a buffer of that size.
struct LongStream : GInStream {
    GInStream* CreateClone() const override { return new LongStream(*this); }
    long Read(GBuffer& out, long maxBytes) override {
        const auto start = static_cast<std::size_t>(mPosition % static_cast<long long>(cPeriod));
        const long long rest =
            std::min<long long>(cLength - mPosition, static_cast<long long>(cPeriod - start));
        out = BufferOf(mBytes.substr(start, static_cast<std::size_t>(std::min<long long>(rest, maxBytes))));
        mPosition += out.GetLength();
        return out.IsEmpty() ? -1 : out.GetLength();
    }
    void Reset() override { mPosition = 0; }

    std::string mBytes = MixedBytes(cPeriod, 5);
    long long mPosition = 0;
};

/// Compares what it is given with that stream.
struct ComparingStream : GOutStream {
    long Write(const GBuffer& data) override {
        GBuffer expected;
        for (long done = 0; done < data.GetLength(); done += expected.GetLength()) {
            if (mExpected.Read(expected, data.GetLength() - done) < 1) return done;
            if (data.GetSubBuffer(done, expected.GetLength()) != expected) return done;
        }
        return data.GetLength();
    }

    LongStream mExpected;
};

TEST(FilterSoak, CarriesMoreThanFourGibibytesThroughChains) {
    for (const auto& names : {std::vector{"lzw", "unlzw"}, {"runs", "85", "un85", "unruns"}}) {
        ComparingStream target;
        EXPECT_EQ(GStreamSupport::CopyStream(*ChainOf(names, new LongStream), target), cLength);
    }
}

}  // namespace
