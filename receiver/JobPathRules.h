#pragma once

#include <string>
#include <string_view>

/// JobPathRules: which paths a job record may name. Any local program can send a record, and opening a
/// path can do more than read a file: it can log on to another machine, or talk to a device or a pipe.
struct JobPathRules {
    /// Whether it is the full path of a file on a drive: a letter, ":\" and names of which none is
    /// empty, "." or "..", a device, or names a stream. Asks the system nothing.
    static bool IsPlain(std::wstring_view path);
    /// Whether the drive is one of this machine's own.
    static bool IsOnLocalDrive(std::wstring_view path);
    /// Whether a path lies below a folder, whatever the letters' case. Both without short names.
    static bool IsBelow(const std::wstring& path, const std::wstring& folder);
};
