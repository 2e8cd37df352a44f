#include "tools/quillonctl/InstallRecord.h"

#include "tools/machine/RegistryKey.h"

namespace {

const std::wstring cCompanyKey = L"SOFTWARE\\Quillon";
const std::wstring cProductKey = cCompanyKey + L"\\Port Monitor";
const std::wstring cRecordKey = cProductKey + L"\\Installed";

constexpr InstallRecord::Kind cAllKinds[] = {
    InstallRecord::Kind::Library, InstallRecord::Kind::Monitor, InstallRecord::Kind::PortKey,
    InstallRecord::Kind::Driver,  InstallRecord::Kind::Printer,
};

std::wstring GetKeyPath(InstallRecord::Kind kind) {
    switch (kind) {
        case InstallRecord::Kind::Library:
            return cRecordKey + L"\\Libraries";
        case InstallRecord::Kind::Monitor:
            return cRecordKey + L"\\Monitors";
        case InstallRecord::Kind::PortKey:
            return cRecordKey + L"\\PortKeys";
        case InstallRecord::Kind::Driver:
            return cRecordKey + L"\\Drivers";
        case InstallRecord::Kind::Printer:
            break;
    }
    return cRecordKey + L"\\Printers";
}

}  // namespace

void InstallRecord::Add(Kind kind, const std::wstring& name, const std::wstring& detail) {
    RegistryKey::Create(GetKeyPath(kind)).SetValue(name, detail);
}

void InstallRecord::Remove(Kind kind, const std::wstring& name) {
    const std::wstring path = GetKeyPath(kind);
    if (!RegistryKey::Exists(path)) return;
    RegistryKey::Create(path).RemoveValue(name);
    for (const std::wstring& key : {path, cRecordKey, cProductKey, cCompanyKey}) {
        if (!RegistryKey::RemoveIfEmpty(key)) return;
    }
}

bool InstallRecord::Contains(Kind kind, const std::wstring& name) {
    const auto key = RegistryKey::Open(GetKeyPath(kind));
    return key && key->GetValue(name).has_value();
}

std::vector<InstallRecord::Entry> InstallRecord::GetEntries(Kind kind) {
    std::vector<Entry> entries;
    const auto key = RegistryKey::Open(GetKeyPath(kind));
    if (!key) return entries;
    for (auto& [name, detail] : key->GetValues()) entries.push_back({name, detail});
    return entries;
}

bool InstallRecord::IsEmpty() {
    for (const Kind kind : cAllKinds) {
        if (!GetEntries(kind).empty()) return false;
    }
    return true;
}
