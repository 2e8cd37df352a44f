#pragma once

#include <cstdint>

#include "framework/core/GExport.h"
#include "framework/core/bytes/GBuffer.h"
#include "framework/core/text/GString.h"

/// GVariableSubstitution: makes paths that are stored portable, by variables in the place of folders.
class QUILLON_EXPORT GVariableSubstitution {
public:
    /// What a text is; bits.
    enum StringType : std::int32_t {
        cNoType = 0,
        cPath = 1,
    };

    GVariableSubstitution() = default;
    GVariableSubstitution(const GVariableSubstitution&) = delete;
    GVariableSubstitution& operator=(const GVariableSubstitution&) = delete;
    virtual ~GVariableSubstitution();

    /// Puts variables in the place of folders.
    virtual void ToVariables(GString& text) const = 0;
    /// Puts folders in the place of variables.
    virtual void FromVariables(GString& text) const = 0;
    /// Whether texts of that type are to pass through the two.
    virtual bool WillProcessStringTypes(StringType type) const = 0;
};

/// GVariableSubstitutionImp: knows four folders, each by a bit.
///
/// A folder is replaced where the text, a path in the system's own form, begins with it and a component
/// ends there, without regard to case; of several the longest. A folder that the system does not tell
/// is left out. Texts with variables for folders that are not there keep them.
class QUILLON_EXPORT GVariableSubstitutionImp : public GVariableSubstitution {
public:
    /// The folders that it knows; bits.
    enum PathNameTypes : std::int32_t {
        cGlobalPreferences = 1,  ///< the common application data: "%QuillonGlobalPreferences%"
        cUserPreferences = 2,    ///< the user's preference folder: "%QuillonUserPreferences%"
        cGlobalTemp = 4,         ///< the global temporary folder: "%SystemGlobalTemp%"
        cResourceFolder = 4096,  ///< the application's resources: "%QuillonResourceFolder%"
    };

    static const GBuffer cBuffer_QuillonGlobalPreferences;  ///< "%QuillonGlobalPreferences%"
    static const GBuffer cBuffer_QuillonUserPreferences;    ///< "%QuillonUserPreferences%"
    static const GBuffer cBuffer_SystemGlobalTemp;          ///< "%SystemGlobalTemp%"
    static const GBuffer cBuffer_QuillonResourceFolder;     ///< "%QuillonResourceFolder%"

    /// Any sum of the bits.
    explicit GVariableSubstitutionImp(PathNameTypes flags) : mFlags(flags) {}

    void ToVariables(GString& text) const override;  ///< replaces one folder, at the start of the text
    /// Replaces every occurrence.
    void FromVariables(GString& text) const override;
    bool WillProcessStringTypes(StringType type) const override { return (type & cPath) != 0; }

private:
    std::int32_t mFlags;
};
