#include "framework/core/errors/GLngString.h"

#include <cstdint>
#include <utility>

#include "framework/core/containers/GTable.h"
#include "framework/core/errors/GStringPool.h"
#include "framework/core/memory/GRefCount.h"
#include "framework/core/text/GString.h"

namespace {

struct LngPart {
    std::int32_t mID;  // 0: plain text
    GString mText;
    GTable<GString> mParams;
};

GString Read(const LngPart& part) {
    GString text = part.mID != 0 ? GStringPoolSupport::GetString(part.mID) : part.mText;
    if (part.mParams.IsEmpty()) return text;
    GTable<const GString*> params;
    params.Reserve(part.mParams.GetCount());
    for (const GString& param : part.mParams) params.Append(&param);
    text.SubstituteParams(params);
    return text;
}

}  // namespace

class GLngString::Parts : public GThreadSafeRefCount {
public:
    GTable<LngPart> mTable;
};

GLngString::GLngString() noexcept = default;

GLngString::GLngString(long id) {
    const auto number = static_cast<std::int32_t>(id);
    if (number != 0) OwnParts().mTable.Append(LngPart{number, {}, {}});
}

GLngString::GLngString(const GString& text) {
    if (!text.IsEmpty()) OwnParts().mTable.Append(LngPart{0, text, {}});
}

GLngString::GLngString(const GLngString& other) noexcept = default;
GLngString::GLngString(GLngString&& other) noexcept = default;
GLngString& GLngString::operator=(const GLngString& other) noexcept = default;
GLngString& GLngString::operator=(GLngString&& other) noexcept = default;
GLngString::~GLngString() = default;

bool GLngString::IsEmpty() const noexcept {
    return !mParts || mParts->mTable.IsEmpty();
}

long GLngString::GetID() const noexcept {
    if (!mParts) return 0;
    for (const LngPart& part : std::as_const(mParts->mTable))
        if (part.mID != 0) return part.mID;
    return 0;
}

/// The parts for writing: made when there are none, copied when others share them.
GLngString::Parts& GLngString::OwnParts() {
    if (!mParts) {
        mParts = GSharedObject<Parts>(new Parts);
    } else if (mParts->GetRefCount() > 1) {
        mParts = GSharedObject<Parts>(new Parts(*mParts));
    }
    return *mParts;
}

GLngString& GLngString::AddParam(const GString& param) {
    if (!IsEmpty()) OwnParts().mTable.GetLast().mParams.Append(param);
    return *this;
}

GLngString& GLngString::operator+=(const GLngString& other) {
    if (other.IsEmpty()) return *this;
    if (IsEmpty()) return *this = other;
    const GLngString added = other;  // may be this very string
    GTable<LngPart> joined = mParts->mTable;
    for (const LngPart& part : std::as_const(added.mParts->mTable)) joined.Append(part);
    OwnParts().mTable.Swap(joined);
    return *this;
}

GLngString& GLngString::operator+=(const GString& text) {
    return *this += GLngString(text);
}

GString GLngString::GetString() const {
    GString text;
    if (!mParts) return text;
    for (const LngPart& part : std::as_const(mParts->mTable)) {
        if (text.IsEmpty()) {
            text = Read(part);
        } else {
            text += Read(part);
        }
    }
    return text;
}

GLngString operator+(const GLngString& first, const GLngString& second) {
    GLngString joined = first;
    joined += second;
    return joined;
}
