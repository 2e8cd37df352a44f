#pragma once

#include <optional>
#include <string>
#include <vector>

/// InstallRecord: what install has added to this machine, remembered so that uninstall removes that
/// and nothing else.
///
/// Kept in the registry, one key per kind below `HKLM\SOFTWARE\Quillon\Port Monitor\Installed`, one
/// value per thing, so that each step records itself and a half-done run leaves a true record.
/// Names are compared without regard to case. Throws a Failure when the registry refuses.
class InstallRecord {
public:
    enum class Kind { cLibrary, cMonitor, cPortKey, cDriver, cPrinter, cPage };
    struct Entry {
        std::wstring name;
        /// What else is needed: of a driver the description file made for it, or empty; of a printer its
        /// driver; of a page, which has the name of its printer, see PageRecord.
        std::wstring detail;
    };

    static void Add(Kind kind, const std::wstring& name, const std::wstring& detail = {});
    /// Forgets one thing, and the keys that are empty then. Forgetting what is not there is fine.
    static void Remove(Kind kind, const std::wstring& name);
    static bool Contains(Kind kind, const std::wstring& name);
    /// Empty also when there is no such thing.
    static std::wstring GetDetail(Kind kind, const std::wstring& name);
    static std::vector<Entry> GetEntries(Kind kind);
    static bool IsEmpty();
};
