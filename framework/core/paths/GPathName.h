#pragma once

/// @file
/// Path names and their operators.

#include <cstdint>

#include "PPlatformPaths.h"
#include "framework/core/GExport.h"
#include "framework/core/text/GString.h"

/// GPathName: the name of a file or folder in one portable form, the same on every system.
///
/// Portable form: '/' separates; a drive ("C:"), a network host ("//server") or, as the whole path, a
/// volume ("Data:") is the root name, the '/' behind it the root directory. The native forms are made
/// on demand. A path is a value: it holds a GString in UTF-16 and nothing else, and keeps to GString's
/// rules on threads. Nothing here touches a disk. Text that fits no rule passes through unchanged.
///
/// Example: "//server/share/a.tar.gz" has the root name "//server", the root directory "/", the
/// relative path "share/a.tar.gz", the branch "//server/share/", the leaf "a.tar.gz", and the
/// extension "gz".
class QUILLON_EXPORT GPathName : public PPathNameImp {
public:
    static const GPathName cEmptyPathName;  ///< the one path that threads may share

    GPathName() = default;
    ///@{ From a text in portable form, taken as it stands; CheckCrossPlatformString() tells whether it is
    /// one.
    explicit GPathName(const GString& portable);
    explicit GPathName(GString&& portable);
    ///@}
    GPathName(const GPathName&) = default;
    GPathName(GPathName&&) noexcept = default;
    GPathName& operator=(const GPathName&) = default;
    GPathName& operator=(GPathName&&) noexcept = default;
    ~GPathName() override;
    /// A path from the form that the operating system uses.
    static GPathName FromNative(const GString& native);

    /// Every change of the path passes through here. A derived class may store another text, or none,
    /// or refuse by throwing. Until it stores something the path is as it was.
    void SetCrossPlatformString(const GString& portable) override;
    const GString& GetCrossPlatformString() const override;  ///< the portable form
    ///@{ Between the portable and the Win32 form; a derived class may have rules of its own.
    void ConvertPortableToWin32(const GString& portable, GString& win32) const override;
    void ConvertWin32ToPortable(const GString& win32, GString& portable) const override;
    ///@}
    virtual const GString& GetPortablePath() const;  ///< as GetCrossPlatformString()

    ///@{ Mach-O paths are UNIX paths in which volumes hang under "/Volumes/". A drive is the volume of its
    /// letter and a volume root that of its name: "C:/x" is "/Volumes/C/x", "Data:" is "/Volumes/Data". All
    /// else is the same in both forms. The reverse turns a volume of one letter into the drive.
    virtual void ConvertPortableToMachO(const GString& portable, GString& machO) const;
    virtual void ConvertMachOToPortable(const GString& machO, GString& portable) const;
    ///@}
    ///@{ CFM paths separate by ':'. A full path starts with its volume: "Data:dir:file" is
    /// "/Volumes/Data/dir/file" ("C:dir" is "C:/dir"); a relative one of several names starts with ':', each
    /// further ':' is a step upwards (":dir:file", "::file" is "../file"). A ':' inside a name and a '/'
    /// inside a CFM name stand for each other. Paths from the root that name no volume ("/dir", "//server/x")
    /// have no CFM form and pass unchanged.
    virtual void ConvertPortableToCFM(const GString& portable, GString& cfm) const;
    virtual void ConvertCFMToPortable(const GString& cfm, GString& portable) const;
    ///@}
    ///@{ The UNIX form is the portable form.
    virtual void ConvertPortableToUNIX(const GString& portable, GString& out) const;
    virtual void ConvertUNIXToPortable(const GString& path, GString& portable) const;
    ///@}
    /// The portable path with "." and ".." resolved as Normalize() does.
    virtual GString GetNormalizedPortablePathFrom(const GString& portable) const;
    virtual void SetPortablePath(const GString& portable);  ///< as SetCrossPlatformString()

    /// `\` separates; a prefix `\\?\` is dropped (`\\?\UNC\server` gives "/server", one slash).
    void SetWin32PathString(const GString& path);
    ///@{ Native is Win32 here; both set the same.
    void SetNativePathString(const GString& path);
    void SetLegacyPlatformString(const GString& path);
    ///@}
    /// As `\\server\share\x`. Unlike the Win32 form, `\\?\UNC\server\x` keeps both slashes.
    void SetUNCPathString(const GString& path);
    /// The device-independent form of page-description documents: "/C/dir" is "C:/dir", "/server/x" is
    /// "//server/x". Throws GExceptionID::cURLNotSupported for a text that starts with "http://" or
    /// "ftp://"; the path then stays as it was.
    void SetDIPathString(const GString& path);
    ///@{ The forms of ConvertMachOToPortable() and ConvertCFMToPortable().
    void SetMachOPathString(const GString& path);
    void SetCFMPathString(const GString& path);
    ///@}

    /// The Win32 form; network paths start with `\\`.
    GString GetUNCPathString() const;
    /// The reverse of SetDIPathString().
    GString GetDIPathString() const;
    /// "file:///C:/a%20b", "file://server/share/x": percent-encoded UTF-8 (RFC 3986; a surrogate
    /// without its other half becomes U+FFFD; ':' and '@' stay as they are but in the name of a host).
    /// A relative path is written as if it started at the root, as URLs of files know no other.
    GString GetURLPathString() const;
    /// As ConvertPortableToMachO().
    GString GetMachOPathString() const;
    /// As ConvertPortableToCFM().
    GString GetCFMPathString() const;
    /// The branch in Mach-O form.
    GString GetMachOBranch() const;

    /// "C:", "//server", "Data:" or the empty path.
    GPathName GetRootName() const;
    /// "/" or the empty path.
    GPathName GetRootDirectory() const;
    GPathName GetRootPath() const;  ///< root name and root directory: "C:/"
    /// What follows the root path.
    GPathName GetRelativePath() const;
    /// The way from `base` to this path, so that base / result names this path: "C:/a/b" from
    /// "C:/a/c" is "../b". Both are normalised first; names are compared without regard to case.
    /// The empty path when both are the same. Where there is no way, the normalised path itself: from
    /// another root; from a base that steps up beyond what it shares with this path; from a drive
    /// alone ("C:" / "b" is not "C:b"); and where the way would read as a root name, such as "D:x".
    GPathName GetRelativePathFrom(const GPathName& base) const;
    /// Everything before the leaf, the '/' included; the whole path when it has no leaf.
    GPathName GetBranch() const;
    /// What follows the last '/', without one the last ':'. Empty for "dir/", "C:" and "//server".
    GString GetLeaf() const;
    /// The leaf up to its last dot.
    GString GetLeafWithoutExtension() const;
    /// What follows the last dot of the leaf; the leaves "." and ".." have none.
    GString GetExtension() const;
    /// The root and the first `count` components: "C:/a/b/c" with 2 gives "C:/a/b". Counts out of
    /// range are cut to what there is. Used to walk down from the root.
    GPathName GetPartialPath(long count) const;
    /// The names behind the root; empty ones between doubled '/' do not count.
    long GetNumberOfComponents() const;

    bool IsEmpty() const;  ///< whether there is no text at all
    /// There is something before the leaf.
    bool HasBranch() const;
    bool HasLeaf() const;  ///< whether something follows the last separator
    /// The leaf has a dot, and is neither "." nor "..". A trailing dot is an empty extension.
    bool HasExtension() const;
    /// True when the path lies in `start` or is it, by whole components and without regard to case:
    /// "C:/dir/x" starts with "c:/DIR" and "C:/dir/", not with "C:/di". A root name alone starts
    /// every path of that root; the empty path starts all. Neither path is normalised.
    bool StartsWith(const GPathName& start) const;

    /// Adds a component behind a '/'. An empty one changes nothing.
    void Append(const GString& component);
    /// Throws GExceptionID::cPathNotRelative, and changes nothing, when `relative` has a root name.
    GPathName& operator/=(const GPathName& relative);
    /// Puts the leaf in the place of the present one, or behind a path that has none.
    void ReplaceLeaf(const GString& leaf);
    /// The extension stays.
    void ReplaceLeafWithoutExtension(const GString& name);
    /// With or without the dot in front; an empty text removes the extension. A path without a leaf
    /// stays as it is.
    void ReplaceExtension(const GString& extension);
    /// Resolves "." and ".." behind the root as text. A leading "..", and one behind an empty
    /// component, stay; at the root too: "C:/.." is left to the system. What follows a component that
    /// goes may come to stand where a root is read: "./C:/x" becomes "C:/x", "/.//x" "//x".
    void Normalize();
    void Clear();  ///< the empty path

    /// Makes a title acceptable as the name of one file, in any folder.
    ///
    /// What Windows refuses becomes `replacement`: < > : " / \ | ? *, U+0000 to U+001F, and dots and
    /// blanks at the end. It is also put in front of the name of a device (CON, PRN, AUX, NUL, COM0 to
    /// COM9, LPT0 to LPT9 and their superscript digits, CONIN$, CONOUT$), with or without an
    /// extension. A name that would be empty without its extension has it joined ("." and blanks
    /// before the last dot are replaced, the dot of ".foo" too), so that the caller may take the
    /// extension off and put another on. The result is never empty, "." or "..".
    ///
    /// The name is cut at its end to `maxLength` units, or where that is below 1 or above 251 to
    /// 251: an extension of up to 4 units (".ps") still fits the 255 of a file system. Surrogate
    /// pairs are not split; halves that stand alone stay, as Windows keeps them.
    ///
    /// A replacement that is itself refused, or is half of a pair, is taken as '_'; so is a dot, a
    /// blank, a letter or a digit wherever it would spoil the name again.
    static void CreateValidFileName(GString& name, long maxLength, unsigned short replacement);
    /// Throws GExceptionID::cInvalidPath for a text that is no portable path: one with a zero or a
    /// backslash, which would end or split the native form.
    static void CheckCrossPlatformString(const GString& portable);

    ///@{ Native is Win32 here.
    static void ConvertNativeToPortable(const GString& native, GString& portable);
    static void ConvertPortableToNative(const GString& portable, GString& native);
    ///@}
    ///@{ As SetUNCPathString(), SetDIPathString() and the calls that give these forms, without a path object;
    /// a URL is not refused here.
    static void ConvertUNCSpecToPortable(const GString& unc, GString& portable);
    static void ConvertPortableToUNCSpec(const GString& portable, GString& unc);
    static void ConvertDISpecToPortable(const GString& di, GString& portable);
    static void ConvertPortableToDISpec(const GString& portable, GString& di);
    ///@}

private:
    friend QUILLON_EXPORT GPathName operator/(const GPathName& base, const GPathName& relative);

    static GString Join(const GString& base, const GString& component);
    void Store(GString&& portable);
    GString Part(long start, long count) const;
    bool IsRootNameAlone() const;
    long GetExtensionPosition() const;

    GString mPath;
};

/// As GPathName::operator/=().
QUILLON_EXPORT GPathName operator/(const GPathName& base, const GPathName& relative);
///@{ Without regard to case.
QUILLON_EXPORT bool operator==(const GPathName& a, const GPathName& b);
QUILLON_EXPORT bool operator!=(const GPathName& a, const GPathName& b);
///@}
