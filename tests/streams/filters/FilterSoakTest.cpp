#include "framework/streams/GStreamSupport.h"
#include "tests/streams/filters/FilterTestSupport.h"

namespace {

constexpr long long cLength = (4LL << 30) + 12345;
constexpr long cPeriod = 65521;

/// A piece of more than four gibibytes that repeat with a period, without a buffer of that size.
std::string PieceAt(long long position, long maxBytes) {
    static const std::string sPeriod = MixedBytes(cPeriod, 5), sBytes = sPeriod + sPeriod + sPeriod;
    const long long length = std::min<long long>({maxBytes, cLength - position, 2 * cPeriod});
    return sBytes.substr(static_cast<std::size_t>(position % cPeriod), static_cast<std::size_t>(length));
}

struct LongStream : GInStream {
    GInStream* CreateClone() const override { return new LongStream(*this); }
    long Read(GBuffer& out, long maxBytes) override {
        out = BufferOf(PieceAt(mPosition, maxBytes));
        mPosition += out.GetLength();
        return out.IsEmpty() ? -1 : out.GetLength();
    }
    void Reset() override { mPosition = 0; }

    long long mPosition = 0;
};

/// Takes nothing but these bytes.
struct ComparingStream : GOutStream {
    long Write(const GBuffer& data) override {
        if (BytesOf(data) != PieceAt(mPosition, data.GetLength())) return 0;
        mPosition += data.GetLength();
        return data.GetLength();
    }

    long long mPosition = 0;
};

TEST(FilterSoak, CarriesMoreThanFourGibibytesThroughChains) {
    for (const auto& names : {std::vector{"lzw", "unlzw"}, {"runs", "85", "un85", "unruns"}}) {
        ComparingStream target;
        EXPECT_EQ(GStreamSupport::CopyStream(*ChainOf(names, new LongStream), target), cLength);
    }
}

}  // namespace
