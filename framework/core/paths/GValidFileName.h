#pragma once

#include <cstddef>

#include "framework/core/paths/GPathText.h"
#include "framework/core/text/GString.h"

/// GValidFileName: turns any title into the name of one file; see GPathName::CreateValidFileName.
class GValidFileName {
public:
    GValidFileName(GPathUnits title, long maxLength, unsigned short replacement);
    GString Get() const;

    /// True for a name that Windows takes for a folder as it is: 1 to 255 units, none that is refused
    /// anywhere, no dot or blank at the end, and no device's.
    static bool IsFolderName(GPathUnits name);

private:
    // On all file systems of Windows.
    static constexpr std::size_t cMaxComponent = 255;
    // Four are left for the extension that the caller puts behind.
    static constexpr std::size_t cMaxLength = cMaxComponent - 4;

    void CutToLimit();
    void ReplaceTail();
    void JoinEmptyStem();
    void PutInFront(unsigned short unit);
    GPathUnits GetUnits() const { return {mUnits, mCount}; }

    std::size_t mLimit;
    unsigned short mInside;    // replaces what is refused anywhere
    unsigned short mAtTheEnd;  // replaces dots and blanks: neither of them
    unsigned short mInFront;   // put before a device name: can be part of none
    unsigned short mUnits[cMaxLength + 1];
    std::size_t mCount = 0;
};
