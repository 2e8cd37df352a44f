// What PSystem answers in the same way everywhere.
#include "framework/system/PSystem.h"

#include <cstdio>

#include "framework/core/text/GBufferSupport.h"

namespace {

constexpr long cEtherAddressLength = 6;
constexpr unsigned char cDialUpStart[] = {'D', 'E', 'S', 'T', 0};

bool IsDialUp(const unsigned char* address) {
    for (const unsigned char expected : cDialUpStart) {
        if (*address++ != expected) return false;
    }
    return true;
}

}  // namespace

GString PSystem::FormatEtherAddress(const GBuffer& address) {
    if (address.GetLength() != cEtherAddressLength) return GString();
    const unsigned char* const bytes = address.GetRawData();
    char text[20];
    std::snprintf(text, sizeof text, "%02x:%02x:%02x:%02x:%02x:%02x%c", bytes[0], bytes[1], bytes[2],
                  bytes[3], bytes[4], bytes[5], IsDialUp(bytes) ? 'M' : 'N');
    return GString(text);
}

bool PSystem::GetEtherAddress(GTable<GString>& addresses) {
    addresses.Clear();
    GTable<GBuffer> raw;
    if (!GetEtherAddress(raw)) return false;
    for (const GBuffer& address : raw) {
        const GString text = FormatEtherAddress(address);
        if (!text.IsEmpty()) addresses.Append(text);
    }
    return true;
}

bool PSystem::GetLineEndingNeedsCR() {
    return GBufferSupport::GetLineEndingNeedsCR();
}

bool PSystem::GetLineEndingNeedsLF() {
    return GBufferSupport::GetLineEndingNeedsLF();
}
