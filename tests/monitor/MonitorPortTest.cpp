#include "monitor/MonitorPort.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstring>
#include <string>
#include <tuple>
#include <vector>

#include "tests/monitor/FakeMonitorPlatform.h"

namespace {

constexpr unsigned long cUnset = 77;

class MonitorPortTest : public testing::Test {
protected:
    CallbackOutcome Enumerate(std::uint32_t level, std::vector<unsigned char>& buffer) {
        mNeeded = mReturned = cUnset;
        return mPort.Enumerate(level, buffer.data(), static_cast<std::uint32_t>(buffer.size()), &mNeeded,
                               &mReturned);
    }
    void* Open() {
        void* handle = nullptr;
        EXPECT_TRUE(mPort.Open(Units(u"QuillonPDFPort:"), &handle).mSucceeded);
        return handle;
    }

    FakeMonitorPlatform mPlatform;
    MonitorState mState;
    MonitorPort mPort{mPlatform, mState};
    unsigned long mNeeded = cUnset;
    unsigned long mReturned = cUnset;
};

std::string UTF16Bytes(const std::u16string& text) {
    return std::string(reinterpret_cast<const char*>(text.data()), text.size() * 2);
}

std::string BytesAt(const std::vector<unsigned char>& buffer, std::size_t start, std::size_t count) {
    return std::string(buffer.begin() + start, buffer.begin() + start + count);
}

std::size_t OffsetInRecord(const std::vector<unsigned char>& buffer, std::size_t fieldOffset) {
    const unsigned char* target = nullptr;
    std::memcpy(&target, buffer.data() + fieldOffset, sizeof target);
    return static_cast<std::size_t>(target - buffer.data());
}

const std::string cPortText = UTF16Bytes(std::u16string(u"QuillonPDFPort:\0", 16));
const std::string cMonitorText = UTF16Bytes(std::u16string(u"Quillon Port Monitor\0", 21));
const std::string cDescriptionText = UTF16Bytes(std::u16string(u"Quillon PDF Port\0", 17));

TEST_F(MonitorPortTest, ListsTheNameAtLevel1) {
    for (const std::size_t size : {40, 41, 100}) {
        SCOPED_TRACE(size);
        std::vector<unsigned char> buffer(size, 0xEE);
        EXPECT_TRUE(Enumerate(1, buffer).mSucceeded);
        EXPECT_EQ(mNeeded, 40u);
        EXPECT_EQ(mReturned, 1u);
        EXPECT_EQ(OffsetInRecord(buffer, 0), size - 32);
        EXPECT_EQ(BytesAt(buffer, size - 32, 32), cPortText);
        EXPECT_EQ(BytesAt(buffer, 8, size - 40), std::string(size - 40, '\xEE'));
    }
    EXPECT_THAT(mPlatform.mEvents, testing::Each("PPMEnumPorts: Received request for Level 1 info"));
}

TEST_F(MonitorPortTest, PacksAllTextsFromTheEndAtLevel2) {
    for (const std::size_t size : {140, 141, 200}) {
        SCOPED_TRACE(size);
        std::vector<unsigned char> buffer(size, 0xEE);
        EXPECT_TRUE(Enumerate(2, buffer).mSucceeded);
        EXPECT_EQ(mNeeded, 140u);
        EXPECT_EQ(mReturned, 1u);
        EXPECT_EQ(OffsetInRecord(buffer, 0), size - 32);
        EXPECT_EQ(OffsetInRecord(buffer, 8), size - 74);
        EXPECT_EQ(OffsetInRecord(buffer, 16), size - 108);
        EXPECT_EQ(BytesAt(buffer, 24, 8), std::string("\1\0\0\0\0\0\0\0", 8));
        EXPECT_EQ(BytesAt(buffer, size - 108, 108), cDescriptionText + cMonitorText + cPortText);
    }
    EXPECT_THAT(mPlatform.mEvents, testing::Each("PPMEnumPorts: Received request for Level 2 info"));
}

TEST_F(MonitorPortTest, AsksForMoreWhenTheBufferIsTooSmall) {
    const std::tuple<std::uint32_t, std::size_t, unsigned long> rows[] = {
        {1, 0, 40}, {1, 39, 40}, {2, 0, 140}, {2, 40, 140}, {2, 139, 140}};
    for (const auto& [level, size, needed] : rows) {
        SCOPED_TRACE(size);
        std::vector<unsigned char> buffer(size, 0xEE);
        const CallbackOutcome outcome = Enumerate(level, buffer);
        EXPECT_FALSE(outcome.mSucceeded);
        EXPECT_EQ(outcome.mLastError, 122u);
        EXPECT_EQ(mNeeded, needed);
        EXPECT_EQ(mReturned, 0u);
        EXPECT_THAT(buffer, testing::Each(0xEE));
    }
}

TEST_F(MonitorPortTest, KnowsNoOtherLevel) {
    for (const std::uint32_t level : {0u, 3u, 0xFFFFFFFFu}) {
        SCOPED_TRACE(level);
        std::vector<unsigned char> buffer(200, 0xEE);
        const CallbackOutcome outcome = Enumerate(level, buffer);
        EXPECT_FALSE(outcome.mSucceeded);
        EXPECT_EQ(outcome.mLastError, 124u);
        EXPECT_EQ(mNeeded, cUnset);
        EXPECT_EQ(mReturned, cUnset);
    }
    EXPECT_TRUE(mPlatform.mEvents.empty());
}

TEST_F(MonitorPortTest, RefusesToListIntoNothing) {
    unsigned char buffer[200];
    unsigned long count = 0;
    EXPECT_EQ(mPort.Enumerate(1, nullptr, 200, &count, &count).mLastError, 87u);
    EXPECT_EQ(mPort.Enumerate(2, nullptr, 200, &count, &count).mLastError, 87u);
    EXPECT_EQ(mPort.Enumerate(1, buffer, 200, nullptr, &count).mLastError, 87u);
    EXPECT_EQ(mPort.Enumerate(1, buffer, 200, &count, nullptr).mLastError, 87u);
}

TEST_F(MonitorPortTest, OpensForItsExactNameOnly) {
    const std::tuple<const char16_t*, bool> rows[] = {
        {u"QuillonPDFPort:", true},
        {u"quillonpdfport:", false},
        {u"QuillonPDFPort", false},
        {u"QuillonPDFPort: ", false},
        {u" QuillonPDFPort:", false},
        {u"QuillonPDFPort::", false},
        {u"QuillonPDFPort\u003B", false},
        {u"", false},
        {u"LPT1:", false},
    };
    for (const auto& [name, opens] : rows) {
        SCOPED_TRACE(testing::PrintToString(std::u16string(name)));
        void* handle = nullptr;
        const CallbackOutcome outcome = mPort.Open(Units(name), &handle);
        EXPECT_EQ(outcome.mSucceeded, opens);
        EXPECT_EQ(handle != nullptr, opens);
        EXPECT_EQ(mState.sPortHandle, handle);
        if (opens) {
            EXPECT_TRUE(mPort.Close(handle).mSucceeded);
        } else {
            EXPECT_EQ(outcome.mLastError, 1796u);
        }
    }
    EXPECT_EQ(mPlatform.mPortHandles, 0);
}

TEST_F(MonitorPortTest, OpensOnlyOnce) {
    void* const first = Open();
    void* second = nullptr;
    EXPECT_EQ(mPort.Open(Units(u"QuillonPDFPort:"), &second).mLastError, 170u);
    EXPECT_EQ(mPort.Open(nullptr, nullptr).mLastError, 170u) << "busy comes before bad arguments";
    EXPECT_EQ(second, nullptr);
    EXPECT_EQ(mState.sPortHandle, first);
    EXPECT_TRUE(mPort.Close(first).mSucceeded);
    void* const third = Open();
    EXPECT_TRUE(mPort.Close(third).mSucceeded);
}

TEST_F(MonitorPortTest, RefusesNullArguments) {
    void* handle = nullptr;
    EXPECT_EQ(mPort.Open(nullptr, &handle).mLastError, 87u);
    EXPECT_EQ(mPort.Open(Units(u"QuillonPDFPort:"), nullptr).mLastError, 87u);
    EXPECT_EQ(mState.sPortHandle, nullptr);
    EXPECT_EQ(mPlatform.mPortHandles, 0);
}

TEST_F(MonitorPortTest, StaysClosedWithoutMemory) {
    mPlatform.mOutOfMemory = true;
    void* handle = nullptr;
    EXPECT_THROW(mPort.Open(Units(u"QuillonPDFPort:"), &handle), std::bad_alloc);
    EXPECT_EQ(handle, nullptr);
    EXPECT_EQ(mState.sPortHandle, nullptr);
    mPlatform.mOutOfMemory = false;
    mPort.Close(Open());
}

TEST_F(MonitorPortTest, ClosesWithItsOwnHandleOnly) {
    char other;
    EXPECT_EQ(mPort.Close(nullptr).mLastError, 6u) << "closed port, null handle";
    void* const handle = Open();
    mState.sProcessingJob = true;
    EXPECT_EQ(mPort.Close(nullptr).mLastError, 6u);
    EXPECT_EQ(mPort.Close(&other).mLastError, 6u);
    EXPECT_EQ(mState.sPortHandle, handle);
    EXPECT_TRUE(mState.sProcessingJob);
    EXPECT_TRUE(mPort.Close(handle).mSucceeded);
    EXPECT_FALSE(mState.sProcessingJob);
    EXPECT_EQ(mPort.Close(handle).mLastError, 6u) << "twice";
    EXPECT_EQ(mPlatform.mPortHandles, 0);
}

TEST_F(MonitorPortTest, ResetForgetsThePrinterWithoutClosingIt) {
    char printer;
    Open();
    mState.sProcessingJob = true;
    mState.sPrinterHandle = &printer;
    mPlatform.mEvents.clear();
    mPort.Reset();
    EXPECT_EQ(mState.sPortHandle, nullptr);
    EXPECT_EQ(mState.sPrinterHandle, nullptr);
    EXPECT_FALSE(mState.sProcessingJob);
    EXPECT_EQ(mPlatform.mPortHandles, 0);
    EXPECT_TRUE(mPlatform.mEvents.empty());
    mPort.Reset();
    mPort.Close(Open());
}

}  // namespace
