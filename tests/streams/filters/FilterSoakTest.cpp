#include <gtest/gtest.h>

#include "framework/streams/GStreamSupport.h"
#include "framework/streams/encodings/GASCII85Decode.h"
#include "framework/streams/encodings/GASCII85Encode.h"
#include "framework/streams/encodings/GLZWDecode.h"
#include "framework/streams/encodings/GLZWEncode.h"
#include "framework/streams/encodings/GRunLengthDecode.h"
#include "framework/streams/encodings/GRunLengthEncode.h"
#include "tests/streams/filters/FilterTestSupport.h"

namespace {

constexpr long long cLength = (4LL << 30) + 12345;
constexpr std::size_t cPeriod = 65521;

/// More than four gibibytes that repeat with a period, without a buffer of that size.
class LongStream : public GInStream {
public:
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

private:
    std::string mBytes = MixedBytes(cPeriod, 5);
    long long mPosition = 0;
};

/// Compares what it is given with that stream.
class ComparingStream : public GOutStream {
public:
    long Write(const GBuffer& data) override {
        GBuffer expected;
        for (long done = 0; done < data.GetLength(); done += expected.GetLength()) {
            if (mExpected.Read(expected, data.GetLength() - done) < 1) return done;
            if (data.GetSubBuffer(done, expected.GetLength()) != expected) return done;
        }
        return data.GetLength();
    }

private:
    LongStream mExpected;
};

TEST(FilterSoak, CarriesMoreThanFourGibibytesThroughChains) {
    GLZWDecode lzw(new GLZWEncode(new LongStream));
    ComparingStream afterLZW;
    EXPECT_EQ(GStreamSupport::CopyStream(lzw, afterLZW), cLength);
    GRunLengthDecode chain(new GASCII85Decode(new GASCII85Encode(new GRunLengthEncode(new LongStream))));
    ComparingStream afterChain;
    EXPECT_EQ(GStreamSupport::CopyStream(chain, afterChain), cLength);
}

}  // namespace
