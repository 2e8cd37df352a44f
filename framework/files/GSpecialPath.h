#pragma once

/// The numbers of the special paths that GFileSystem::GetSpecialPath knows a default for.
struct GSpecialPath {
    static constexpr long cUserApplicationData = -8;
    static constexpr long cSystem = -7;
    static constexpr long cLibrary = -6;      // the library module's own file
    static constexpr long cApplication = -5;  // the application's executable
    static constexpr long cUserPreferenceRoot = -4;
    static constexpr long cGlobalPreferenceRoot = -3;
    static constexpr long cGlobalTemp = -2;
    static constexpr long cGlobalSystem = -1;  // the Windows folder
    static constexpr long cCMap = 7;
    static constexpr long cResources = 11;
    static constexpr long cFontMetrics = 21;
    static constexpr long cLanguages = 22;
    static constexpr long cICC = 23;
    static constexpr long cGlobalPreferences = 33;
    static constexpr long cUserPreferences = 35;
    static constexpr long cXML = 52;
    static constexpr long cProductData = 53;
    static constexpr long cArtwork = 54;
};
