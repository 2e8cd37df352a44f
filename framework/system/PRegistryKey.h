#pragma once

#include <cstdint>
#include <memory>

#include "framework/core/GExport.h"
#include "framework/core/bytes/GBuffer.h"
#include "framework/core/containers/GTable.h"
#include "framework/core/text/GString.h"
#include "framework/system/PRegistryData.h"

struct HKEY__;
struct _SECURITY_ATTRIBUTES;

/// PRegistryKey: a key of the Windows registry, by value.
///
/// Paths have backslashes; `access` and `options` are the system's own (KEY_READ and so on). Nothing
/// here throws for what the system refuses: a call gives false or null, and GetStatus() the system's
/// code. Names and texts may hold any character; a name with a zero in it names nothing. Names are not
/// composed, neither on the way in nor out: "u" with a mark behind it and the one letter are two names. One
/// thread at a time.
///
/// Enumerations walk over the names that were there when they were begun. What is removed meanwhile
/// is passed over, what is added is not met.
class QUILLON_EXPORT PRegistryKey {
public:
    /// A closed key.
    PRegistryKey() noexcept = default;
    /// Opens the key. `root` is a predefined key, or one that stays open as long as this object.
    PRegistryKey(HKEY__* root, const GString& path, unsigned long access);
    /// Opens a key below an open one.
    PRegistryKey(const PRegistryKey& parent, const GString& path, unsigned long access);
    /// Opens the same key once more. Enumerations are not copied.
    PRegistryKey(const PRegistryKey& other);
    /// Closes this key, and opens the same as `other` once more.
    PRegistryKey& operator=(const PRegistryKey& other);
    ~PRegistryKey();

    bool Exists() const noexcept { return mKey != nullptr; }  ///< whether the key is open
    /// Makes the key, and those above it, or opens it when it is there by now; an empty `keyClass` is
    /// none, `security` may be null. False on an open key, with which nothing is done.
    bool Create(const GString& keyClass, long options, _SECURITY_ATTRIBUTES* security);
    /// Becomes a copy of `other`.
    void Set(const PRegistryKey& other) { *this = other; }
    /// The system's code of the last opening, creating or removing; 0: it succeeded.
    std::int32_t GetStatus() const noexcept { return mStatus; }
    /// Below the root, as it was given.
    const GString& GetPath() const noexcept { return mPath; }

    /// @name Values. The empty name is the key's default value. What fails leaves the output alone.
    /// @{

    /// Only for a 32-bit number (type 4).
    bool QueryInt32(const GString& name, long& value) const;
    /// Only for a text (types 1 and 2), without its zero and with variables as they stand. False as
    /// well, and nothing is cut, when it has more than `maxBytes` bytes, its zero among them, in the
    /// platform's 8-bit encoding.
    bool QueryString(const GString& name, GString& text, unsigned long maxBytes, unsigned long& type) const;
    /// Every type, as the system's 8-bit calls give it: texts (types 1, 2 and 7) with their zeros in
    /// the platform's 8-bit encoding, in which what it lacks is the default character. `size` becomes
    /// the count of bytes.
    bool QueryBuffer(const GString& name, GBuffer& bytes, unsigned long& size, unsigned long& type) const;
    /// The caller owns the result; null when there is no such value.
    PRegistryData* Query(const GString& name) const;
    /// A 32-bit number (type 4). False when the system refuses.
    bool SetInt32(const GString& name, long value);
    /// `type`: 1 or 2.
    bool SetString(const GString& name, const GString& text, unsigned long type);
    /// A text (types 1 and 2) is in the platform's 8-bit encoding, with or without its zero; a
    /// multi-string (type 7) may be in UTF-16, too (see PRegistryData::SetStringTable). All else is
    /// written as it is.
    bool SetBuffer(const GString& name, const GBuffer& bytes, unsigned long type);
    bool RemoveValue(const GString& name);  ///< false when there is none, or when the system refuses
    /// Removes the key of that name below this one; false as well when it has keys below it.
    bool RemoveKey(const GString& name);
    /// @}

    /// @name Enumeration
    /// @{

    /// False on a closed key. Starts anew when one is under way.
    bool BeginEnumerateRegistryKey(unsigned long access);
    /// The next key, opened; one that may not be opened comes closed, with its status. False past the
    /// last one and without BeginEnumerateRegistryKey().
    bool NextRegistryKey(PRegistryKey& key);
    void EndEnumerateRegistryKey() noexcept;  ///< forgets the names; a new beginning does so, too
    /// The same for the names of the values.
    bool BeginEnumerateValue();
    /// The next value, which the caller owns, and its name; null past the last one and without
    /// BeginEnumerateValue().
    PRegistryData* NextValue(GString& name);
    void EndEnumerateValue() noexcept;  ///< as EndEnumerateRegistryKey()
    /// @}

private:
    struct Enumeration {
        GTable<GBuffer> names;  // UTF-16, each with its zero
        std::int32_t next = 0;
        std::uint32_t access = 0;
    };

    bool Open(HKEY__* from, const wchar_t* path);
    void Close() noexcept;
    bool QueryValue(const wchar_t* name, GBuffer& stored, std::uint32_t& type) const;
    bool SetValue(const GString& name, const GBuffer& stored, std::uint32_t type);

    HKEY__* mKey = nullptr;
    HKEY__* mRoot = nullptr;  // not owned
    GString mPath;
    std::uint32_t mAccess = 0;
    std::int32_t mStatus = 0;
    std::unique_ptr<Enumeration> mKeys;    // null: none under way
    std::unique_ptr<Enumeration> mValues;  // the same
};
