#include "framework/core/encodings/PText.h"

#include <iconv.h>

#include <algorithm>
#include <cerrno>
#include <cstdint>
#include <string>

#include "framework/core/encodings/GEncoding.h"
#include "framework/core/text/GString.h"

namespace {

constexpr long cUTF8CodePage = 65001;

std::string GetNameOf(long codePage) {
    if (codePage == 0 || codePage == cUTF8CodePage) return "UTF-8";
    return "CP" + std::to_string(codePage);
}

class Converter {
public:
    Converter(const std::string& to, const std::string& from)
        : mConverter(iconv_open(to.c_str(), from.c_str())) {}
    ~Converter() {
        if (IsOpen()) iconv_close(mConverter);
    }
    Converter(const Converter&) = delete;
    Converter& operator=(const Converter&) = delete;

    // iconv_open says minus one for none.
    bool IsOpen() const { return reinterpret_cast<std::intptr_t>(mConverter) != -1; }

    /// Converts as far as the input is valid, appending to `out`; returns how many bytes that were.
    std::size_t Convert(const unsigned char* bytes, std::size_t length, GBuffer& out) {
        char* from = const_cast<char*>(reinterpret_cast<const char*>(bytes));
        std::size_t left = length;
        while (left > 0) {
            char room[4096];
            char* to = room;
            std::size_t roomLeft = sizeof room;
            const std::size_t result = iconv(mConverter, &from, &left, &to, &roomLeft);
            out.AppendByteArray(reinterpret_cast<const unsigned char*>(room), to - room);
            if (result == static_cast<std::size_t>(-1) && errno != E2BIG) break;
        }
        return length - left;
    }

private:
    iconv_t mConverter;
};

// Converts all of `bytes`; what the converter refuses is replaced by `substitute`, and skipped by as
// many bytes as `getLength` says.
template <class LengthOfRefused>
long ConvertAll(Converter& converter, const GBuffer& bytes, const GBuffer& substitute,
                LengthOfRefused getLength, GBuffer& out) {
    if (!converter.IsOpen() && !bytes.IsEmpty()) {
        out.Clear();
        return GEncoding::cInvalid;
    }
    GBuffer result;
    long code = GEncoding::cConverted;
    const auto length = static_cast<std::size_t>(bytes.GetLength());
    for (std::size_t position = 0; position < length;) {
        position += converter.Convert(bytes.GetRawData() + position, length - position, result);
        if (position == length) break;
        result += substitute;
        code = GEncoding::cReplaced;
        position += std::min(getLength(bytes.GetRawData() + position, length - position), length - position);
    }
    out = std::move(result);
    return code;
}

bool IsSurrogatePair(const unsigned char* units, std::size_t length) {
    return length >= 4 && (units[1] & 0xFC) == 0xD8 && (units[3] & 0xFC) == 0xDC;
}

int CompareUnits(const GString& a, const GString& b, bool ignoreCase) {
    const long common = std::min(a.GetLength(), b.GetLength());
    for (long i = 0; i < common; ++i) {
        const unsigned short x = ignoreCase ? PText::ToLower(a[i]) : a[i];
        const unsigned short y = ignoreCase ? PText::ToLower(b[i]) : b[i];
        if (x != y) return x < y ? -1 : 1;
    }
    if (a.GetLength() > common) return 1;
    return b.GetLength() > common ? -1 : 0;
}

}  // namespace

long PText::CodePageToUTF16(long codePage, const GBuffer& bytes, GBuffer& utf16) {
    GBuffer substitute;
    substitute += GEncoding::GetDefaultUnit();
    Converter converter("UTF-16LE", GetNameOf(codePage));
    const auto oneByte = [](const unsigned char*, std::size_t) { return std::size_t{1}; };
    return ConvertAll(converter, bytes, substitute, oneByte, utf16);
}

long PText::UTF16ToCodePage(long codePage, const GBuffer& utf16, GBuffer& bytes) {
    GBuffer substitute;
    substitute += GEncoding::GetDefaultCharacter();
    Converter converter(GetNameOf(codePage), "UTF-16LE");
    const auto oneCharacter = [](const unsigned char* units, std::size_t length) {
        return IsSurrogatePair(units, length) ? std::size_t{4} : std::size_t{2};
    };
    return ConvertAll(converter, utf16.GetSubBuffer(0, utf16.GetLength() / 2 * 2), substitute, oneCharacter,
                      bytes);
}

int PText::CompareForUser(const GString& a, const GString& b, bool ignoreCase) {
    return CompareUnits(a, b, ignoreCase);
}
