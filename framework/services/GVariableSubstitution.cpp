#include "framework/services/GVariableSubstitution.h"

#include "framework/core/encodings/GASCIIEncoding.h"
#include "framework/core/text/GStringSupport.h"
#include "framework/files/GFileSystem.h"

namespace {

using Imp = GVariableSubstitutionImp;

// Paths in the system's own form have it in both builds.
constexpr unsigned short cSeparator = '\\';

struct Row {
    std::int32_t flag;
    long folder;
    const GBuffer* variable;
};

constexpr Row cRows[] = {
    {Imp::cGlobalPreferences, GSpecialPath::cGlobalPreferenceRoot, &Imp::cBuffer_QuillonGlobalPreferences},
    {Imp::cUserPreferences, GSpecialPath::cUserPreferenceRoot, &Imp::cBuffer_QuillonUserPreferences},
    {Imp::cGlobalTemp, GSpecialPath::cGlobalTemp, &Imp::cBuffer_SystemGlobalTemp},
    {Imp::cResourceFolder, GSpecialPath::cResources, &Imp::cBuffer_QuillonResourceFolder},
};

GString VariableOf(const Row& row) {
    return GString(*row.variable, GASCIIEncoding::GetInstance());
}

// Without a separator at its end; empty when the system does not tell.
GString FolderOf(const Row& row) {
    const GPathName path = GFileSystem::GetSpecialPath(row.folder);
    if (path.IsEmpty()) return GString();
    GString native = path.GetNativePathString();
    const long last = native.GetLength() - 1;
    if (native[last] == cSeparator) native.Remove(last, 1);
    return native;
}

bool BeginsWith(const GString& text, const GString& folder) {
    const long length = folder.GetLength();
    if (length == 0 || text.GetLength() < length) return false;
    if (text.GetLength() > length && text[length] != cSeparator) return false;
    return GStringSupport::IsEqualIgnoreCase(text.GetSubstring(0, length), folder);
}

}  // namespace

const GBuffer GVariableSubstitutionImp::cBuffer_QuillonGlobalPreferences("%QuillonGlobalPreferences%");
const GBuffer GVariableSubstitutionImp::cBuffer_QuillonUserPreferences("%QuillonUserPreferences%");
const GBuffer GVariableSubstitutionImp::cBuffer_SystemGlobalTemp("%SystemGlobalTemp%");
const GBuffer GVariableSubstitutionImp::cBuffer_QuillonResourceFolder("%QuillonResourceFolder%");

GVariableSubstitution::~GVariableSubstitution() = default;

void GVariableSubstitutionImp::ToVariables(GString& text) const {
    const Row* best = nullptr;
    GString bestFolder;
    for (const Row& row : cRows) {
        if ((mFlags & row.flag) == 0) continue;
        GString folder = FolderOf(row);
        if (folder.GetLength() <= bestFolder.GetLength() || !BeginsWith(text, folder)) continue;
        best = &row;
        bestFolder.Swap(folder);
    }
    if (best != nullptr) text = VariableOf(*best) + text.GetSubstring(bestFolder.GetLength(), -1);
}

void GVariableSubstitutionImp::FromVariables(GString& text) const {
    for (const Row& row : cRows) {
        const GString folder = (mFlags & row.flag) != 0 ? FolderOf(row) : GString();
        if (!folder.IsEmpty()) text.Replace(0, VariableOf(row), folder);
    }
}
