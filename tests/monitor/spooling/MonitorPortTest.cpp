// The port's callbacks, and how each callback of the monitor is run.
#include "monitor/spooling/MonitorPort.h"

#include "monitor/spooling/RunCallback.h"
#include "tests/monitor/spooling/FakeMonitorPlatform.h"

namespace {

constexpr unsigned long cUnset = 77;

struct MonitorPortTest : testing::Test {
    CallbackOutcome Enumerate(std::uint32_t level, std::vector<unsigned char>& buffer) {
        mNeeded = mReturned = cUnset;
        return mPort.Enumerate(level, buffer.data(), static_cast<std::uint32_t>(buffer.size()), &mNeeded,
                               &mReturned);
    }
    std::uint32_t ErrorOfOpening(const char16_t* name, void** handle) {
        return mPort.Open(Units(name), handle).mLastError.value_or(0);
    }

    FakeMonitorPlatform mPlatform;
    MonitorState mState;
    MonitorPort mPort{mPlatform, mState};
    unsigned long mNeeded = cUnset;
    unsigned long mReturned = cUnset;
};

/// The text with the zero that ends it, as bytes.
std::string UTF16Bytes(const std::u16string& text) {
    return std::string(reinterpret_cast<const char*>(text.c_str()), text.size() * 2 + 2);
}

/// A record as the spooler reads it: its pointers as offsets, then what follows them.
std::string RecordAs(const std::vector<unsigned char>& buffer, std::size_t pointers, std::size_t start) {
    std::string text;
    for (std::size_t i = 0; i < pointers; ++i) {
        const unsigned char* target = nullptr;
        std::memcpy(&target, buffer.data() + 8 * i, sizeof target);
        text += std::to_string(target - buffer.data()) + " ";
    }
    return text + std::string(buffer.begin() + static_cast<long>(start), buffer.end());
}

TEST_F(MonitorPortTest, PacksTheTextsFromTheEndOfTheBuffer) {
    const std::string port = UTF16Bytes(u"QuillonPDFPort:");
    const std::string others = UTF16Bytes(u"Quillon PDF Port") + UTF16Bytes(u"Quillon Port Monitor");
    for (const std::size_t spare : {0, 1, 60}) {
        SCOPED_TRACE(spare);
        const std::string gap(spare, '\xEE');
        const auto offset = [spare](std::size_t tight) { return std::to_string(tight + spare) + " "; };
        std::vector<unsigned char> name(40 + spare, 0xEE);
        EXPECT_TRUE(Enumerate(1, name).mSucceeded);
        EXPECT_EQ(mNeeded + mReturned, 41u);
        EXPECT_EQ(RecordAs(name, 1, 8), offset(8) + gap + port);
        std::vector<unsigned char> all(140 + spare, 0xEE);
        EXPECT_TRUE(Enumerate(2, all).mSucceeded);
        EXPECT_EQ(mNeeded + mReturned, 141u);
        EXPECT_EQ(RecordAs(all, 3, 24), offset(108) + offset(66) + offset(32) +
                                            std::string("\1\0\0\0\0\0\0\0", 8) + gap + others + port);
        EXPECT_EQ(mPlatform.TakeEvents(), (Words{"PPMEnumPorts: Received request for Level 1 info",
                                                 "PPMEnumPorts: Received request for Level 2 info"}));
    }
}

TEST_F(MonitorPortTest, RefusesOtherLevelsAndBuffersThatAreTooSmall) {
    // level, size, last error, needed, returned
    const std::tuple<std::uint32_t, std::size_t, std::uint32_t, unsigned long, unsigned long> rows[] = {
        {1, 0, 122, 40, 0},    {1, 39, 122, 40, 0},           {2, 40, 122, 140, 0},
        {2, 139, 122, 140, 0}, {0, 200, 124, cUnset, cUnset}, {0xFFFFFFFF, 200, 124, cUnset, cUnset}};
    for (const auto& [level, size, lastError, needed, returned] : rows) {
        SCOPED_TRACE(testing::Message() << level << " " << size);
        std::vector<unsigned char> buffer(size, 0xEE);
        EXPECT_EQ(Enumerate(level, buffer).mLastError, lastError);
        EXPECT_EQ(mNeeded, needed);
        EXPECT_EQ(mReturned, returned);
        EXPECT_THAT(buffer, testing::Each(0xEE));
    }
    unsigned char buffer[200];
    unsigned long count = 0;
    EXPECT_EQ(mPort.Enumerate(2, nullptr, 200, &count, &count).mLastError, 87u) << "into nothing";
    EXPECT_EQ(mPort.Enumerate(1, buffer, 200, nullptr, &count).mLastError, 87u);
    EXPECT_EQ(mPort.Enumerate(1, buffer, 200, &count, nullptr).mLastError, 87u);
}

TEST_F(MonitorPortTest, OpensOnceForItsExactNameAndClosesWithItsOwnHandleOnly) {
    void* handle = nullptr;
    for (const char16_t* name : {u"quillonpdfport:", u"QuillonPDFPort", u"QuillonPDFPort: ",
                                 u" QuillonPDFPort:", u"QuillonPDFPort;", u"", u"LPT1:"})
        EXPECT_EQ(ErrorOfOpening(name, &handle), 1796u) << testing::PrintToString(std::u16string(name));
    EXPECT_EQ(ErrorOfOpening(nullptr, &handle), 87u);
    EXPECT_EQ(ErrorOfOpening(u"QuillonPDFPort:", nullptr), 87u);
    mPlatform.mOutOfMemory = true;
    EXPECT_THROW(ErrorOfOpening(u"QuillonPDFPort:", &handle), std::bad_alloc);
    EXPECT_EQ(handle, nullptr);
    mPlatform.mOutOfMemory = false;
    for (int round = 0; round < 2; ++round) {
        EXPECT_EQ(mPlatform.mPortHandles, 0);
        EXPECT_EQ(mPort.Close(nullptr).mLastError, 6u) << "closed port, null handle";
        EXPECT_EQ(ErrorOfOpening(u"QuillonPDFPort:", &handle), 0u);
        EXPECT_EQ(mState.sPortHandle, handle);
        EXPECT_EQ(ErrorOfOpening(nullptr, nullptr), 170u) << "busy comes before bad arguments";
        mState.sProcessingJob = true;
        EXPECT_EQ(mPort.Close(nullptr).mLastError, 6u);
        EXPECT_EQ(mPort.Close(&mNeeded).mLastError, 6u);
        EXPECT_TRUE(mState.sProcessingJob);
        EXPECT_TRUE(mPort.Close(handle).mSucceeded);
        EXPECT_FALSE(mState.sProcessingJob);
        EXPECT_EQ(mPort.Close(handle).mLastError, 6u) << "twice";
    }
}

TEST_F(MonitorPortTest, ShuttingDownForgetsEverything) {
    void* handle = nullptr;
    EXPECT_EQ(ErrorOfOpening(u"QuillonPDFPort:", &handle), 0u);
    mState.sProcessingJob = true;
    mState.sPrinterHandle = &mNeeded;
    for (int round = 0; round < 2; ++round) {
        mPort.Reset();
        EXPECT_TRUE(mState.sPortHandle == nullptr && mState.sPrinterHandle == nullptr);
        EXPECT_FALSE(mState.sProcessingJob);
        EXPECT_EQ(mPlatform.mPortHandles, 0);
    }
    EXPECT_TRUE(mPlatform.mEvents.empty()) << "the printer is forgotten, not closed";
}

struct RunCallbackTest : MonitorPortTest {
    template <class Body>
    bool Run(CallbackFailure failure, Body body) {
        return RunCallback(mPlatform, mState, L"PPMTest", failure, [&] {
            mPlatform.mLastError = 5;  // what the work leaves behind
            return body();
        });
    }
    bool IsLockFree() {
        bool free = false;
        std::thread([&] {
            free = mState.sMonitorLock.TryToLock();
            if (free) mState.sMonitorLock.Unlock();
        }).join();
        return free;
    }
};

TEST_F(RunCallbackTest, LeavesTheLastErrorUnlessTheOutcomeNamesOne) {
    for (const CallbackOutcome& outcome : {CallbackOutcome::Success(), CallbackOutcome::Failure(39),
                                           CallbackOutcome::SilentFailure(), CallbackOutcome{true, 1906}}) {
        mPlatform.mLastError = 4711;
        EXPECT_EQ(Run({1003}, [&] { return outcome; }), outcome.mSucceeded);
        EXPECT_EQ(mPlatform.mLastError, outcome.mLastError.value_or(4711));
    }
}

TEST_F(RunCallbackTest, TracesLocksAndTurnsAnyExceptionIntoTheFailureCodeUnlessAskedToLetItOut) {
    EXPECT_FALSE(Run({14}, [&]() -> CallbackOutcome {
        EXPECT_EQ(mPlatform.mEvents, (Words{"PPMTest"}));
        EXPECT_FALSE(IsLockFree());
        throw std::runtime_error("lost");
    }));
    EXPECT_EQ(mPlatform.mLastError, 14u);
    EXPECT_TRUE(IsLockFree());
    EXPECT_FALSE(Run({1003}, []() -> CallbackOutcome { throw 7; }));
    EXPECT_EQ(mPlatform.mLastError, 1003u);
    EXPECT_THROW(Run({}, []() -> CallbackOutcome { throw std::runtime_error("lost"); }), std::runtime_error);
    EXPECT_TRUE(IsLockFree());
}

}  // namespace
