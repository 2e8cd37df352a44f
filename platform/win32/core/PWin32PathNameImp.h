#pragma once

#include "framework/core/GExport.h"
#include "framework/core/text/GString.h"

/// PWin32PathNameImp: the rules of path names on Windows, over a portable path that a derived class
/// keeps.
///
/// What counts as a root, how the system writes a path, and that the case of letters does not count.
/// Pure text rules: nothing here asks the system or touches a disk. Lengths are UTF-16 units.
class QUILLON_EXPORT PWin32PathNameImp {
public:
    virtual ~PWin32PathNameImp();

    /// Stores a portable path.
    virtual void SetCrossPlatformString(const GString& portable) = 0;
    /// The portable path.
    virtual const GString& GetCrossPlatformString() const = 0;
    virtual void ConvertPortableToWin32(const GString& portable, GString& win32) const = 0;
    virtual void ConvertWin32ToPortable(const GString& win32, GString& portable) const = 0;

    /// "\" separates; the empty path reads ".".
    GString GetWin32PathString() const;
    GString GetNativePathString() const;
    GString GetLegacyPlatformString() const;
    /// What Win32 file functions take: the Win32 form, from 247 units on behind "\\?\" (network
    /// paths behind "\\?\UNC"), which lifts the system's length limit. Such a path is taken
    /// literally by the system, so it should be complete and free of "." and "..".
    GString GetWin32APIPathString() const;

    /// Sets the whole path to a root alone: "C:", "C:\" or "\\server\", in native form.
    void SetRootName(const GString& native);
    void SetRootPath(const GString& native);
    /// The same in portable form.
    void SetCrossPlatformRootNameString(const GString& portable);
    void SetCrossPlatformRootPathString(const GString& portable);
    /// "C:", "//server", "Data:", or empty.
    GString GetCrossPlatformRootNameString() const;
    /// "/" or empty.
    GString GetCrossPlatformRootDirectoryString() const;

    /// A drive, a network host or a volume stands in front.
    bool HasRootName() const;
    /// The path starts at the top: "C:/x", "/x", "//server/x".
    bool HasRootDirectory() const;
    bool HasRootPath() const;
    /// No root name: "/dir", which names no drive, is relative on this platform.
    bool IsRelative() const;

    /// Without regard to case.
    bool Equals(const PWin32PathNameImp& other) const;
    /// The same for equal paths.
    std::uint32_t GetHash() const;

    /// The rules on any portable path: the lengths of its root name and its root directory (1 or 0).
    static long GetRootNameLength(const GString& portable);
    static long GetRootDirectoryLength(const GString& portable);
    /// Where the part behind root name and root directory starts.
    static long GetStartPositionRelativePath(const GString& portable);

protected:
    PWin32PathNameImp() = default;
    PWin32PathNameImp(const PWin32PathNameImp&) = default;
    PWin32PathNameImp(PWin32PathNameImp&&) noexcept = default;
    PWin32PathNameImp& operator=(const PWin32PathNameImp&) = default;
    PWin32PathNameImp& operator=(PWin32PathNameImp&&) noexcept = default;

    /// Where the leaf starts; the length of the path when there is none.
    static long GetLeafPosition(const GString& portable);

    static GString Win32ToPortable(const GString& win32);
    static GString PortableToWin32(const GString& portable);
};
