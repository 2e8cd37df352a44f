#pragma once

#include <cstdint>

#include "framework/core/GExport.h"
#include "framework/core/paths/GPathName.h"
#include "framework/services/GPrefModule.h"

/// GPrefFileModule: preferences in a file of one program.
///
/// The file is written whole and takes the place of the old one in one step (GPrefsFile): what another
/// process has written into it since it was read is lost. A file that is missing is empty. Of a damaged
/// file, what stands before the damage is kept and the trace log is told (category "Preferences"); before
/// it is written the next time, the damaged one is set aside as "NAME (damaged)".
class QUILLON_EXPORT GPrefFileModule : public GPrefModule {
public:
    /// Reads the file. Throws what that throws.
    GPrefFileModule(const GPathName& path, const GEncoding* encoding);

    const GPathName& GetPathName() const noexcept { return mPath; }  ///< as it was given
    /// Writes the present values into another file; the module stays with its own.
    void SaveAs(const GPathName& path);

protected:
    /// Does not read yet.
    struct Unread {};
    /// For a derived class that reads in its own way.
    GPrefFileModule(const GPathName& path, const GEncoding* encoding, Unread)
        : GPrefModule(encoding), mPath(path) {}

    void ReadDict(GPrefsText::Groups& groups) override;
    void WriteDict(GPrefsText::Groups& groups, const GPrefChanges& changes) override;

private:
    GPathName mPath;
    bool mIsDamaged = false;
};

/// GPrefSharedFileModule: preferences in a file that several programs share.
///
/// A lock file beside it ("Q.uprefs" has "Q.uprefslock") lets many read or one write. Under the lock for
/// writing the file is read once more, the changes since the last writing are made to it, and then it is
/// written whole: of two programs that change different keys, neither undoes what the other did; of two
/// that change the same key, the later one wins. A lock that is not free within the longest wait throws
/// GSimpleException cCouldNotLock; the changes are kept then.
class QUILLON_EXPORT GPrefSharedFileModule : public GPrefFileModule {
public:
    static constexpr long cLongestWait = 30000;  ///< milliseconds

    /// Reads the file under a lock for reading. Throws what that throws, and when the lock cannot be had
    /// within so many milliseconds.
    GPrefSharedFileModule(const GPathName& path, const GEncoding* encoding, long longestWait = cLongestWait);

protected:
    void ReadDict(GPrefsText::Groups& groups) override;
    void WriteDict(GPrefsText::Groups& groups, const GPrefChanges& changes) override;

private:
    GPathName GetLockPathName() const;

    std::int32_t mLongestWait;  // milliseconds
};
