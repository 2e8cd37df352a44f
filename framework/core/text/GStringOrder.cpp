#include <cwctype>

#include "framework/core/encodings/GCodeUnits.h"
#include "framework/core/encodings/GUnicodeEncoding.h"
#include "framework/core/encodings/PText.h"
#include "framework/core/text/GString.h"

namespace {

// Both texts as UTF-16, without changing them; a text that is UTF-16 already is not copied.
class UnicodeView {
public:
    explicit UnicodeView(const GString& text) : mText(text) {
        mIsConverted = text.GetEncoding() != GUnicodeEncoding::GetInstance();
        if (mIsConverted) text.GetBuffer(mConverted, GUnicodeEncoding::GetInstance());
    }
    const GBuffer& Get() const { return mIsConverted ? mConverted : mText.GetEncodedBuffer(); }

private:
    const GString& mText;
    GBuffer mConverted;
    bool mIsConverted;
};

}  // namespace

bool operator==(const GString& a, const GString& b) {
    if (a.GetEncoding() == b.GetEncoding()) return a.GetEncodedBuffer() == b.GetEncodedBuffer();
    return UnicodeView(a).Get() == UnicodeView(b).Get();
}

bool operator!=(const GString& a, const GString& b) {
    return !(a == b);
}

bool operator<(const GString& a, const GString& b) {
    return UnicodeView(a).Get() < UnicodeView(b).Get();
}

bool operator<=(const GString& a, const GString& b) {
    return a < b || a == b;
}

bool operator>(const GString& a, const GString& b) {
    return b < a;
}

bool operator>=(const GString& a, const GString& b) {
    return b < a || a == b;
}

bool GString::IsLessThan(const GString& a, const GString& b) {
    return a < b;
}

bool GString::IsLessThanIgnoreCase(const GString& a, const GString& b) {
    const auto toLower = [](unsigned short unit) { return static_cast<unsigned short>(std::towlower(unit)); };
    GString lowerA(a);
    GString lowerB(b);
    lowerA.MapUnits(toLower);
    lowerB.MapUnits(toLower);
    return lowerA < lowerB;
}

std::uint32_t GString::GetHash() const {
    EnsureUnicode();
    return mBuffer.GetHash();
}

template <class Mapper>
void GString::MapUnits(Mapper map) {
    const auto length = static_cast<std::size_t>(GetLength());
    unsigned char* units = mBuffer.GetWritePtr();
    for (std::size_t i = 0; i < length; ++i) GCodeUnits::Store(units, i, map(GCodeUnits::Load(units, i)));
}

void GString::ToLower() {
    if (mEncoding && !IsEmpty()) MapUnits(PText::ToLower);
}

void GString::ToUpper() {
    if (mEncoding && !IsEmpty()) MapUnits(PText::ToUpper);
}
