#pragma once

/// The numbers of the special paths that GFileSystem::GetSpecialPath knows a default for.
struct GSpecialPath {
    static constexpr long cUserApplicationData = -8;   ///< GFileSystem::GetUserApplicationDataFolder()
    static constexpr long cSystem = -7;                ///< GFileSystem::GetSystemFolder()
    static constexpr long cLibrary = -6;               ///< the library module's own file
    static constexpr long cApplication = -5;           ///< the application's executable
    static constexpr long cUserPreferenceRoot = -4;    ///< GFileSystem::GetUserPreferenceFolder()
    static constexpr long cGlobalPreferenceRoot = -3;  ///< GFileSystem::GetGlobalPreferenceFolder()
    static constexpr long cGlobalTemp = -2;            ///< GFileSystem::GetGlobalTempFolder()
    static constexpr long cGlobalSystem = -1;          ///< the Windows folder
    static constexpr long cCMap = 7;                   ///< "CMap" below cResources
    static constexpr long cResources = 11;             ///< GFileSystem::GetResourceFolder()
    static constexpr long cFontMetrics = 21;           ///< "FontMetrics" below cResources
    static constexpr long cLanguages = 22;             ///< "lng" below cResources
    static constexpr long cICC = 23;                   ///< "ICC" below cResources
    static constexpr long cGlobalPreferences = 33;  ///< "Quillon Prefs Folder" in the common application data
    static constexpr long cUserPreferences = 35;    ///< "Quillon Prefs Folder" in the user's application data
    static constexpr long cXML = 52;                ///< "xml" below cResources
    static constexpr long cProductData = 53;        ///< "Quillon" below cUserApplicationData
    static constexpr long cArtwork = 54;            ///< "Artwork" below cResources
};
