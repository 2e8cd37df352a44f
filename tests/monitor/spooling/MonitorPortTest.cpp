#include "monitor/spooling/MonitorPort.h"

#include <gmock/gmock.h>

#include <cstring>
#include <string>
#include <tuple>
#include <vector>

#include "tests/monitor/spooling/FakeMonitorPlatform.h"

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

TEST_F(MonitorPortTest, PacksTheTextsFromTheEndOfTheBuffer) {
    for (const std::size_t spare : {0, 1, 60}) {
        SCOPED_TRACE(spare);
        std::vector<unsigned char> name(40 + spare, 0xEE);
        EXPECT_TRUE(Enumerate(1, name).mSucceeded);
        EXPECT_EQ(mNeeded, 40u);
        EXPECT_EQ(mReturned, 1u);
        EXPECT_EQ(OffsetInRecord(name, 0), 8 + spare);
        EXPECT_EQ(BytesAt(name, 8, 32 + spare), std::string(spare, '\xEE') + cPortText);
        std::vector<unsigned char> all(140 + spare, 0xEE);
        EXPECT_TRUE(Enumerate(2, all).mSucceeded);
        EXPECT_EQ(mNeeded, 140u);
        EXPECT_EQ(mReturned, 1u);
        EXPECT_EQ(OffsetInRecord(all, 0), 108 + spare);
        EXPECT_EQ(OffsetInRecord(all, 8), 66 + spare);
        EXPECT_EQ(OffsetInRecord(all, 16), 32 + spare);
        EXPECT_EQ(BytesAt(all, 24, 8), std::string("\1\0\0\0\0\0\0\0", 8));
        EXPECT_EQ(BytesAt(all, 32 + spare, 108), cDescriptionText + cMonitorText + cPortText);
        EXPECT_THAT(mPlatform.TakeEvents(),
                    testing::ElementsAre("PPMEnumPorts: Received request for Level 1 info",
                                         "PPMEnumPorts: Received request for Level 2 info"));
    }
}

TEST_F(MonitorPortTest, RefusesOtherLevelsAndBuffersThatAreTooSmall) {
    // level, size, last error, needed, returned
    const std::tuple<std::uint32_t, std::size_t, std::uint32_t, unsigned long, unsigned long> rows[] = {
        {1, 0, 122, 40, 0},
        {1, 39, 122, 40, 0},
        {2, 0, 122, 140, 0},
        {2, 40, 122, 140, 0},
        {2, 139, 122, 140, 0},
        {0, 200, 124, cUnset, cUnset},
        {3, 200, 124, cUnset, cUnset},
        {0xFFFFFFFF, 200, 124, cUnset, cUnset}};
    for (const auto& [level, size, lastError, needed, returned] : rows) {
        SCOPED_TRACE(level);
        std::vector<unsigned char> buffer(size, 0xEE);
        const CallbackOutcome outcome = Enumerate(level, buffer);
        EXPECT_FALSE(outcome.mSucceeded);
        EXPECT_EQ(outcome.mLastError, lastError);
        EXPECT_EQ(mNeeded, needed);
        EXPECT_EQ(mReturned, returned);
        EXPECT_THAT(buffer, testing::Each(0xEE));
    }
    unsigned char buffer[200];
    unsigned long count = 0;
    for (const std::uint32_t level : {1, 2})
        EXPECT_EQ(mPort.Enumerate(level, nullptr, 200, &count, &count).mLastError, 87u) << "into nothing";
    EXPECT_EQ(mPort.Enumerate(1, buffer, 200, nullptr, &count).mLastError, 87u);
    EXPECT_EQ(mPort.Enumerate(1, buffer, 200, &count, nullptr).mLastError, 87u);
}

TEST_F(MonitorPortTest, OpensForItsExactNameOnly) {
    const std::tuple<const char16_t*, bool> rows[] = {{u"QuillonPDFPort:", true},
                                                      {u"quillonpdfport:", false},
                                                      {u"QuillonPDFPort", false},
                                                      {u"QuillonPDFPort: ", false},
                                                      {u" QuillonPDFPort:", false},
                                                      {u"QuillonPDFPort::", false},
                                                      {u"QuillonPDFPort\u003B", false},
                                                      {u"", false},
                                                      {u"LPT1:", false}};
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

TEST_F(MonitorPortTest, StaysClosedForNullArgumentsAndWithoutMemory) {
    void* handle = nullptr;
    EXPECT_EQ(mPort.Open(nullptr, &handle).mLastError, 87u);
    EXPECT_EQ(mPort.Open(Units(u"QuillonPDFPort:"), nullptr).mLastError, 87u);
    mPlatform.mOutOfMemory = true;
    EXPECT_THROW(mPort.Open(Units(u"QuillonPDFPort:"), &handle), std::bad_alloc);
    EXPECT_EQ(handle, nullptr);
    EXPECT_EQ(mState.sPortHandle, nullptr);
    EXPECT_EQ(mPlatform.mPortHandles, 0);
}

TEST_F(MonitorPortTest, OpensOnceAndClosesWithItsOwnHandleOnly) {
    char other;
    for (int round = 0; round < 2; ++round) {
        EXPECT_EQ(mPort.Close(nullptr).mLastError, 6u) << "closed port, null handle";
        void* const handle = Open();
        void* second = nullptr;
        EXPECT_EQ(mPort.Open(Units(u"QuillonPDFPort:"), &second).mLastError, 170u);
        EXPECT_EQ(mPort.Open(nullptr, nullptr).mLastError, 170u) << "busy comes before bad arguments";
        EXPECT_EQ(second, nullptr);
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
    Open();
    mState.sProcessingJob = true;
    mState.sPrinterHandle = &other;
    for (int round = 0; round < 2; ++round) {
        mPort.Reset();
        EXPECT_EQ(mState.sPortHandle, nullptr);
        EXPECT_EQ(mState.sPrinterHandle, nullptr);
        EXPECT_FALSE(mState.sProcessingJob);
        EXPECT_EQ(mPlatform.mPortHandles, 0);
    }
    EXPECT_TRUE(mPlatform.mEvents.empty()) << "the printer is forgotten, not closed";
}

}  // namespace
