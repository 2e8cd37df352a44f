#include "framework/core/GBuffer.h"

#include <gtest/gtest.h>

#include <cstring>
#include <new>
#include <string>
#include <string_view>

#include "framework/core/GCharCode.h"
#include "tests/core/TextForTests.h"

namespace {

const unsigned char* Bytes(const char* text) {
    return reinterpret_cast<const unsigned char*>(text);
}

// No length of a buffer.
// (volatile: a compiler that knew it would warn of what is refused.)
const volatile long cTooLong = 0x7FFFFFFF;

}  // namespace

// --- Growth ------------------------------------------------------------------------------------

TEST(GBufferGrowth, ABlockHoldsAThirdMoreThanAnAppendNeeds) {
    const struct {
        const char* what;
        long lengthBefore;
        long appended;
        long arraySize;
    } rows[] = {
        {"at least eight bytes", 0, 1, 8},
        {"n = 7, 7 + 2", 0, 5, 9},
        {"n = 9, 9 + 3", 0, 7, 12},
        {"a hundred: n = 102, 102 + 34", 0, 100, 136},
        {"behind other bytes: n = 112, 112 + 37", 10, 100, 149},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.what);
        GBuffer buffer;
        buffer.CopyByteArray(Bytes(std::string(100, 'a').c_str()), row.lengthBefore);
        buffer.AppendByteArray(Bytes(std::string(100, 'b').c_str()), row.appended);
        EXPECT_EQ(buffer.GetArraySize(), row.arraySize);
        EXPECT_EQ(buffer.GetAllocatedLength(), row.arraySize - 2);
        EXPECT_EQ(BytesOf(buffer), std::string(static_cast<std::size_t>(row.lengthBefore), 'a') +
                                       std::string(static_cast<std::size_t>(row.appended), 'b'));
    }
}

TEST(GBufferGrowth, SingleElementsGrowByTheirOwnRule) {
    GBuffer bytes;
    bytes += 'a';
    EXPECT_EQ(bytes.GetArraySize(), 10);  // 8 + 2
    for (int i = 1; i < 8; ++i) bytes += 'a';
    EXPECT_EQ(bytes.GetArraySize(), 10);
    bytes += 'a';
    EXPECT_EQ(bytes.GetArraySize(), 14);  // n = 9: 9 + 3 + 2
    GBuffer units;
    for (int i = 0; i < 4; ++i) units += static_cast<unsigned short>(0x4142);
    EXPECT_EQ(units.GetArraySize(), 10);
    units += static_cast<unsigned short>(0x4142);
    EXPECT_EQ(units.GetArraySize(), 15);  // n = 10: 10 + 3 + 2
    EXPECT_EQ(BytesOf(units), "BABABABABA");
}

TEST(GBufferGrowth, CopyingAndAllocatingTakeExactlyWhatIsAskedFor) {
    EXPECT_EQ(GBuffer("abc").GetArraySize(), 5);
    GBuffer buffer;
    buffer.Allocate(100);
    EXPECT_EQ(buffer.GetArraySize(), 102);
    EXPECT_TRUE(buffer.GetAllocated());
    buffer.Allocate(50);
    EXPECT_EQ(buffer.GetArraySize(), 102) << "never shrinks";
    buffer.Set("ab");
    EXPECT_EQ(buffer.GetArraySize(), 102) << "a block that is large enough is used again";
    buffer.Allocate(-1);
    buffer.Allocate(101);
    EXPECT_EQ(buffer.GetArraySize(), 103);
    EXPECT_EQ(BytesOf(buffer), "ab") << "what is in it stays";
}

TEST(GBufferGrowth, ALengthBeyond31BitsIsRefusedAndChangesNothing) {
    GBuffer buffer("abc");
    EXPECT_THROW(buffer.Allocate(cTooLong), std::bad_alloc);
    EXPECT_THROW(buffer.SetLength(cTooLong), std::bad_alloc);
    EXPECT_THROW(buffer.AppendByteArray(Bytes("x"), cTooLong), std::bad_alloc);
    EXPECT_THROW(buffer.ReplaceByteArray(0, 1, Bytes("x"), cTooLong), std::bad_alloc);
    EXPECT_THROW(buffer.CopyByteArray(Bytes("x"), cTooLong), std::bad_alloc);
    EXPECT_THROW(buffer.SetFromStatic(Bytes("x"), cTooLong), std::bad_alloc);
    EXPECT_EQ(BytesOf(buffer), "abc");
    EXPECT_EQ(buffer.GetArraySize(), 5);
}

// --- Borrowing ---------------------------------------------------------------------------------

TEST(GBufferBorrowing, ALiteralIsHandedOutAsItIsUntilItIsChanged) {
    static char literal[] = "abc";
    GBuffer buffer;
    buffer.SetFromStatic(literal);
    EXPECT_FALSE(buffer.GetAllocated());
    EXPECT_EQ(buffer.GetArraySize(), 4);
    EXPECT_EQ(buffer.GetPtr(), literal);
    buffer += 'd';
    EXPECT_TRUE(buffer.GetAllocated());
    EXPECT_STREQ(buffer.GetPtr(), "abcd");
    EXPECT_STREQ(literal, "abc");
}

TEST(GBufferBorrowing, CopiesShareTheMemory) {
    static const char literal[] = "abc";
    GBuffer original;
    original.SetFromStatic(literal);
    const GBuffer copy(original);
    GBuffer assigned("something else");
    assigned = original;
    EXPECT_EQ(copy.GetPtr(), literal);
    EXPECT_EQ(assigned.GetPtr(), literal);
    EXPECT_FALSE(assigned.GetAllocated());
    const GBuffer owned("abc");
    const GBuffer ownedCopy(owned);
    EXPECT_NE(ownedCopy.GetRawData(), owned.GetRawData());
    EXPECT_EQ(ownedCopy, owned);
}

TEST(GBufferBorrowing, EveryChangeLeavesTheMemoryAlone) {
    const struct {
        const char* what;
        void (*change)(GBuffer&);
        const char* result;
    } rows[] = {
        {"append bytes", [](GBuffer& b) { b.AppendByteArray(Bytes("xy"), 2); }, "abcxy"},
        {"append a byte", [](GBuffer& b) { b += 'x'; }, "abcx"},
        {"append a unit", [](GBuffer& b) { b += static_cast<unsigned short>(0x7978); }, "abcxy"},
        {"append itself", [](GBuffer& b) { b += b; }, "abcabc"},
        {"replace", [](GBuffer& b) { b.Replace(1, 1, GBuffer("xyz")); }, "axyzc"},
        {"remove", [](GBuffer& b) { b.Remove(0, 1); }, "bc"},
        {"shorten", [](GBuffer& b) { b.SetLength(2); }, "ab"},
        {"find and replace a byte", [](GBuffer& b) { b.FindAndReplace(0, 'a', 'x'); }, "xbc"},
        {"find and replace bytes", [](GBuffer& b) { b.FindAndReplace(0, "ab", "xy"); }, "xyc"},
        {"set a unit", [](GBuffer& b) { b.SetWordAt(0, 0x7978); }, "xyc"},
        {"write through the pointer", [](GBuffer& b) { b.GetWritePtr()[0] = 'x'; }, "xbc"},
        {"copy over it", [](GBuffer& b) { b.CopyByteArray(Bytes("xy"), 2); }, "xy"},
        {"copy a part of itself", [](GBuffer& b) { b.GetSubBuffer(1, 2, b); }, "bc"},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.what);
        unsigned char block[16] = "abc";
        GBuffer buffer;
        buffer.TakeByteArray(block, 3, sizeof block);
        row.change(buffer);
        EXPECT_STREQ(buffer.GetPtr(), row.result);
        EXPECT_STREQ(reinterpret_cast<char*>(block), "abc");
    }
}

TEST(GBufferBorrowing, BytesWithoutAZeroBehindThemAreMovedWhenATextIsAskedFor) {
    const unsigned char bytes[] = {'a', 'b', 'c', 'd'};
    GBuffer buffer;
    buffer.SetFromStatic(bytes, 2);
    EXPECT_STREQ(buffer.GetPtr(), "ab");
    EXPECT_TRUE(buffer.GetAllocated());
    EXPECT_EQ(buffer.GetArraySize(), 4) << "two bytes and the spare ones, though three were declared";
    buffer.TakeByteArray(const_cast<unsigned char*>(bytes), 4, 4);
    EXPECT_STREQ(buffer.GetPtr(), "abcd") << "the byte behind the block is not looked at";
    unsigned char roomy[32] = "ab.";
    buffer.TakeByteArray(roomy, 2, sizeof roomy);
    EXPECT_STREQ(buffer.GetPtr(), "ab");
    EXPECT_EQ(buffer.GetArraySize(), 32) << "the declared size";
}

TEST(GBufferBorrowing, NullAndNegativeLengthsBorrowNothing) {
    GBuffer buffer("abc");
    buffer.SetFromStatic(static_cast<const char*>(nullptr));
    EXPECT_TRUE(buffer.IsEmpty());
    EXPECT_STREQ(buffer.GetPtr(), "");
    buffer.TakeByteArray(reinterpret_cast<unsigned char*>(&buffer), -1, 10);
    EXPECT_TRUE(buffer.IsEmpty());
    EXPECT_EQ(buffer.GetArraySize(), 0);
}

TEST(GBufferBorrowing, ADeclaredBlockMayBeFilledFromOutside) {
    unsigned char block[8] = {};
    GBuffer buffer;
    buffer.TakeByteArray(block, 0, sizeof block);
    std::memcpy(block, "filled!", 8);
    buffer.SetLength(7);
    EXPECT_FALSE(buffer.GetAllocated());
    EXPECT_STREQ(buffer.GetPtr(), "filled!");
    buffer.SetLength(9);
    EXPECT_TRUE(buffer.GetAllocated());
    EXPECT_EQ(BytesOf(buffer).substr(0, 7), "filled!");
}

// --- Setting and reading -----------------------------------------------------------------------

TEST(GBuffer, AnEmptyBufferHasNoBlockButATerminatedText) {
    const GBuffer empty;
    EXPECT_EQ(empty.GetLength(), 0);
    EXPECT_EQ(empty.GetRawData(), nullptr);
    EXPECT_EQ(empty.GetAllocatedLength(), 0);
    ASSERT_NE(empty.GetPtr(), nullptr);
    EXPECT_EQ(empty.GetPtr()[0], 0);
    EXPECT_EQ(empty.GetPtr()[1], 0) << "as UTF-16, too";
    EXPECT_EQ(GBuffer().GetWritePtr(), nullptr);
    EXPECT_EQ(GBuffer::cEmptyBuffer, empty);
    EXPECT_TRUE(GBuffer(static_cast<const char*>(nullptr)).IsEmpty());
}

TEST(GBuffer, AnOwnedBufferEndsInTwoZeros) {
    GBuffer buffer("abcdef");
    buffer.SetLength(3);
    const char* const text = buffer.GetPtr();
    EXPECT_EQ(std::string_view(text, 5), std::string_view("abc\0\0", 5));
    buffer.GetWritePtr()[3] = 'x';
    EXPECT_EQ(buffer.GetWritePtr()[3], 0);
    const char* const converted = buffer;
    EXPECT_EQ(converted, text);
}

TEST(GBuffer, ClearKeepsTheBlock) {
    GBuffer buffer("abcdef");
    const unsigned char* const block = buffer.GetRawData();
    buffer.Clear();
    EXPECT_EQ(buffer.GetLength(), 0);
    EXPECT_EQ(buffer.GetArraySize(), 8);
    buffer.Set("abc");
    EXPECT_EQ(buffer.GetRawData(), block);
}

TEST(GBuffer, CopyByteArray) {
    const struct {
        const char* what;
        const char* source;
        long length;
        long copyLength;
        std::string_view block;  // the bytes, and behind them what copyLength brings along
    } rows[] = {
        {"the bytes alone", "abcdef", 3, 3, "abc"},
        {"with what follows", "abcdef", 3, 4, "abcd"},
        {"never more than the spare bytes", "abcdef", 3, 100, "abcde"},
        {"fewer than the length", "abcdef", 3, 2, "ab"},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.what);
        GBuffer buffer;
        buffer.CopyByteArray(Bytes(row.source), row.length, row.copyLength);
        EXPECT_EQ(buffer.GetLength(), row.length);
        EXPECT_EQ(buffer.GetArraySize(), row.length + 2);
        const auto* const data = reinterpret_cast<const char*>(buffer.GetRawData());
        EXPECT_EQ(std::string_view(data, row.block.size()), row.block);
    }
    GBuffer kept("abc");
    const unsigned char* const block = kept.GetRawData();
    kept.CopyByteArray(nullptr, 5, 5);
    EXPECT_TRUE(kept.IsEmpty());
    kept.Set("abc");
    kept.CopyByteArray(Bytes("xyz"), 0, 3);
    EXPECT_TRUE(kept.IsEmpty());
    EXPECT_EQ(kept.GetRawData(), block);
}

TEST(GBuffer, CopyByteArrayFromWithinItself) {
    GBuffer buffer("abcdefgh");
    buffer.CopyByteArray(buffer.GetRawData() + 2, 5);
    EXPECT_EQ(BytesOf(buffer), "cdefg");
    buffer.Set(buffer.GetPtr());
    EXPECT_EQ(BytesOf(buffer), "cdefg");
    GBuffer tight("abc");
    tight.CopyByteArray(tight.GetRawData() + 1, 4);  // reaches into the spare bytes, needs a new block
    EXPECT_EQ(BytesOf(tight).substr(0, 2), "bc");
    EXPECT_EQ(tight.GetArraySize(), 6);
}

TEST(GBuffer, WordsStayInsideTheBlock) {
    GBuffer buffer("abcdef");  // 8 bytes with the spare ones
    buffer.GetWritePtr();
    EXPECT_EQ(buffer.GetWordAt(0), 0x6261);
    EXPECT_EQ(buffer.GetWordAt(2), 0x6665);
    EXPECT_EQ(buffer.GetWordAt(3), 0) << "the spare bytes";
    EXPECT_EQ(buffer.GetWordAt(4), 0);
    EXPECT_EQ(buffer.GetWordAt(-1), 0);
    EXPECT_EQ(buffer.GetWordAt(cTooLong), 0);
    buffer.SetWordAt(1, 0x7A79);
    buffer.SetWordAt(4, 0x7A79);
    buffer.SetWordAt(-1, 0x7A79);
    EXPECT_EQ(BytesOf(buffer), "abyzef");
    GBuffer empty;
    empty.SetWordAt(0, 1);
    EXPECT_EQ(empty.GetWordAt(0), 0);
}

TEST(GBuffer, GetSubBuffer) {
    const struct {
        const char* what;
        long start;
        long count;
        const char* result;
    } rows[] = {
        {"inside", 1, 2, "bc"},
        {"to the end", 4, 2, "ef"},
        {"past the end", 4, 3, "ef"},
        {"a negative count", 2, -1, "cdef"},
        {"nothing", 2, 0, ""},
        {"from the end", 6, 1, ""},
        {"beyond the end", 7, 1, ""},
        {"before the start", -3, 2, "ab"},
        {"everything", 0, cTooLong, "abcdef"},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.what);
        const GBuffer buffer("abcdef");
        EXPECT_EQ(BytesOf(buffer.GetSubBuffer(row.start, row.count)), row.result);
        GBuffer self("abcdef");
        self.GetSubBuffer(row.start, row.count, self);
        EXPECT_EQ(BytesOf(self), row.result);
    }
}

TEST(GBuffer, MovingLeavesTheOtherEmpty) {
    GBuffer source("abc");
    const unsigned char* const block = source.GetRawData();
    GBuffer target(std::move(source));
    EXPECT_EQ(target.GetRawData(), block);
    EXPECT_TRUE(source.IsEmpty());
    source = std::move(target);
    EXPECT_EQ(source.GetRawData(), block);
    EXPECT_FALSE(target.GetAllocated());
    GBuffer& self = source;
    source = std::move(self);
    EXPECT_EQ(BytesOf(source), "abc");
    source = self;
    EXPECT_EQ(BytesOf(source), "abc");
}

TEST(GBuffer, SwapExchangesOwnedAndBorrowed) {
    GBuffer owned("abc");
    GBuffer borrowed;
    borrowed.SetFromStatic("defg");
    owned.Swap(borrowed);
    EXPECT_FALSE(owned.GetAllocated());
    EXPECT_EQ(owned.GetArraySize(), 5);
    EXPECT_EQ(BytesOf(owned), "defg");
    EXPECT_TRUE(borrowed.GetAllocated());
    EXPECT_EQ(BytesOf(borrowed), "abc");
}

// --- Editing -----------------------------------------------------------------------------------

TEST(GBufferEditing, Appending) {
    GBuffer buffer;
    buffer += "ab";
    buffer += GBuffer("cd");
    buffer += static_cast<unsigned char>('e');
    buffer += 'f';
    buffer += static_cast<unsigned short>(0x6867);
    buffer += GCharCode(Bytes("ij"), 2);
    buffer += static_cast<const char*>(nullptr);
    buffer.AppendByteArray(nullptr, 3);
    buffer.AppendByteArray(Bytes("x"), 0);
    buffer.AppendByteArray(Bytes("x"), -1);
    EXPECT_EQ(BytesOf(buffer), "abcdefghij");
    EXPECT_EQ(BytesOf(buffer + buffer), "abcdefghijabcdefghij");
    EXPECT_EQ(BytesOf(GBuffer() + "x"), "x");
}

TEST(GBufferEditing, AppendingFromWithinItself) {
    GBuffer buffer("abc");
    for (int i = 0; i < 5; ++i) buffer += buffer;
    EXPECT_EQ(buffer.GetLength(), 96);
    EXPECT_EQ(BytesOf(buffer).substr(90), "abcabc");
    GBuffer part("abcdef");
    part.AppendByteArray(part.GetRawData() + 1, 3);
    EXPECT_EQ(BytesOf(part), "abcdefbcd");
}

TEST(GBufferEditing, ReplaceByteArray) {
    const struct {
        const char* what;
        long start;
        long removed;
        const char* inserted;
        const char* result;
    } rows[] = {
        {"same length", 1, 2, "xy", "axydef"},
        {"longer", 1, 2, "uvwxyz", "auvwxyzdef"},
        {"shorter", 1, 4, "x", "axf"},
        {"only insert", 3, 0, "xy", "abcxydef"},
        {"only remove", 3, 2, "", "abcf"},
        {"at the start", 0, 1, "xy", "xybcdef"},
        {"at the end", 6, 0, "xy", "abcdefxy"},
        {"behind the end appends", 99, 5, "xy", "abcdefxy"},
        {"before the start", -5, 1, "xy", "xybcdef"},
        {"removing more than there is", 4, cTooLong, "xy", "abcdxy"},
        {"removing a negative count", 4, -3, "xy", "abcdxyef"},
        {"everything", 0, 6, "", ""},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.what);
        GBuffer tight("abcdef");
        tight.ReplaceByteArray(row.start, row.removed, Bytes(row.inserted),
                               static_cast<long>(std::strlen(row.inserted)));
        EXPECT_EQ(BytesOf(tight), row.result);
        GBuffer roomy("abcdef");
        roomy.Allocate(100);
        roomy.ReplaceByteArray(row.start, row.removed, Bytes(row.inserted),
                               static_cast<long>(std::strlen(row.inserted)));
        EXPECT_EQ(BytesOf(roomy), row.result);
        EXPECT_EQ(roomy.GetArraySize(), 102);
    }
    GBuffer grown("abcdef");
    grown.ReplaceByteArray(0, 0, Bytes("xyzxyz"), 6);
    EXPECT_EQ(grown.GetArraySize(), 18);  // n = 14: 14 + 4
}

TEST(GBufferEditing, ReplacingByAPartOfItself) {
    GBuffer roomy("abcdef");
    roomy.Allocate(100);
    roomy.ReplaceByteArray(0, 1, roomy.GetRawData() + 3, 3);
    EXPECT_EQ(BytesOf(roomy), "defbcdef");
    GBuffer tight("abcdef");
    tight.ReplaceByteArray(2, 1, tight.GetRawData(), 6);
    EXPECT_EQ(BytesOf(tight), "ababcdefdef");
    tight.Replace(0, 0, tight);
    EXPECT_EQ(BytesOf(tight), "ababcdefdefababcdefdef");
}

TEST(GBufferEditing, Remove) {
    const struct {
        long start;
        long count;
        const char* result;
    } rows[] = {
        {0, 2, "cdef"},    {4, 2, "abcd"},   {4, 99, "abcd"},  {2, 0, "abcdef"},
        {2, -1, "abcdef"}, {6, 1, "abcdef"}, {7, 1, "abcdef"},
    };
    for (const auto& row : rows) {
        GBuffer buffer("abcdef");
        buffer.Remove(row.start, row.count);
        EXPECT_EQ(BytesOf(buffer), row.result) << row.start << ", " << row.count;
    }
}

TEST(GBufferEditing, FindAndReplace) {
    const struct {
        const char* what;
        const char* text;
        long start;
        const char* find;
        const char* with;
        const char* result;
        bool replaced;
    } rows[] = {
        {"each occurrence", "a-b-c", 0, "-", "+", "a+b+c", true},
        {"from the start position on", "a-b-c", 2, "-", "+", "a-b+c", true},
        {"longer", "a-b-c", 0, "-", "::", "a::b::c", true},
        {"by nothing", "a-b-c", 0, "-", "", "abc", true},
        {"what was inserted is not looked at again", "aa", 0, "a", "aa", "aaaa", true},
        {"overlapping occurrences from the left", "aaa", 0, "aa", "b", "ba", true},
        {"absent", "abc", 0, "x", "y", "abc", false},
        {"an empty pattern occurs nowhere", "abc", 0, "", "y", "abc", false},
        {"a start beyond the end", "abc", 4, "a", "y", "abc", false},
        {"in an empty text", "", 0, "a", "y", "", false},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.what);
        GBuffer buffer(row.text);
        EXPECT_EQ(buffer.FindAndReplace(row.start, row.find, row.with), row.replaced);
        EXPECT_EQ(BytesOf(buffer), row.result);
    }
    GBuffer self("ab");
    EXPECT_TRUE(self.FindAndReplace(0, GBuffer("b"), self));
    EXPECT_EQ(BytesOf(self), "aab");
    EXPECT_TRUE(self.FindAndReplace(0, self, GBuffer("x")));
    EXPECT_EQ(BytesOf(self), "x");
}

TEST(GBufferEditing, FindAndReplaceAByte) {
    GBuffer buffer("a-b-c");
    EXPECT_TRUE(buffer.FindAndReplace(2, '-', '+'));
    EXPECT_EQ(BytesOf(buffer), "a-b+c");
    EXPECT_FALSE(buffer.FindAndReplace(2, '-', '+'));
    EXPECT_TRUE(buffer.FindAndReplace(-9, '-', '+'));
    EXPECT_EQ(BytesOf(buffer), "a+b+c");
}

// --- Comparison --------------------------------------------------------------------------------

TEST(GBufferComparison, IsByBytesThenByLength) {
    // Each is less than the next.
    const std::string_view ordered[] = {
        "", std::string_view("\0", 1), "a", std::string_view("a\0", 2), "aa", "ab", "b", "\x80", "\xFF"};
    for (std::size_t i = 0; i < std::size(ordered); ++i) {
        for (std::size_t j = 0; j < std::size(ordered); ++j) {
            SCOPED_TRACE(testing::Message() << i << " and " << j);
            const GBuffer left = BufferOf(ordered[i]);
            const GBuffer right = BufferOf(ordered[j]);
            EXPECT_EQ(left == right, i == j);
            EXPECT_EQ(left != right, i != j);
            EXPECT_EQ(left < right, i < j);
            EXPECT_EQ(left <= right, i <= j);
            EXPECT_EQ(left > right, i > j);
            EXPECT_EQ(left >= right, i >= j);
        }
    }
    EXPECT_TRUE(GBuffer("abc") == "abc");
    EXPECT_FALSE(GBuffer("abc") == "abcd");
    EXPECT_TRUE(GBuffer("abc") != "ab");
    EXPECT_TRUE(GBuffer() == "");
    EXPECT_TRUE(GBuffer() == static_cast<const char*>(nullptr));
}

TEST(GBufferHash, KnownValues) {
    const struct {
        std::string_view bytes;
        std::uint32_t hash;
    } rows[] = {
        {"", 0},
        {"\x41", 0x51},
        {"\x41\x42", 0x652},
        {"abcdefgh", 0x74523016},
    };
    for (const auto& row : rows) EXPECT_EQ(BufferOf(row.bytes).GetHash(), row.hash) << row.bytes;
}

TEST(GBufferHash, IsTheByteByByteDefinitionAtEveryLengthAndOffset) {
    std::string bytes;
    std::uint32_t state = 12345;
    for (int i = 0; i < 700; ++i) bytes += static_cast<char>((state = state * 1664525 + 1013904223) >> 24);
    for (std::size_t offset = 0; offset < 9; ++offset) {
        for (std::size_t length = 0; length < 650; ++length) {
            const std::string part = bytes.substr(offset, length);
            auto expected = static_cast<std::uint32_t>(length);
            for (const char c : part)
                expected = (expected << 4 | expected >> 28) ^ static_cast<unsigned char>(c);
            GBuffer buffer;
            buffer.SetFromStatic(Bytes(bytes.data()) + offset, static_cast<long>(length));
            ASSERT_EQ(buffer.GetHash(), expected) << offset << ", " << length;
        }
    }
}
