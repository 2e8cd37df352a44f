#include "platform/win32/core/PWin32SystemException.h"

#include <regex>

#include "framework/core/errors/GDebugSupport.h"
#include "framework/core/errors/GExceptionLocation.h"
#include "framework/core/errors/GStringPool.h"
#include "tests/WindowsTesting.h"
#include "tests/platform/SystemErrorOf.h"

namespace {

/// What the system itself says, whole; empty when it has no text, with the reason as last error.
std::wstring SystemText(long code, DWORD language) {
    wchar_t buffer[2048];
    const DWORD length = ::FormatMessageW(FORMAT_MESSAGE_FROM_SYSTEM | FORMAT_MESSAGE_IGNORE_INSERTS, nullptr,
                                          static_cast<DWORD>(code), language, buffer, 2048, nullptr);
    return std::wstring(buffer, length);
}

std::u16string Description(long code) {
    return Plain(PWin32SystemException(code).GetDescription());
}

}  // namespace

TEST(PWin32SystemException, SaysWhatTheSystemSaysInEnglishOrInTheUsersLanguage) {
    const auto expect = [](long code, DWORD language) {
        const std::wstring text = SystemText(code, language);
        ASSERT_TRUE(text.ends_with(L"\r\n"));
        EXPECT_EQ(Description(code), std::u16string(text.begin(), text.end() - 2)) << code;
    };
    for (const long code : {2L, 3L, 5L, 6L, 32L, 87L, 112L, 193L, 1801L}) expect(code, 1033);
    EXPECT_NE(Description(193).find(u"%1"), std::u16string::npos) << "a place that nobody can fill";
    GStringPoolSupport::SetCurrentLanguage("deDE");
    expect(5, 1024);
    GStringPoolSupport::SetCurrentLanguage("enUS");
    const GExceptionLocation where(Text(u"C:\\x"));
    EXPECT_EQ(Plain(PWin32SystemException(5).GetFullDescription()), u"C:\\x: " + Description(5));
}

TEST(PWin32SystemException, SaysSoWhenTheSystemHasNoText) {
    for (const long code : {0x2000BEEFL, 3003L, -5L}) {
        ASSERT_EQ(SystemText(code, 2048), L"");
        const std::string reason = std::to_string(::GetLastError());
        const std::string expected = "Get system error string for error code " + std::to_string(code) +
                                     " failed with error code " + reason;
        EXPECT_EQ(Description(code), std::u16string(expected.begin(), expected.end()));
    }
}

TEST(PWin32SystemException, ChecksResultsAndHandles) {
    int object = 0;
    EXPECT_NO_THROW(PWin32SystemException::CheckForErrors(1));
    EXPECT_NO_THROW(PWin32SystemException::CheckForErrors(-1));
    EXPECT_NO_THROW(PWin32SystemException::CheckHandle(&object));
    ::SetLastError(1234);
    EXPECT_EQ(SystemErrorOf([] { PWin32SystemException::CheckForErrors(0); }), 1234);
    for (void* const none : {static_cast<void*>(nullptr), INVALID_HANDLE_VALUE}) {
        ::SetLastError(2);
        EXPECT_EQ(SystemErrorOf([none] { PWin32SystemException::CheckHandle(none); }), 2);
    }
}

/// How many frames the dump shows below `depth` calls of this function, each with its address in front.
__attribute__((noinline)) long CountFramesBelow(int depth) {
    if (depth > 0) {
        const volatile long frames = CountFramesBelow(depth - 1);
        return frames;
    }
    const std::string dump = TextOf(GDebugSupport::GetStackDump());
    const std::regex frame("\n[0-9A-F]{8,}: ");
    return std::distance(std::sregex_iterator(dump.begin(), dump.end(), frame), std::sregex_iterator());
}

TEST(PWin32StackDump, ShowsEveryFrameUpTo1024) {
    const long frames = CountFramesBelow(0);
    EXPECT_GE(frames, 3);
    EXPECT_EQ(CountFramesBelow(100), frames + 100);
    EXPECT_EQ(CountFramesBelow(1100), 1024);
}

/// The frames of a stack that does not lead back: a caller's address is overwritten meanwhile.
__attribute__((noinline)) long CountFramesOfABrokenStack(std::uintptr_t garbage) {
    void* volatile* const callers = static_cast<void* volatile*>(__builtin_frame_address(0)) + 1;
    void* const caller = __builtin_return_address(0);
    EXPECT_EQ(*callers, caller);
    *callers = reinterpret_cast<void*>(garbage);
    const long frames = CountFramesBelow(0);
    *callers = caller;
    return frames;
}

TEST(PWin32StackDump, EndsWhereTheStackIsBroken) {
    for (const std::uintptr_t garbage :
         {std::uintptr_t{0}, std::uintptr_t{1}, UINTPTR_MAX / 2, UINTPTR_MAX}) {
        SCOPED_TRACE(garbage);
        EXPECT_GE(CountFramesOfABrokenStack(garbage), 2);
    }
}
