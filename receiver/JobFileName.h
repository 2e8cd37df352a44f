#pragma once

#include <string>
#include <string_view>

/// JobFileName: what the name of a job file tells about the job.
///
///     Letter.ps                   as the monitor wrote it
///     Letter (waiting 4711-1).ps  taken over by the process 4711, its first; it waits for its turn
///     Letter (taken 4711-1).ps    handed out: its turn has come
///     Letter.ps (set aside 1)     put out of the way by the monitor, as it was none of its files
///
/// Takes names and whole paths alike. Asks the system nothing.
struct JobFileName {
    static constexpr std::wstring_view cWaiting = L"waiting";
    static constexpr std::wstring_view cTaken = L"taken";

    /// Whether it is the name of a job that nobody has been handed. A document with a title such as
    /// "Letter (taken 1-1)" looks as if somebody had.
    static bool IsPending(std::wstring_view path);
    /// Whether a receiver has taken it over and not handed it out.
    static bool IsWaiting(std::wstring_view path);
    /// Whether the monitor has put it out of the way, be it a file or a folder.
    static bool IsSetAside(std::wstring_view path);
    /// "Letter": the name without its extension and without the mark of its taking over.
    static std::wstring GetTitle(std::wstring_view path);
    /// "C:\x\Letter (taken 4711-1).ps", in the place of the mark that is there, and cut to what a path may
    /// have. Empty when not one character of the title would be left.
    static std::wstring Mark(std::wstring_view path, std::wstring_view word, std::wstring_view number);
};
