// Escape codes in bytes and in UTF-16 text.
#include "framework/core/text/GBufferSupport.h"
#include "fuzz/FuzzInput.h"

namespace {

// What some code pages show as a backslash introduces an escape, but is not escaped itself.
bool HasForeignIntroducer(const GBuffer& text) {
    return text.FindFirstOccurrence(static_cast<unsigned char>(0x80), 0) >= 0 ||
           text.FindFirstOccurrence(static_cast<unsigned char>(0xA5), 0) >= 0;
}

void EscapeAndBack(const GBuffer& text, void (*escape)(GBuffer&), void (*resolve)(GBuffer&)) {
    GBuffer resolved = text;
    resolve(resolved);
    GBuffer once = text;
    escape(once);
    GBuffer back = once;
    resolve(back);
    GBuffer twice = back;
    escape(twice);
    Require(twice == once || HasForeignIntroducer(text),
            "text that was escaped and read escapes the same way again");
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t count) {
    FuzzInput input(bytes, count);
    const bool wide = (input.TakeByte() & 1) != 0;
    const GBuffer text = input.TakeRest();
    if (wide) {
        EscapeAndBack(text, GBufferSupport::UniReplaceSpecialChars, GBufferSupport::UniReplaceEscapeCodes);
    } else {
        EscapeAndBack(text, GBufferSupport::ASCIIReplaceSpecialChars,
                      GBufferSupport::ASCIIReplaceEscapeCodes);
    }
    return 0;
}
