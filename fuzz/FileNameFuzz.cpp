// Document titles made into file names: whatever the title, the name is one that Windows takes.
#include "framework/core/paths/GPathName.h"
#include "fuzz/FuzzInput.h"

namespace {

constexpr long cLongestName = 251;

bool IsRefused(unsigned short unit) {
    static const GString sRefused("<>:\"/\\|?*");
    return unit < 0x20 || sRefused.FindFirst(unit) >= 0;
}

void CheckName(const GString& name) {
    const long length = name.GetLength();
    Require(length > 0 && length <= cLongestName, "a name has 1 to 251 units");
    for (long i = 0; i < length; ++i) Require(!IsRefused(name[i]), "a name has no refused character");
    Require(name[length - 1] != '.' && name[length - 1] != ' ', "a name ends in no dot and no blank");
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t count) {
    FuzzInput input(bytes, count);
    const auto replacement = static_cast<unsigned short>(input.TakeNumber());
    const long limit = static_cast<signed char>(input.TakeByte());
    const GString title = input.TakeRestAsText();

    GString name = title;
    GPathName::CreateValidFileName(name, -1, '_');
    CheckName(name);
    GString again = name;
    GPathName::CreateValidFileName(again, -1, '_');
    Require(again == name, "a valid name stays as it is");

    GString cut = title;
    GPathName::CreateValidFileName(cut, limit, replacement);
    CheckName(cut);
    Require(limit < 1 || cut.GetLength() <= limit, "a name keeps its limit");
    return 0;
}
