#pragma once

#include <string>

/// TraceSwitch: the configuration that switches the monitor's trace log on, where the monitor reads it.
///
/// The monitor reads it as its library is loaded, and only when folder and file belong to the system or the
/// administrators: so they are made with the framework's care and given to the administrators. Throws a
/// Failure or a GException when something else is in that place, or the system refuses.
struct TraceSwitch {
    /// Makes the configuration; one that logs jobs already stays as it is, another one is replaced. False: it
    /// was on already.
    static bool On(const std::wstring& folder);
    /// Removes it, and the folder when it is empty then. False: there was none.
    static bool Off(const std::wstring& folder);

    /// Where the monitor looks, without a trailing backslash.
    static std::wstring GetFolder();
    static constexpr const wchar_t* cConfiguration = L"QuillonPortMonitor64.tpr";
    static constexpr const wchar_t* cLog = L"QuillonPortMonitor64.tra";
};
