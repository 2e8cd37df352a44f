#include "tools/quillonctl/InstallRecord.h"

#include <climits>
#include <memory>

#include "platform/win32/core/PWin32Wide.h"
#include "tools/machine/Failure.h"
#include "tools/machine/MachineKey.h"

namespace {

constexpr const char* cCompanyKey = "SOFTWARE\\Quillon";
constexpr const char* cProductKey = "SOFTWARE\\Quillon\\Port Monitor";
constexpr const char* cRecordKey = "SOFTWARE\\Quillon\\Port Monitor\\Installed";

constexpr InstallRecord::Kind cAllKinds[] = {
    InstallRecord::Kind::cLibrary, InstallRecord::Kind::cMonitor, InstallRecord::Kind::cPortKey,
    InstallRecord::Kind::cDriver,  InstallRecord::Kind::cPrinter, InstallRecord::Kind::cPage,
};

const char* GetLeaf(InstallRecord::Kind kind) {
    switch (kind) {
        case InstallRecord::Kind::cLibrary:
            return "\\Libraries";
        case InstallRecord::Kind::cMonitor:
            return "\\Monitors";
        case InstallRecord::Kind::cPortKey:
            return "\\PortKeys";
        case InstallRecord::Kind::cDriver:
            return "\\Drivers";
        case InstallRecord::Kind::cPrinter:
            return "\\Printers";
        case InstallRecord::Kind::cPage:
            break;
    }
    return "\\Pages";
}

GString GetKeyPath(InstallRecord::Kind kind) {
    return GString(cRecordKey) + GString(GetLeaf(kind));
}

}  // namespace

void InstallRecord::Add(Kind kind, const std::wstring& name, const std::wstring& detail) {
    PRegistryKey key = MachineKey::Make(GetKeyPath(kind));
    if (!key.SetString(NameFromWide(name), NameFromWide(detail), PRegistryData::cString))
        throw Failure(L"The registry does not take the record of '" + name + L"'.");
}

void InstallRecord::Remove(Kind kind, const std::wstring& name) {
    const GString path = GetKeyPath(kind);
    if (!MachineKey::Open(path).Exists()) return;
    if (PRegistryKey key = MachineKey::Make(path);
        !key.RemoveValue(NameFromWide(name)) && !MachineKey::IsMissing(key))
        throw SystemFailure(L"Removing the record of '" + name + L"'",
                            static_cast<unsigned long>(key.GetStatus()));
    for (const GString& key : {path, GString(cRecordKey), GString(cProductKey), GString(cCompanyKey)}) {
        if (!MachineKey::RemoveIfEmpty(key)) return;
    }
}

bool InstallRecord::Contains(Kind kind, const std::wstring& name) {
    unsigned long type = 0;
    GString detail;
    return MachineKey::Open(GetKeyPath(kind)).QueryString(NameFromWide(name), detail, ULONG_MAX, type);
}

std::wstring InstallRecord::GetDetail(Kind kind, const std::wstring& name) {
    unsigned long type = 0;
    GString detail;
    const bool found =
        MachineKey::Open(GetKeyPath(kind)).QueryString(NameFromWide(name), detail, ULONG_MAX, type);
    return found ? std::wstring(AsWide(detail)) : std::wstring();
}

std::vector<InstallRecord::Entry> InstallRecord::GetEntries(Kind kind) {
    std::vector<Entry> entries;
    PRegistryKey key = MachineKey::Open(GetKeyPath(kind));
    GString name;
    key.BeginEnumerateValue();
    while (const auto data = std::unique_ptr<PRegistryData>(key.NextValue(name)))
        if (data->GetType() == PRegistryData::cString)
            entries.push_back({AsWide(name), AsWide(data->GetString())});
    return entries;
}

bool InstallRecord::IsEmpty() {
    for (const Kind kind : cAllKinds) {
        if (!GetEntries(kind).empty()) return false;
    }
    return true;
}
