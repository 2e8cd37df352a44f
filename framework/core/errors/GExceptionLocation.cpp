#include "framework/core/errors/GExceptionLocation.h"

#include <new>

#include "PPlatformTypes.h"

namespace {

/// The slot that holds each thread's innermost location, the top of its stack. Throws std::bad_alloc when the
/// process has used up its slots.
PThreadLocalSlot& ContextStack() {
    static PThreadLocalSlot sContextStack;
    return sContextStack;
}

/// Makes the slot right after the allocator, so that it ends right before it: other static objects have
/// locations in their constructors and destructors, too. Without a free slot the first location tries again.
struct EarlyContextStack {
    EarlyContextStack() noexcept {
        try {
            ContextStack();
        } catch (const std::bad_alloc&) {
            // Loading the module must not fail for it.
        }
    }
} sEarlyContextStack __attribute__((init_priority(102)));

GExceptionLocation* GetInnermost() {
    return static_cast<GExceptionLocation*>(ContextStack().Get());
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
            return GLngString(Read(mFirst));
        case Kind::cNumberAndTwoTexts: {
            GLngString text(static_cast<long>(mID));
            text.AddParam(Read(mFirst)).AddParam(Read(mSecond));
            return text;
        }
        case Kind::cNothing:
            break;
    }
    return GLngString();
}

GString GExceptionLocation::Read(const GString& kept) const {
    return mReading == nullptr ? kept : mReading(kept);
}
