#include <gtest/gtest.h>

#include <tuple>

#include "framework/streams/GMemoryInStream.h"
#include "framework/streams/GMemoryOutStream.h"
#include "framework/streams/GPartialInStream.h"
#include "framework/streams/GReadAheadStream.h"
#include "framework/streams/cipher/GDecryptInStream.h"
#include "framework/streams/cipher/GEncryptOutStream.h"
#include "framework/streams/encodings/GHexDecode.h"
#include "framework/streams/rows/GBitReader.h"
#include "framework/streams/rows/GBitWriter.h"
#include "framework/streams/rows/GInterleavedInStream.h"
#include "tests/streams/filters/FilterTestSupport.h"

using namespace std::string_literals;

namespace {

TEST(GPartialInStream, IsThePartWhereverItsSourceStands) {
    const std::tuple<const char*, long long, long long, const char*> rows[] = {
        {"inside", 2, 5, "23456"},     {"at the start", 0, 3, "012"}, {"beyond the end", 7, 1LL << 40, "789"},
        {"behind the end", 11, 5, ""}, {"at the end", 10, 5, ""},     {"nothing", 3, 0, ""}};
    for (const auto& [what, start, length, expected] : rows) {
        SCOPED_TRACE(what);
        for (const long size : {1L, 7L, cAll}) {
            PieceStream source("0123456789", 3);
            source.Skip(4);
            GPartialInStream part(source, start, length);
            const std::unique_ptr<GInStream> clone(part.CreateClone());
            EXPECT_EQ(OutcomeOf(part, size).bytes, expected);
            part.Reset();
            EXPECT_EQ(OutcomeOf(part, size).bytes, expected);
            EXPECT_EQ(OutcomeOf(*clone, size).bytes, expected);
        }
    }
    PieceStream source("0123456789", 3);
    GPartialInStream part(source, 2, 5);
    EXPECT_EQ(part.Skip(3), 3);
    EXPECT_EQ(ReadAll(*std::unique_ptr<GInStream>(part.CreateClone()), 9), "56");
    EXPECT_EQ(part.Skip(9), 2);
    EXPECT_EQ(FailureOf([&] { GPartialInStream(source, -1, 5); }), 40017);
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
        auto* const table = new GTable<GInStream*>;
        for (const std::string& source : sources) table->Append(new PieceStream(source, 2));
        GInterleavedInStream stream(table, unit);
        for (const long size : {1L, 7L, cAll}) {
            stream.Reset();
            GBuffer first;
            if (!expected.bytes.empty()) stream.Read(first, 1);
            const std::unique_ptr<GInStream> clone(stream.CreateClone());
            EXPECT_EQ((Outcome{BytesOf(first) + OutcomeOf(*clone, size).bytes, expected.failure}), expected);
            const Outcome rest = OutcomeOf(stream, size);
            EXPECT_EQ((Outcome{BytesOf(first) + rest.bytes, rest.failure}), expected);
        }
    }
    PieceStream source("ab", 2);
    const GTable<GInStream*> none, null = {nullptr}, one = {&source};
    for (const GTable<GInStream*>* const table : {&none, &null}) {
        EXPECT_EQ(FailureOf([&] { GInterleavedInStream(*table, 1); }), 40017);
        EXPECT_EQ(FailureOf([&] { GInterleavedInStream(new GTable<GInStream*>(*table), 1); }), 40017);
    }
    EXPECT_EQ(FailureOf([&] { GInterleavedInStream(one, 0); }), 40017);
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
    EXPECT_EQ(FailureOf([&] { reader.ReadWord(word, 32); }), 2453);
    EXPECT_EQ(FailureOf([&] { reader.ReadWord(word, 33); }), 40017);
    EXPECT_EQ(FailureOf([&] { writer.WriteWord(1, 0); }), 40017);
    FullStream full(1);
    GBitWriter refused(full);
    refused.WriteWord(1, 16);
    EXPECT_EQ(FailureOf([&] { refused.Finish(); }), 2464);
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
        const FilterMaker decryptor = [&](GInStream* source) { return new GDecryptInStream(source, key); };
        for (const std::size_t length : {0u, 1u, 15u, 16u, 17u, 4096u, 20000u}) {
            SCOPED_TRACE(length);
            const std::string data = Pattern(length);
            const std::string encrypted = Encrypted(data, key, 7);
            EXPECT_EQ(encrypted.size(), 16 + length / 16 * 16 + 16);
            EXPECT_NE(encrypted, Encrypted(data, key, 7)) << "the block in front is random";
            for (const long size : {1L, 7L, 4096L, cAll}) {
                const std::unique_ptr<GInStream> stream = FilterOf(decryptor, encrypted, 1000);
                stream->Skip(static_cast<long long>(length) / 2);
                const std::unique_ptr<GInStream> clone(stream->CreateClone());
                EXPECT_EQ(OutcomeOf(*clone, size), (Outcome{data.substr(length / 2), 0}));
                stream->Reset();
                EXPECT_EQ(OutcomeOf(*stream, size), (Outcome{data, 0}));
            }
        }
    }
}

// What either cipher library and a program of another's have written, in every build: the bytes 0 to 36.
TEST(Cipher, ReadsAndWritesWhatOthersDo) {
    const std::tuple<const char*, const GBuffer&, const char*> rows[] = {
        {"openssl enc", cShortKey,
         "f0e1d2c3b4a5968778695a4b3c2d1e0fbd4af75c3d0c64605cd08200205b7c7c"
         "9db2ba9a88404120a827463a2154ff22fe843720167d0b397d019190904de035"},
        {"openssl enc", cLongKey,
         "f0e1d2c3b4a5968778695a4b3c2d1e0f47850c51b458b51a00e528bcd90f0eb2"
         "a310515ec3f9aea77889ed3617de18b0d24f3d6d6f6db6a63050fc094a87d5d4"},
        {"libcrypto", cShortKey,
         "9e5d8e34ebf457c6b36243e10b56a9d9dffae9cd16f2081f7f90f3ba0ee18888"
         "8e76e99da23dd568dc0ddd928221266e344f54d3a8b7a6442bef31852dfe2eea"},
        {"libcrypto", cLongKey,
         "a8d28070dfb37b90920084afab8314be65234d2a4c3d7b921d61f1162aeb7563"
         "25e7e7a67e8e56d7c934c5f949dfebbb18bd3931b39ab99bc7c80c52ffb9e358"},
        {"bcrypt", cShortKey,
         "2843cf4c25c653dca957d522b687a93cec1dd802a0d9e7fed7888024a1472efb"
         "5425bcdd6da39167b5c8f9858416fa3be894f6a9bff8a6b68b8e8f968566476e"},
        {"bcrypt", cLongKey,
         "b82110d91df84f0173d5ea832b9d8198082f47989750b465ce117775d948067b"
         "4e1a04ce1a0399d4835f16dc44b71e27d3f011aaf8b47a80cd0f9465ec2bcecb"},
    };
    std::string plain(37, '\0');
    for (std::size_t i = 0; i < plain.size(); ++i) plain[i] = static_cast<char>(i);
    for (const auto& [who, key, digits] : rows) {
        SCOPED_TRACE(who);
        const std::string written = OutcomeOf(Maker<GHexDecode>(), digits).bytes;
        const FilterMaker decryptor = [&](GInStream* source) { return new GDecryptInStream(source, key); };
        EXPECT_EQ(OutcomeOf(decryptor, written), (Outcome{plain, 0}));
        PCipher::Block start;
        std::copy_n(written.begin(), start.size(), start.begin());
        GBuffer blocks = BufferOf(plain + std::string(11, '\x0B'));
        PCipher(PCipher::Direction::cEncrypt, key, start)
            .Process(blocks.GetRawData(), blocks.GetWritePtr(), blocks.GetLength());
        EXPECT_EQ(BytesOf(blocks), written.substr(start.size()));
    }
}

TEST(Cipher, RefusesWrongKeysAndDamagedData) {
    const FilterMaker decryptor = [](GInStream* source) { return new GDecryptInStream(source, cShortKey); };
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
        EXPECT_EQ(FailureOf([&] { GDecryptInStream(new PieceStream("", 1), GBuffer(key)); }), 2463) << key;
        GBuffer target;
        EXPECT_EQ(FailureOf([&] { GEncryptOutStream(new GMemoryOutStream(target), GBuffer(key)); }), 2463);
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
    EXPECT_EQ(FailureOf([&] { stream.Write(GBuffer("abc")); }), 40017);
    FullStream full(20);
    GEncryptOutStream refused(full, cShortKey);
    EXPECT_EQ(refused.Write(GBuffer("abc")), 3);
    EXPECT_EQ(FailureOf([&] { refused.Finish(); }), 2464);
}

}  // namespace
