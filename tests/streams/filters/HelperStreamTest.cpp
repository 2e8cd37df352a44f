#include "framework/streams/GPartialInStream.h"
#include "framework/streams/GReadAheadStream.h"
#include "framework/streams/cipher/GDecryptInStream.h"
#include "framework/streams/cipher/GEncryptOutStream.h"
#include "framework/streams/rows/GBitReader.h"
#include "framework/streams/rows/GBitWriter.h"
#include "framework/streams/rows/GInterleavedInStream.h"
#include "tests/streams/filters/FilterTestSupport.h"

namespace {

TEST(GPartialInStream, IsThePartWhereverItsSourceStands) {
    const std::tuple<const char*, long long, long long, const char*> rows[] = {
        {"inside", 2, 5, "23456"},     {"at the start", 0, 3, "012"}, {"beyond the end", 7, 1LL << 40, "789"},
        {"behind the end", 11, 5, ""}, {"at the end", 10, 5, ""},     {"nothing", 3, 0, ""}};
    for (const auto& [what, start, length, expected] : rows) {
        SCOPED_TRACE(what);
        const auto make = [&, from = start, count = length] {
            auto source = std::make_unique<PieceStream>("0123456789", 3);
            source->Skip(4);
            return new GPartialInStream(source.release(), from, count);
        };
        ExpectEverywhere(make, {expected, 0});
    }
    PieceStream source("0123456789", 3);
    GPartialInStream part(source, 2, 5);
    EXPECT_EQ(part.Skip(3), 3);
    EXPECT_EQ(ReadAll(*std::unique_ptr<GInStream>(part.CreateClone()), 9), "56");
    EXPECT_EQ(part.Skip(9), 2);
    EXPECT_EQ(ThrownBy([&] { GPartialInStream(source, -1, 5); }), 40017);
}

TEST(GReadAheadStream, StepsBackInAnySource) {
    const std::string data = Pattern(1000000);
    GReadAheadStream stream(new PieceStream(data, 5000));
    GBuffer out;
    EXPECT_EQ(stream.RollBack(), -1);
    stream.Skip(400000);
    EXPECT_GE(stream.Unread(200000), 0x10000);
    stream.Reset();
    stream.Skip(300000);
    EXPECT_EQ(stream.Unread(0x10000), 0x10000);
    stream.SetRollBackPoint();
    EXPECT_EQ(stream.Skip(600000), 600000);
    const std::unique_ptr<GReadAheadStream> clone(stream.CreateClone());
    for (GReadAheadStream* const one : {&stream, clone.get()}) {
        EXPECT_EQ(one->RollBack(), 600000);
        EXPECT_EQ(one->RollBack(), -1);
        EXPECT_EQ(one->Read(out, 10), 10);
        EXPECT_EQ(BytesOf(out), data.substr(300000 - 0x10000, 10));
        EXPECT_EQ(ReadAll(*one, 777), data.substr(300000 - 0x10000 + 10));
    }
    EXPECT_EQ(stream.Read(out, 10), -1);
    EXPECT_EQ(stream.Unread(5), 5);
    EXPECT_EQ(ReadAll(stream, 10), data.substr(data.size() - 5));
}

TEST(GInterleavedInStream, TakesTurns) {
    const std::tuple<const char*, std::vector<std::string>, long, Outcome> rows[] = {
        {"one source", {"abc"}, 2, {"abc", 2453}},
        {"single bytes", {"ad", "be", "cf"}, 1, {"abcdef", 0}},
        {"pairs", {"abef", "cdgh"}, 2, {"abcdefgh", 0}},
        {"the first one ends", {"a", "b12", "c34"}, 1, {"abc", 0}},
        {"a later one ends", {"a12", "b", "c34"}, 1, {"abc1", 0}},
        {"one ends inside a turn", {"abef", "cdg"}, 2, {"abcdefg", 2453}},
        {"an empty one", {"", "a"}, 1, {"", 0}},
    };
    for (const auto& [what, sources, unit, expected] : rows) {
        SCOPED_TRACE(what);
        const auto make = [&lanes = sources, turn = unit] {
            auto* const table = new GTable<GInStream*>;
            for (const std::string& lane : lanes) table->Append(new PieceStream(lane, 2));
            return new GInterleavedInStream(table, turn);
        };
        ExpectEverywhere(make, expected);
    }
    PieceStream source("ab", 2);
    const GTable<GInStream*> none, null = {nullptr}, one = {&source};
    for (const GTable<GInStream*>* const table : {&none, &null}) {
        EXPECT_EQ(ThrownBy([&] { GInterleavedInStream(*table, 1); }), 40017);
        EXPECT_EQ(ThrownBy([&] { GInterleavedInStream(new GTable<GInStream*>(*table), 1); }), 40017);
    }
    EXPECT_EQ(ThrownBy([&] { GInterleavedInStream(one, 0); }), 40017);
    GInterleavedInStream borrowing(one, 1);
    EXPECT_EQ(ReadAll(borrowing, 1), "ab");
}

TEST(Bits, AreReadAsTheyWereWritten) {
    std::mt19937 random(4);
    std::vector<std::pair<std::uint32_t, long>> words;
    for (int i = 0; i < 20000; ++i) words.emplace_back(random(), 1 + random() % 32);
    GBuffer bytes;
    {
        GBitWriter writer(new GMemoryOutStream(bytes));
        for (const auto& [word, bits] : words) writer.WriteWord(word, bits);
    }
    GMemoryInStream source(bytes);
    GBitReader reader(source);
    std::uint32_t read = 0;
    for (const auto& [word, bits] : words) {
        ASSERT_TRUE(reader.ReadWord(read, bits));
        ASSERT_EQ(read, word & 0xFFFFFFFFU >> (32 - bits));
    }
    EXPECT_FALSE(reader.ReadWord(read, 8));
}

TEST(Bits, StandHighestFirstInWholeBytes) {
    GBuffer bytes;
    GMemoryOutStream target(bytes);
    GBitWriter writer(target);
    writer.WriteWord(0xFFFFFFFD, 3);
    writer.Finish();
    writer.WriteWord(0x12345678, 32);
    writer.Finish();
    EXPECT_EQ(BytesOf(bytes), "\xA0\x12\x34\x56\x78");
    GMemoryInStream source(bytes);
    GBitReader reader(source);
    std::uint32_t word = 0;
    EXPECT_TRUE(reader.ReadWord(word, 2));
    EXPECT_EQ(word, 2U);
    reader.SkipToByte();
    EXPECT_TRUE(reader.ReadWord(word, 12));
    EXPECT_EQ(word, 0x123U);
    EXPECT_EQ(ThrownBy([&] { reader.ReadWord(word, 32); }), 2453);
    EXPECT_EQ(ThrownBy([&] { reader.ReadWord(word, 33); }), 40017);
    EXPECT_EQ(ThrownBy([&] { writer.WriteWord(1, 0); }), 40017);
    FullStream full(1);
    GBitWriter refused(full);
    refused.WriteWord(1, 16);
    EXPECT_EQ(ThrownBy([&] { refused.Finish(); }), 2464);
}

std::string Encrypted(const std::string& data, const GBuffer& key, std::size_t piece) {
    GBuffer encrypted;
    GEncryptOutStream stream(new GMemoryOutStream(encrypted), key);
    for (std::size_t i = 0; i < data.size(); i += piece) stream.Write(BufferOf(data.substr(i, piece)));
    stream.Finish();
    return BytesOf(encrypted);
}

// The blocks as they are, without padding.
std::string Raw(const std::string& blocks) {
    return Encrypted(blocks, GBuffer("0123456789abcdef"), 16).substr(0, 16 + blocks.size());
}

const GBuffer cShortKey("0123456789abcdef");
const GBuffer cLongKey("0123456789abcdef0123456789abcdef");

TEST(Cipher, DecryptsWhatWasEncrypted) {
    for (const GBuffer& key : {cShortKey, cLongKey}) {
        for (const std::size_t length : {0u, 1u, 15u, 16u, 17u, 4096u, 20000u}) {
            SCOPED_TRACE(length);
            const std::string data = Pattern(length);
            const std::string encrypted = Encrypted(data, key, 7);
            EXPECT_EQ(encrypted.size(), 16 + length / 16 * 16 + 16);
            EXPECT_NE(encrypted, Encrypted(data, key, 7)) << "the block in front is random";
            ExpectEverywhere([&] { return FilterOf(Maker<GDecryptInStream>(key), encrypted, 1000); },
                             {data, 0});
        }
    }
}

// What "openssl enc" has written: the bytes 0 to 36. Each build does so by the cipher library of its system.
TEST(Cipher, ReadsAndWritesWhatOthersDo) {
    const std::pair<const GBuffer&, const char*> rows[] = {
        {cShortKey,
         "f0e1d2c3b4a5968778695a4b3c2d1e0fbd4af75c3d0c64605cd08200205b7c7c"
         "9db2ba9a88404120a827463a2154ff22fe843720167d0b397d019190904de035"},
        {cLongKey,
         "f0e1d2c3b4a5968778695a4b3c2d1e0f47850c51b458b51a00e528bcd90f0eb2"
         "a310515ec3f9aea77889ed3617de18b0d24f3d6d6f6db6a63050fc094a87d5d4"},
    };
    std::string plain(37, '\0');
    for (std::size_t i = 0; i < plain.size(); ++i) plain[i] = static_cast<char>(i);
    for (const auto& [key, digits] : rows) {
        const std::string written = OutcomeOf(Maker<GHexDecode>(), digits).bytes;
        EXPECT_EQ(OutcomeOf(Maker<GDecryptInStream>(key), written), (Outcome{plain, 0}));
        PCipher::Block start;
        std::copy_n(written.begin(), start.size(), start.begin());
        GBuffer blocks = BufferOf(plain + std::string(11, '\x0B'));
        PCipher(PCipher::Direction::cEncrypt, key, start)
            .Process(blocks.GetRawData(), blocks.GetWritePtr(), blocks.GetLength());
        EXPECT_EQ(BytesOf(blocks), written.substr(start.size()));
    }
}

TEST(Cipher, RefusesWrongKeysAndDamagedData) {
    const FilterMaker decryptor = Maker<GDecryptInStream>(cShortKey);
    const std::string data = Pattern(40);
    const std::string encrypted = Encrypted(data, cShortKey, 40);
    for (std::size_t length = 0; length < encrypted.size(); ++length) {
        const Outcome outcome = OutcomeOf(decryptor, encrypted.substr(0, length));
        // A cut at a block's end looks like wrong padding.
        EXPECT_TRUE(outcome.failure == 2453 || (length % 16 == 0 && outcome.failure == 2452)) << length;
        EXPECT_EQ(outcome.bytes, data.substr(0, outcome.bytes.size()));
    }
    const std::tuple<const char*, std::string, Outcome> rows[] = {
        {"a block of nothing but padding", Encrypted(Pattern(32), cShortKey, 32), {Pattern(32), 0}},
        {"padding of 0", Raw(Pattern(15) + "\0"s), {"", 2452}},
        {"padding of 17", Raw(Pattern(15) + "\x11"), {"", 2452}},
        {"padding that differs", Raw(Pattern(16) + Pattern(13) + "\2\3\3"), {Pattern(16), 2452}},
    };
    for (const auto& [what, input, expected] : rows) {
        SCOPED_TRACE(what);
        EXPECT_EQ(OutcomeOf(decryptor, input), expected);
    }
    for (const char* key : {"", "0123456789abcde", "0123456789abcdef0", "0123456789abcdef01234567"}) {
        EXPECT_EQ(ThrownBy([&] { GDecryptInStream(new PieceStream("", 1), GBuffer(key)); }), 2463) << key;
        GBuffer target;
        EXPECT_EQ(ThrownBy([&] { GEncryptOutStream(new GMemoryOutStream(target), GBuffer(key)); }), 2463);
    }
}

TEST(Cipher, EndsOnceAndTellsOfAFullTarget) {
    GBuffer encrypted;
    {
        GEncryptOutStream stream(new GMemoryOutStream(encrypted), cShortKey);
        stream.Write(GBuffer("abc"));
    }
    EXPECT_EQ(encrypted.GetLength(), 32) << "the destructor has finished";
    GMemoryOutStream target(encrypted);
    GEncryptOutStream stream(target, cShortKey);
    stream.Finish();
    stream.Finish();
    EXPECT_EQ(encrypted.GetLength(), 64);
    EXPECT_EQ(ThrownBy([&] { stream.Write(GBuffer("abc")); }), 40017);
    FullStream full(20);
    GEncryptOutStream refused(full, cShortKey);
    EXPECT_EQ(refused.Write(GBuffer("abc")), 3);
    EXPECT_EQ(ThrownBy([&] { refused.Finish(); }), 2464);
}

}  // namespace
