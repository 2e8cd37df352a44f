#pragma once

class GBuffer;

/// PWin32CodePage: conversions between a code page of the system and UTF-16.
///
/// Results are those of PText::CodePageToUTF16 and PText::UTF16ToCodePage. Safe on any thread.
class PWin32CodePage {
public:
    /// The functions of the system that convert; a test may bring others.
    struct Functions {
        unsigned (*getDefaultPage)();
        int (*toWide)(unsigned page, unsigned long flags, const char* bytes, int length, wchar_t* units,
                      int room);
        int (*toNarrow)(unsigned page, unsigned long flags, const wchar_t* units, int count, char* bytes,
                        int room, const char* defaultCharacter, int* usedDefault);
    };
    static const Functions cSystem;

    /// 0 is the system's default page.
    explicit PWin32CodePage(long number, const Functions& functions = cSystem) noexcept;

    long ToUTF16(const GBuffer& bytes, GBuffer& utf16) const;
    long FromUTF16(const GBuffer& utf16, GBuffer& bytes) const;

private:
    struct Narrow {
        int length;
        bool replaced;
    };

    bool IsKnown() const noexcept;
    bool AllowsFlags() const noexcept;
    bool AllowsDefaultCharacter() const noexcept;
    int ToWide(const char* bytes, int length, wchar_t* units, int room) const noexcept;
    Narrow ToNarrow(const wchar_t* units, int count, char* bytes, int room) const noexcept;
    long ReplaceInvalidBytes(const GBuffer& bytes, GBuffer& utf16) const;
    long ReplaceInvalidUnits(const wchar_t* units, int count, GBuffer& bytes) const;

    const Functions& mFunctions;
    unsigned mPage;
};
