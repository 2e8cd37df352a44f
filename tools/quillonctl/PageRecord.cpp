#include "tools/quillonctl/PageRecord.h"

#include <cwchar>
#include <iterator>

#include "platform/win32/base/PWin32Api.h"
#include "tools/quillonctl/InstallRecord.h"

namespace {

using Kind = InstallRecord::Kind;

constexpr std::wstring_view cVersion = L", version ";

std::wstring GetNow() {
    SYSTEMTIME now{};
    ::GetSystemTime(&now);
    wchar_t text[40];
    std::swprintf(text, std::size(text), L"%04u-%02u-%02u %02u:%02u:%02u UTC", now.wYear, now.wMonth,
                  now.wDay, now.wHour, now.wMinute, now.wSecond);
    return text;
}

}  // namespace

void PageRecord::Add(const std::wstring& printer, const std::wstring& version) {
    InstallRecord::Add(Kind::cPage, printer, GetNow().append(cVersion).append(version));
}

std::vector<ArrivedPage> PageRecord::GetOf(const std::wstring& version) {
    std::vector<ArrivedPage> pages;
    for (const InstallRecord::Entry& entry : InstallRecord::GetEntries(Kind::cPage)) {
        const std::size_t comma = entry.detail.find(cVersion);
        if (comma == entry.detail.npos || entry.detail.substr(comma + cVersion.size()) != version) continue;
        pages.push_back({entry.name, entry.detail.substr(0, comma)});
    }
    return pages;
}

void PageRecord::Clear() {
    for (const InstallRecord::Entry& entry : InstallRecord::GetEntries(Kind::cPage))
        InstallRecord::Remove(Kind::cPage, entry.name);
}
