// Preference files and configurations of the trace log: anybody may have written them.
#include "framework/core/encodings/GUTF8Encoding.h"
#include "framework/core/encodings/GUnicodeEncoding.h"
#include "framework/services/GPrefsFile.h"
#include "framework/services/GTraceSettings.h"
#include "framework/streams/GMemoryInStream.h"
#include "framework/streams/GMemoryOutStream.h"
#include "framework/streams/text/GText2BinStream.h"
#include "fuzz/FuzzInput.h"

namespace {

bool Read(const GBuffer& bytes, GPrefsText::Groups& groups) {
    GMemoryInStream stream(bytes);
    return GPrefsFile::Read(stream, GUTF8Encoding::GetInstance(), groups);
}

GBuffer Write(const GPrefsText::Groups& groups) {
    GBuffer bytes("\xFF\xFE");
    GMemoryOutStream target(bytes);
    GText2BinStream text(target, GUnicodeEncoding::GetInstance());
    GPrefsText::Write(groups, text);
    return bytes;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t count) {
    FuzzInput input(bytes, count);
    const GBuffer text = input.TakeRest();
    GMemoryInStream stream(text);
    GTraceSettings settings;
    settings.Read(stream);
    settings.GetAlertOnLog(text);
    GPrefsText::Groups groups;
    Read(text, groups);
    // What was read, of a damaged text too, can be written and read again.
    GPrefsText::Groups back;
    Require(Read(Write(groups), back), "a written text is read");
    GPrefsText::Groups again;
    Require(Read(Write(back), again), "once more");
    Require(back == again, "preferences survive being written");
    return 0;
}
