#pragma once

#include <string>
#include <vector>

/// A page that was seen to arrive as a job file.
struct ArrivedPage {
    std::wstring printer;
    std::wstring when;  // "2026-11-22 09:12:45 UTC"
};

/// PageRecord: the last page of each printer that was seen to arrive, kept in the record of install.
///
/// Only that is proof that a printer works. It holds for the version of the library that has written the
/// file. Throws a Failure when the registry refuses.
struct PageRecord {
    /// A page of that printer has arrived now.
    static void Add(const std::wstring& printer, const std::wstring& version);
    static std::vector<ArrivedPage> GetOf(const std::wstring& version);
    /// Forgets all: what they went through has changed.
    static void Clear();
};
