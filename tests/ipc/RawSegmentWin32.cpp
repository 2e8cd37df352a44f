#include "platform/win32/base/PWin32Api.h"
#include "platform/win32/base/PWin32ScopedHandle.h"
#include "tests/ipc/RawSegment.h"

namespace {

std::unique_ptr<RawSegment> View(void* mapping) {
    using Mapping = PWin32ScopedHandle<PWin32KernelHandle>;
    using Mapped = PWin32ScopedHandle<PWin32MappedView>;
    void* const view = ::MapViewOfFile(mapping, FILE_MAP_ALL_ACCESS, 0, 0, 0);
    const auto both = std::make_shared<std::pair<Mapping, Mapped>>(Mapping(mapping), Mapped(view));
    if (view == nullptr) return nullptr;
    MEMORY_BASIC_INFORMATION region = {};
    ::VirtualQuery(view, &region, sizeof region);
    return std::make_unique<RawSegment>(both, static_cast<unsigned char*>(view),
                                        static_cast<long>(region.RegionSize));
}

}  // namespace

std::unique_ptr<RawSegment> RawSegment::Open(const std::string& path, const std::string& name) {
    return View(::OpenFileMappingA(FILE_MAP_ALL_ACCESS, FALSE, (path + name).c_str()));
}

std::unique_ptr<RawSegment> RawSegment::Make(const std::string& path, const std::string& name, long size) {
    return View(::CreateFileMappingA(INVALID_HANDLE_VALUE, nullptr, PAGE_READWRITE, 0,
                                     static_cast<DWORD>(size), (path + name).c_str()));
}
