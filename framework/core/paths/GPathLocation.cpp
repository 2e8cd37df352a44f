#include "framework/core/errors/GExceptionLocation.h"
#include "framework/core/paths/GPathName.h"

// The locations that show paths. They are made here because only the paths know how one reads.

namespace {

GString NativeForm(const GString& portable) {
    GString native;
    GPathName::ConvertPortableToNative(portable, native);
    return native;
}

}  // namespace

GExceptionLocation::GExceptionLocation(const GPathName& path)
    : mKind(Kind::cText), mReading(NativeForm), mFirst(path.GetPortablePath()) {
    Enter();
}

GExceptionLocation::GExceptionLocation(long id, const GPathName& first, const GPathName& second)
    : mKind(Kind::cNumberAndTwoTexts),
      mID(static_cast<std::int32_t>(id)),
      mReading(NativeForm),
      mFirst(first.GetPortablePath()),
      mSecond(second.GetPortablePath()) {
    Enter();
}
