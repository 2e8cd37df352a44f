#include "platform/win32/base/PWin32Api.h"
#include "platform/win32/base/PWin32ScopedHandle.h"
#include "tests/ipc/RawSegment.h"

namespace {

class MappedSegment : public RawSegment {
public:
    explicit MappedSegment(void* mapping)
        : mMapping(mapping), mView(::MapViewOfFile(mapping, FILE_MAP_ALL_ACCESS, 0, 0, 0)) {
        mBytes = static_cast<unsigned char*>(mView.Get());
        MEMORY_BASIC_INFORMATION region = {};
        ::VirtualQuery(mBytes, &region, sizeof region);
        mSize = static_cast<long>(region.RegionSize);
    }

private:
    PWin32ScopedHandle<PWin32KernelHandle> mMapping;
    PWin32ScopedHandle<PWin32MappedView> mView;
};

}  // namespace

std::unique_ptr<RawSegment> RawSegment::Open(const std::string& path, const std::string& name) {
    void* mapping = ::OpenFileMappingA(FILE_MAP_ALL_ACCESS, FALSE, (path + name).c_str());
    if (mapping == nullptr) return nullptr;
    return std::make_unique<MappedSegment>(mapping);
}

std::unique_ptr<RawSegment> RawSegment::Make(const std::string& path, const std::string& name, long size) {
    void* mapping = ::CreateFileMappingA(INVALID_HANDLE_VALUE, nullptr, PAGE_READWRITE, 0,
                                         static_cast<DWORD>(size), (path + name).c_str());
    if (mapping == nullptr) return nullptr;
    return std::make_unique<MappedSegment>(mapping);
}
