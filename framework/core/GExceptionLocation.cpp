#include "framework/core/GExceptionLocation.h"

#include "framework/core/GPathName.h"
#include "platform/PPlatform.h"

namespace {

/// The slot that holds each thread's innermost location, the top of its stack.
PThreadLocalSlot& ContextStack() {
    static PThreadLocalSlot sContextStack;
    return sContextStack;
}

GExceptionLocation* GetInnermost() {
    return static_cast<GExceptionLocation*>(ContextStack().Get());
}

GString NativeForm(const GString& portable) {
    GString native;
    GPathName::ConvertPortableToNative(portable, native);
    return native;
}

}  // namespace

GExceptionLocation::GExceptionLocation() {
    Enter();
}

GExceptionLocation::GExceptionLocation(long id) : mKind(Kind::cNumber), mID(static_cast<std::int32_t>(id)) {
    Enter();
}

GExceptionLocation::GExceptionLocation(const GString& text) : mKind(Kind::cText), mFirst(text) {
    Enter();
}

GExceptionLocation::GExceptionLocation(const GPathName& path)
    : mKind(Kind::cPath), mFirst(path.GetPortablePath()) {
    Enter();
}

GExceptionLocation::GExceptionLocation(long id, const GPathName& first, const GPathName& second)
    : mKind(Kind::cTwoPaths),
      mID(static_cast<std::int32_t>(id)),
      mFirst(first.GetPortablePath()),
      mSecond(second.GetPortablePath()) {
    Enter();
}

GExceptionLocation::~GExceptionLocation() {
    Leave();
}

void GExceptionLocation::Enter() {
    mOuter = GetInnermost();
    ContextStack().Set(this);
}

/// Normally the innermost leaves; locations on the heap may leave in another order.
void GExceptionLocation::Leave() noexcept {
    GExceptionLocation* inner = GetInnermost();
    if (inner == this) {
        ContextStack().Set(mOuter);
        return;
    }
    while (inner != nullptr && inner->mOuter != this) inner = inner->mOuter;
    if (inner != nullptr) inner->mOuter = mOuter;
}

GLngString GExceptionLocation::GetLngDescription() {
    const GExceptionLocation* const innermost = GetInnermost();
    return innermost == nullptr ? GLngString() : innermost->Describe();
}

GLngString GExceptionLocation::Describe() const {
    switch (mKind) {
        case Kind::cNumber:
            return GLngString(static_cast<long>(mID));
        case Kind::cText:
            return GLngString(mFirst);
        case Kind::cPath:
            return GLngString(NativeForm(mFirst));
        case Kind::cTwoPaths: {
            GLngString text(static_cast<long>(mID));
            text.AddParam(NativeForm(mFirst)).AddParam(NativeForm(mSecond));
            return text;
        }
        case Kind::cNothing:
            break;
    }
    return GLngString();
}
