#include "framework/core/bytes/GBuffer.h"

#include "tests/core/ExpectValue.h"
#include "tests/core/TextForTests.h"

namespace {

const unsigned char* Bytes(const char* text) {
    return reinterpret_cast<const unsigned char*>(text);
}

constexpr unsigned short Unit(unsigned short unit) {
    return unit;
}

// No length of a buffer.
// (volatile: a compiler that knew it would warn of what is refused.)
const volatile long cTooLong = 0x7FFFFFFF;

}  // namespace

TEST(GBufferGrowth, EachWayTakesABlockOfItsOwnSize) {
    static const GBuffer hundred = BufferOf(std::string(100, 'x'));
    const std::tuple<const char*, long, void (*)(GBuffer&), long> rows[] = {
        {"append 1: at least eight", 0, [](GBuffer& b) { b.AppendByteArray(Bytes("x"), 1); }, 8},
        {"append 5: n = 7, 7 + 2", 0, [](GBuffer& b) { b += "xxxxx"; }, 9},
        {"append 100: n = 102, 102 + 34", 0, [](GBuffer& b) { b += hundred; }, 136},
        {"a byte: 8 + 2", 0, [](GBuffer& b) { b += 'x'; }, 10},
        {"the block's last byte", 7, [](GBuffer& b) { b.Allocate(8), b += 'x'; }, 10},
        {"the ninth byte: n = 9, 9 + 3 + 2", 8, [](GBuffer& b) { b += 'x'; }, 14},
        {"the fifth unit: n = 10, 10 + 3 + 2", 8, [](GBuffer& b) { b += Unit(0x7878); }, 15},
        {"replace: n = 14, 14 + 4", 6, [](GBuffer& b) { b.ReplaceByteArray(6, 0, Bytes("xxxxxx"), 6); }, 18},
        {"copying takes just enough", 0, [](GBuffer& b) { b.Set("xxx"); }, 5},
        {"so does allocating", 2, [](GBuffer& b) { b.Allocate(100); }, 102},
        {"which never shrinks", 100, [](GBuffer& b) { b.SetLength(2), b.Allocate(50); }, 102},
        {"and may be negative", 2, [](GBuffer& b) { b.Allocate(-1); }, 4},
        {"a growing length", 2, [](GBuffer& b) { b.SetLength(3), b.GetWritePtr()[2] = 'x'; }, 5},
        {"a block that is large enough", 100, [](GBuffer& b) { b.SetLength(0), b.Set("x"); }, 102}};
    for (const auto& [what, lengthBefore, change, arraySize] : rows) {
        SCOPED_TRACE(what);
        GBuffer buffer = BufferOf(std::string(static_cast<std::size_t>(lengthBefore), 'a'));
        change(buffer);
        EXPECT_EQ(buffer.GetArraySize(), arraySize);
        EXPECT_EQ(buffer.GetAllocatedLength(), arraySize - 2);
        EXPECT_TRUE(buffer.GetAllocated());
        EXPECT_EQ(BytesOf(buffer).find_first_not_of("ax"), std::string::npos);
    }
}

TEST(GBufferGrowth, ALengthBeyond31BitsIsRefusedAndChangesNothing) {
    GBuffer owned("abc");
    GBuffer longest;  // borrowed: nobody reads so far
    longest.SetFromStatic(Bytes("abc"), GBuffer::cMaxLength);
    const std::tuple<const char*, GBuffer&, void (*)(GBuffer&)> rows[] = {
        {"allocate", owned, [](GBuffer& b) { b.Allocate(cTooLong); }},
        {"set the length", owned, [](GBuffer& b) { b.SetLength(cTooLong); }},
        {"append", owned, [](GBuffer& b) { b.AppendByteArray(Bytes("x"), cTooLong); }},
        {"replace", owned, [](GBuffer& b) { b.ReplaceByteArray(0, 1, Bytes("x"), cTooLong); }},
        {"copy", owned, [](GBuffer& b) { b.CopyByteArray(Bytes("x"), cTooLong); }},
        {"borrow", owned, [](GBuffer& b) { b.SetFromStatic(Bytes("x"), cTooLong); }},
        {"a byte behind the longest", longest, [](GBuffer& b) { b += 'x'; }},
        {"a unit behind the longest", longest, [](GBuffer& b) { b += Unit(0x7878); }},
        {"bytes behind the longest", longest, [](GBuffer& b) { b += "x"; }},
        {"a length within what was declared", longest, [](GBuffer& b) { b.SetLength(cTooLong - 2); }}};
    for (const auto& [what, buffer, change] : rows) {
        EXPECT_THROW(change(buffer), std::bad_alloc) << what;
        EXPECT_EQ(BytesOf(owned), "abc");
        EXPECT_EQ(owned.GetArraySize(), 5);
        EXPECT_EQ(longest.GetLength(), GBuffer::cMaxLength);
        EXPECT_FALSE(longest.GetAllocated());
    }
}

TEST(GBufferBorrowing, ALiteralIsHandedOutAndSharedAsItIs) {
    static const char literal[] = "abc";
    GBuffer original, assigned("something else");
    original.SetFromStatic(literal);
    assigned = original;
    for (const GBuffer& copy : {original, assigned}) {
        EXPECT_FALSE(copy.GetAllocated());
        EXPECT_EQ(copy.GetPtr(), literal);
        EXPECT_EQ(copy.GetArraySize(), 4);
    }
}

TEST(GBufferBorrowing, BytesWithoutAZeroBehindThemAreMovedWhenATextIsAskedFor) {
    unsigned char bytes[] = {'a', 'b', 'c', 'd'};
    GBuffer buffer;
    buffer.SetFromStatic(bytes, 2);
    EXPECT_STREQ(buffer.GetPtr(), "ab");
    EXPECT_TRUE(buffer.GetAllocated());
    EXPECT_EQ(buffer.GetArraySize(), 4) << "two bytes and the spare ones, though three were declared";
    buffer.TakeByteArray(bytes, 4, 4);
    EXPECT_STREQ(buffer.GetPtr(), "abcd") << "the byte behind the block is not looked at";
    unsigned char roomy[32] = "ab.";
    buffer.TakeByteArray(roomy, 2, sizeof roomy);
    EXPECT_STREQ(buffer.GetPtr(), "ab");
    EXPECT_EQ(buffer.GetArraySize(), 32) << "the declared size";
}

TEST(GBufferBorrowing, ABufferThatTakesOverOrBorrowsNoBytesGivesUpTheBorrowedOnes) {
    static GBuffer emptied("x");
    emptied.Clear();
    const std::tuple<const char*, void (*)(GBuffer&)> rows[] = {
        {"an owned, emptied buffer", [](GBuffer& b) { b = emptied; }},
        {"an empty text", [](GBuffer& b) { b.Set(""); }},
        {"no text", [](GBuffer& b) { b.Set(static_cast<const char*>(nullptr)); }},
        {"no bytes", [](GBuffer& b) { b.CopyByteArray(Bytes("x"), 0, 1); }},
        {"no part of itself", [](GBuffer& b) { b.GetSubBuffer(3, 1, b); }},
        {"nothing to borrow", [](GBuffer& b) { b.SetFromStatic(static_cast<const char*>(nullptr)); }}};
    for (const auto& [what, change] : rows) {
        SCOPED_TRACE(what);
        auto memory = std::make_unique<unsigned char[]>(4);
        GBuffer buffer;
        buffer.SetFromStatic(memory.get(), 3);
        change(buffer);
        memory.reset();
        EXPECT_STREQ(buffer.GetPtr(), "");
        EXPECT_EQ(buffer.GetRawData(), nullptr);
        EXPECT_EQ(buffer.GetArraySize(), 0);
    }
}

TEST(GBufferBorrowing, ADeclaredBlockMayBeFilledFromOutside) {
    unsigned char block[8] = {};
    GBuffer buffer;
    buffer.TakeByteArray(block, -1, sizeof block);
    EXPECT_EQ(buffer.GetArraySize(), 0) << "a negative length is none";
    buffer.TakeByteArray(block, 0, sizeof block);
    std::memcpy(block, "filled!", 8);
    buffer.SetLength(7);
    EXPECT_FALSE(buffer.GetAllocated());
    EXPECT_STREQ(buffer.GetPtr(), "filled!");
    buffer.SetLength(9);
    EXPECT_TRUE(buffer.GetAllocated());
    EXPECT_EQ(BytesOf(buffer).substr(0, 7), "filled!");
}

TEST(GBuffer, IsAValueAndMovingAndSwappingExchangeBlocks) {
    GBuffer owned("abc"), borrowed;
    borrowed.SetFromStatic("defg");
    ExpectValue(owned, borrowed);
    EXPECT_NE(GBuffer(owned).GetRawData(), owned.GetRawData());
    const unsigned char* const block = owned.GetRawData();
    GBuffer target(std::move(owned));
    EXPECT_EQ(target.GetRawData(), block);
    target.Swap(borrowed);
    EXPECT_FALSE(target.GetAllocated());
    EXPECT_EQ(target.GetArraySize(), 5);
    target = std::move(borrowed);
    EXPECT_EQ(target.GetRawData(), block);
    EXPECT_FALSE(borrowed.GetAllocated());
}

TEST(GBuffer, AnEmptyBufferHasNoBlockButATerminatedText) {
    GBuffer empty;
    empty += static_cast<const char*>(nullptr);
    empty.AppendByteArray(nullptr, 3);
    empty.AppendByteArray(Bytes("x"), -1);
    EXPECT_EQ(empty.GetRawData(), nullptr);
    EXPECT_EQ(empty.GetAllocatedLength(), 0);
    EXPECT_EQ(std::string_view(empty.GetPtr(), 2), std::string_view("\0\0", 2)) << "as UTF-16, too";
    EXPECT_EQ(GBuffer().GetWritePtr(), nullptr);
    EXPECT_EQ(GBuffer::cEmptyBuffer, empty);
    EXPECT_TRUE(GBuffer(static_cast<const char*>(nullptr)).IsEmpty());
    EXPECT_EQ(BytesOf(GBuffer() + "x"), "x");
}

TEST(GBuffer, AnOwnedBufferEndsInTwoZerosAndKeepsItsBlock) {
    GBuffer buffer("abcdef");
    const unsigned char* const block = buffer.GetRawData();
    buffer.SetLength(3);
    const char* const text = buffer;
    EXPECT_EQ(std::string_view(text, 5), std::string_view("abc\0\0", 5));
    buffer.GetWritePtr()[3] = 'x';
    EXPECT_EQ(buffer.GetWritePtr()[3], 0);
    buffer.Clear();
    EXPECT_EQ(buffer.GetLength(), 0);
    EXPECT_EQ(buffer.GetWritePtr(), nullptr) << "there is a block, but no byte in it";
    EXPECT_EQ(buffer.GetArraySize(), 8);
    buffer.CopyByteArray(nullptr, 5, 5);
    buffer.CopyByteArray(Bytes("xyz"), 0, 3);
    EXPECT_TRUE(buffer.IsEmpty());
    buffer.Set("abc");
    EXPECT_EQ(buffer.GetRawData(), block);
}

TEST(GBuffer, CopyByteArray) {
    // The bytes alone, with what follows, never more than the spare bytes, and fewer than the length.
    const std::pair<long, std::string_view> rows[] = {{3, "abc"}, {4, "abcd"}, {100, "abcde"}, {2, "ab"}};
    for (const auto& [copyLength, block] : rows) {
        GBuffer buffer;
        buffer.CopyByteArray(Bytes("abcdef"), 3, copyLength);
        EXPECT_EQ(buffer.GetLength(), 3);
        EXPECT_EQ(buffer.GetArraySize(), 5);
        const auto* const data = reinterpret_cast<const char*>(buffer.GetRawData());
        EXPECT_EQ(std::string_view(data, block.size()), block);
    }
    GBuffer tight("abc");
    tight.CopyByteArray(tight.GetRawData() + 1, 4);  // reaches into the spare bytes, needs a new block
    EXPECT_EQ(BytesOf(tight).substr(0, 2), "bc");
    EXPECT_EQ(tight.GetArraySize(), 6);
}

TEST(GBuffer, WordsStayInsideTheBlock) {
    GBuffer buffer("abcdef");  // 8 bytes with the spare ones
    buffer.GetWritePtr();
    const std::pair<long, unsigned short> rows[] = {{0, 0x6261}, {2, 0x6665}, {3, 0},
                                                    {4, 0},      {-1, 0},     {cTooLong, 0}};
    for (const auto& [index, word] : rows) EXPECT_EQ(buffer.GetWordAt(index), word) << index;
    for (const long index : {1L, 4L, -1L, long{cTooLong}}) buffer.SetWordAt(index, 0x7A79);
    EXPECT_EQ(BytesOf(buffer), "abyzef");
    GBuffer empty;
    empty.SetWordAt(0, 1);
    EXPECT_EQ(empty.GetWordAt(0), 0);
}

namespace {

// What a change is given. Positions and counts may lie outside; the bytes may be the buffer's own.
struct Change {
    long start, count;
    const unsigned char* source;
    std::string part;
};

void ChangeBoth(unsigned kind, const Change& change, GBuffer& buffer, std::string& model) {
    const auto& [start, count, source, part] = change;
    const auto length = static_cast<long>(model.size()), partLength = static_cast<long>(part.size());
    const auto place = static_cast<std::size_t>(std::clamp<long>(start, 0, length));
    const auto removed = static_cast<std::size_t>(std::max(count, 0L));
    if (kind == 0) {  // a negative count means the rest
        buffer.GetSubBuffer(start, count, buffer),
            model = model.substr(place, static_cast<std::size_t>(count));
    } else if (kind == 1) {
        buffer.Remove(start, count), model.erase(place, removed);
    } else if (kind == 2) {
        buffer.SetLength(static_cast<long>(place)), model.resize(place);
    } else if (kind == 3) {
        EXPECT_EQ(buffer.FindAndReplace(start, 'a', 'c'), model.find('a', place) != model.npos);
        std::replace(model.begin() + static_cast<long>(place), model.end(), 'a', 'c');
    } else if (kind == 4) {
        buffer += 'x', buffer += Unit(0x7A79), model += "xyz";
    } else if (kind == 5) {
        buffer.GetPtr(), buffer.Allocate(2 * length + partLength);
    } else if (kind == 6 && length > 1) {
        buffer.SetWordAt(0, 0x7A79), buffer.GetWritePtr()[1] = 'w', model.replace(0, 2, "yw");
    } else if (kind == 7) {
        buffer.CopyByteArray(source, partLength), model = part;
    } else if (kind == 8) {
        const std::string find = part.substr(0, 2), with = part.substr(find.size(), 3);
        std::size_t at = find.empty() ? model.npos : model.find(find, place);
        EXPECT_EQ(buffer.FindAndReplace(start, BufferOf(find), BufferOf(with)), at != model.npos);
        for (; at != model.npos; at = model.find(find, at + with.size()))
            model.replace(at, find.size(), with);
    } else if (kind < 11) {
        buffer.AppendByteArray(source, partLength), model += part;
    } else {
        buffer.ReplaceByteArray(start, count, source, partLength), model.replace(place, removed, part);
    }
}

}  // namespace

// One buffer under changes in turn: each meets what the others left in its block.
TEST(GBufferEditing, AgreesWithTheStandardStringAlsoWithinItself) {
    std::mt19937 random(9);
    std::string noise, model;
    for (int i = 0; i < 3000; ++i) noise += "abc\x80\0\xFF"[random() % 6];
    const std::string unchanged = noise;
    GBuffer buffer;
    for (int round = 0; round < 60000; ++round) {
        const bool isWithin = random() % 3 != 0;
        const std::string& from = isWithin ? model : noise;
        const std::size_t offset = random() % (from.size() + 1);
        const Change change = {static_cast<long>(random() % (model.size() + 9)) - 4,
                               round % 16 == 1 ? cTooLong : static_cast<long>(random() % 30) - 4,
                               isWithin ? buffer.GetRawData() + offset : Bytes(noise.data()) + offset,
                               from.substr(offset, random() % (round % 16 == 0 ? 1500 : 60))};
        long arraySize = buffer.GetAllocated() ? buffer.GetArraySize() : 0;
        const unsigned kind = random() % 15;
        ChangeBoth(kind, change, buffer, model);
        ASSERT_EQ(BytesOf(buffer), model) << round;
        if (kind == 8) arraySize = 0;  // the replaced text stands in a block of its own
        ASSERT_TRUE(!buffer.GetAllocated() ||
                    buffer.GetArraySize() >= std::max(buffer.GetLength() + 2, arraySize))
            << round;
        if (model.size() < 3000 && round % 9 != 0) continue;
        // Borrowed, with room behind it: every change leaves the memory alone.
        buffer.TakeByteArray(reinterpret_cast<unsigned char*>(noise.data()), 10, 20),
            model = noise.substr(0, 10);
    }
    EXPECT_EQ(noise, unchanged);
    GBuffer self("abc");
    self.Replace(1, 1, self);
    EXPECT_EQ(BytesOf(self += self), "aabccaabcc");
    EXPECT_TRUE(self.FindAndReplace(0, GBuffer("cc"), self));
    EXPECT_EQ(BytesOf(self + "|"), "aabaabccaabccaabaabccaabcc|");
    EXPECT_TRUE(self.FindAndReplace(0, self, GBuffer("x")));
    EXPECT_EQ(BytesOf(self), "x");
}

TEST(GBufferComparison, IsByBytesThenByLength) {
    // Each is less than the next.
    const std::string_view ordered[] = {
        "", std::string_view("\0", 1), "a", std::string_view("a\0", 2), "aa", "ab", "b", "\x80", "\xFF"};
    for (std::size_t i = 0; i < std::size(ordered); ++i) {
        for (std::size_t j = 0; j < std::size(ordered); ++j) {
            SCOPED_TRACE(testing::Message() << i << " and " << j);
            const GBuffer left = BufferOf(ordered[i]), right = BufferOf(ordered[j]);
            EXPECT_EQ(std::tuple(left == right, left != right), std::tuple(i == j, i != j));
            EXPECT_EQ(std::tuple(left < right, left <= right), std::tuple(i < j, i <= j));
            EXPECT_EQ(std::tuple(left > right, left >= right), std::tuple(i > j, i >= j));
        }
    }
    EXPECT_TRUE(GBuffer("abc") == "abc" && GBuffer("abc") != "ab" && GBuffer("abc") != "abcd");
    EXPECT_TRUE(GBuffer() == static_cast<const char*>(nullptr));
}

TEST(GBufferHash, IsTheByteByByteDefinitionAtEveryLengthAndOffset) {
    EXPECT_EQ(GBuffer().GetHash(), 0u);
    EXPECT_EQ(GBuffer("abcdefgh").GetHash(), 0x74523016u);
    std::string bytes;
    std::uint32_t state = 12345;
    for (int i = 0; i < 700; ++i) bytes += static_cast<char>((state = state * 1664525 + 1013904223) >> 24);
    for (std::size_t offset = 0; offset < 9; ++offset) {
        for (std::size_t length = 0; length < 650; ++length) {
            auto expected = static_cast<std::uint32_t>(length);
            for (const char c : bytes.substr(offset, length))
                expected = (expected << 4 | expected >> 28) ^ static_cast<unsigned char>(c);
            GBuffer buffer;
            buffer.SetFromStatic(Bytes(bytes.data()) + offset, static_cast<long>(length));
            ASSERT_EQ(buffer.GetHash(), expected) << offset << ", " << length;
        }
    }
}
