#include "tools/console/Console.h"

#include <algorithm>

#include "platform/win32/base/PWin32Api.h"

namespace {

// A console refuses a single write beyond some 32 KiB on older systems.
constexpr std::size_t cMaxConsoleUnits = 8192;
constexpr std::size_t cMaxFileBytes = 1 << 20;

// Open until the program ends.
HANDLE sCopy = INVALID_HANDLE_VALUE;

bool WriteToConsole(HANDLE console, std::wstring_view text) {
    while (!text.empty()) {
        const auto length = static_cast<DWORD>(std::min(text.size(), cMaxConsoleUnits));
        DWORD written = 0;
        if (!::WriteConsoleW(console, text.data(), length, &written, nullptr) || written == 0) return false;
        text.remove_prefix(written);
    }
    return true;
}

bool WriteToFile(HANDLE file, std::string_view bytes) {
    while (!bytes.empty()) {
        const auto length = static_cast<DWORD>(std::min(bytes.size(), cMaxFileBytes));
        DWORD written = 0;
        if (!::WriteFile(file, bytes.data(), length, &written, nullptr) || written == 0) return false;
        bytes.remove_prefix(written);
    }
    return true;
}

bool WriteToStream(DWORD streamID, std::wstring_view text) {
    if (sCopy != INVALID_HANDLE_VALUE) WriteToFile(sCopy, ToUTF8(text));
    const HANDLE stream = ::GetStdHandle(streamID);
    if (stream == nullptr || stream == INVALID_HANDLE_VALUE) return false;
    DWORD consoleMode = 0;
    if (::GetConsoleMode(stream, &consoleMode)) return WriteToConsole(stream, text);
    return WriteToFile(stream, ToUTF8(text));
}

}  // namespace

bool Console::Write(std::wstring_view text) {
    return WriteToStream(STD_OUTPUT_HANDLE, text);
}

bool Console::WriteError(std::wstring_view text) {
    return WriteToStream(STD_ERROR_HANDLE, text);
}

bool Console::CopyTo(const std::wstring& path) {
    sCopy = ::CreateFileW(path.c_str(), FILE_APPEND_DATA, FILE_SHARE_READ, nullptr, OPEN_ALWAYS,
                          FILE_ATTRIBUTE_NORMAL, nullptr);
    return sCopy != INVALID_HANDLE_VALUE;
}

std::wstring MakePrintable(std::wstring text) {
    const auto isControl = [](wchar_t unit) { return unit < 0x20 || (unit >= 0x7F && unit < 0xA0); };
    std::ranges::replace_if(text, isControl, L'?');
    return text;
}

std::string ToUTF8(std::wstring_view text) {
    if (text.empty()) return {};
    const auto units = static_cast<int>(text.size());
    const int length = ::WideCharToMultiByte(CP_UTF8, 0, text.data(), units, nullptr, 0, nullptr, nullptr);
    std::string bytes(static_cast<std::size_t>(length), '\0');
    ::WideCharToMultiByte(CP_UTF8, 0, text.data(), units, bytes.data(), length, nullptr, nullptr);
    return bytes;
}
