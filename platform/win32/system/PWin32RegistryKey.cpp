#include <algorithm>
#include <utility>

#include "framework/core/encodings/GPlatformEncoding.h"
#include "framework/core/encodings/GUnicodeEncoding.h"
#include "framework/system/PRegistryKey.h"
#include "platform/win32/core/PWin32Wide.h"

#include "platform/win32/base/PWin32Api.h"

namespace {

constexpr DWORD cMaxKeyNameUnits = 256;      // the longest, with its zero
constexpr DWORD cMaxValueNameUnits = 16384;  // likewise
constexpr int cMaxAttempts = 8;              // to list or read what others change meanwhile

const wchar_t* AsWide(const GBuffer& utf16) {
    return reinterpret_cast<const wchar_t*>(utf16.GetPtr());
}

// The system would take what stands before the zero for the name.
bool IsName(const GString& name) {
    return name.FindFirst(static_cast<unsigned short>(0)) < 0;
}

bool IsText(std::uint32_t type) {
    return type == PRegistryData::cString || type == PRegistryData::cExpandableString ||
           type == PRegistryData::cStringTable;
}

// What the system's 8-bit calls give for a stored text. An odd count of bytes is no UTF-16.
GBuffer ToNarrow(const GBuffer& stored) {
    if (stored.GetLength() % 2 != 0) return stored;
    GBuffer narrow;
    GPlatformEncoding::GetInstance()->ConvertFromUnicode(stored, narrow);
    return narrow;
}

GBuffer ToWide(const GBuffer& narrow) {
    GBuffer stored;
    GPlatformEncoding::GetInstance()->ConvertTo(narrow, GUnicodeEncoding::GetInstance(), stored);
    return stored;
}

GBuffer Number(std::int32_t value) {
    return GBuffer(reinterpret_cast<const unsigned char*>(&value), sizeof value);
}

// One pass over the names, each with its zero. `list(index, name, units)` is the system's call, with
// `units` as it takes and changes it.
template <class List>
LSTATUS ListOnce(GTable<GBuffer>& names, DWORD maxUnits, List list) {
    GBuffer name;
    name.Allocate(maxUnits * static_cast<long>(sizeof(wchar_t)));
    name.SetLength(maxUnits * static_cast<long>(sizeof(wchar_t)));
    names.Clear();
    for (DWORD index = 0;; ++index) {
        DWORD units = maxUnits;
        const LSTATUS status = list(index, reinterpret_cast<wchar_t*>(name.GetWritePtr()), &units);
        if (status != ERROR_SUCCESS) return status == ERROR_NO_MORE_ITEMS ? ERROR_SUCCESS : status;
        names.Append(name.GetSubBuffer(0, (units + 1L) * static_cast<long>(sizeof(wchar_t))));
    }
}

ULONGLONG TimeOfLastChange(HKEY key) {
    FILETIME time = {};
    ::RegQueryInfoKeyW(key, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr,
                       nullptr, &time);
    return static_cast<ULONGLONG>(time.dwHighDateTime) << 32 | time.dwLowDateTime;
}

// The system lists by number, and a change in between moves the numbers: then once more.
template <class List>
bool ListNames(HKEY key, GTable<GBuffer>& names, DWORD maxUnits, List list) {
    LSTATUS status = ERROR_SUCCESS;
    for (int attempt = 0; attempt < cMaxAttempts; ++attempt) {
        const ULONGLONG before = TimeOfLastChange(key);
        status = ListOnce(names, maxUnits, list);
        if (status == ERROR_SUCCESS && TimeOfLastChange(key) == before) break;
    }
    return status == ERROR_SUCCESS;
}

}  // namespace

PRegistryKey::PRegistryKey(HKEY__* root, const GString& path, unsigned long access)
    : mRoot(root), mPath(path), mAccess(access) {
    mStatus = ERROR_INVALID_NAME;
    if (IsName(path)) Open(root, ::AsWide(path));
}

PRegistryKey::PRegistryKey(const PRegistryKey& parent, const GString& path, unsigned long access)
    : mRoot(parent.mRoot), mPath(parent.mPath), mAccess(access) {
    if (!mPath.IsEmpty() && !path.IsEmpty()) mPath += GString("\\");
    mPath += path;
    mStatus = parent.Exists() ? ERROR_INVALID_NAME : ERROR_INVALID_HANDLE;
    if (parent.Exists() && IsName(path)) Open(parent.mKey, ::AsWide(path));
}

PRegistryKey::PRegistryKey(const PRegistryKey& other)
    : mRoot(other.mRoot), mPath(other.mPath), mAccess(other.mAccess), mStatus(other.mStatus) {
    if (other.Exists()) Open(other.mKey, L"");
}

PRegistryKey& PRegistryKey::operator=(const PRegistryKey& other) {
    PRegistryKey copy(other);
    std::swap(mKey, copy.mKey);
    mRoot = copy.mRoot;
    mPath.Swap(copy.mPath);
    mAccess = copy.mAccess;
    mStatus = copy.mStatus;
    mKeys.reset();
    mValues.reset();
    return *this;
}

PRegistryKey::~PRegistryKey() {
    Close();
}

bool PRegistryKey::Open(HKEY__* from, const wchar_t* path) {
    Close();
    mStatus = ::RegOpenKeyExW(from, path, 0, mAccess, &mKey);
    if (mStatus != ERROR_SUCCESS) mKey = nullptr;
    return Exists();
}

void PRegistryKey::Close() noexcept {
    if (mKey != nullptr) ::RegCloseKey(std::exchange(mKey, nullptr));
}

bool PRegistryKey::Create(const GString& keyClass, long options, _SECURITY_ATTRIBUTES* security) {
    if (Exists() || !IsName(mPath)) return false;
    GString className(keyClass);
    wchar_t* const classPointer = keyClass.IsEmpty() ? nullptr : const_cast<wchar_t*>(::AsWide(className));
    mStatus = ::RegCreateKeyExW(mRoot, ::AsWide(mPath), 0, classPointer, static_cast<DWORD>(options), mAccess,
                                security, &mKey, nullptr);
    if (mStatus != ERROR_SUCCESS) mKey = nullptr;
    return Exists();
}

bool PRegistryKey::QueryValue(const wchar_t* name, GBuffer& stored, std::uint32_t& type) const {
    if (!Exists()) return false;
    DWORD size = 0;
    DWORD found = 0;
    LSTATUS status = ::RegQueryValueExW(mKey, name, nullptr, &found, nullptr, &size);
    for (int i = 0; i < cMaxAttempts && (status == ERROR_SUCCESS || status == ERROR_MORE_DATA); ++i) {
        // One byte more, so that there is a place to write to; and the value may have grown by now.
        GBuffer bytes;
        bytes.Allocate(static_cast<long>(size) + 1);
        bytes.SetLength(static_cast<long>(size) + 1);
        status = ::RegQueryValueExW(mKey, name, nullptr, &found, bytes.GetWritePtr(), &size);
        if (status != ERROR_SUCCESS) continue;
        bytes.SetLength(static_cast<long>(size));
        stored.Swap(bytes);
        type = found;
        return true;
    }
    return false;
}

bool PRegistryKey::SetValue(const GString& name, const GBuffer& stored, std::uint32_t type) {
    if (!Exists() || !IsName(name)) return false;
    return ::RegSetValueExW(mKey, ::AsWide(name), 0, type, stored.GetRawData(),
                            static_cast<DWORD>(stored.GetLength())) == ERROR_SUCCESS;
}

bool PRegistryKey::QueryInt32(const GString& name, long& value) const {
    const std::unique_ptr<PRegistryData> data(Query(name));
    // A number of another length is kept as bytes.
    if (!data || data->GetType() != PRegistryData::cInt32 || !data->GetBuffer().IsEmpty()) return false;
    value = data->GetInt32();
    return true;
}

bool PRegistryKey::QueryString(const GString& name, GString& text, unsigned long maxBytes,
                               unsigned long& type) const {
    GBuffer stored;
    std::uint32_t found = 0;
    if (!IsName(name) || !QueryValue(::AsWide(name), stored, found)) return false;
    if (!IsText(found) || found == PRegistryData::cStringTable) return false;
    if (static_cast<unsigned long>(ToNarrow(stored).GetLength()) > maxBytes) return false;
    text = PRegistryData::DecodeString(stored);
    type = found;
    return true;
}

bool PRegistryKey::QueryBuffer(const GString& name, GBuffer& bytes, unsigned long& size,
                               unsigned long& type) const {
    GBuffer stored;
    std::uint32_t found = 0;
    if (!IsName(name) || !QueryValue(::AsWide(name), stored, found)) return false;
    GBuffer result = IsText(found) ? ToNarrow(stored) : stored;
    bytes.Swap(result);
    size = static_cast<unsigned long>(bytes.GetLength());
    type = found;
    return true;
}

PRegistryData* PRegistryKey::Query(const GString& name) const {
    GBuffer stored;
    std::uint32_t type = 0;
    if (!IsName(name) || !QueryValue(::AsWide(name), stored, type)) return nullptr;
    return std::make_unique<PRegistryData>(type, stored).release();
}

bool PRegistryKey::SetInt32(const GString& name, long value) {
    return SetValue(name, Number(static_cast<std::int32_t>(value)), PRegistryData::cInt32);
}

bool PRegistryKey::SetString(const GString& name, const GString& text, unsigned long type) {
    GBuffer stored(reinterpret_cast<const unsigned char*>(text.GetUTF16Ptr()), 2 * text.GetLength());
    stored += static_cast<unsigned short>(0);
    return SetValue(name, stored, static_cast<std::uint32_t>(type));
}

bool PRegistryKey::SetBuffer(const GString& name, const GBuffer& bytes, unsigned long type) {
    const auto stored = static_cast<std::uint32_t>(type);
    const bool isWide = stored == PRegistryData::cStringTable && PRegistryData::IsWideStringTable(bytes);
    return SetValue(name, IsText(stored) && !isWide ? ToWide(bytes) : bytes, stored);
}

bool PRegistryKey::RemoveValue(const GString& name) {
    mStatus = Exists() ? ERROR_INVALID_NAME : ERROR_INVALID_HANDLE;
    if (Exists() && IsName(name)) mStatus = ::RegDeleteValueW(mKey, ::AsWide(name));
    return mStatus == ERROR_SUCCESS;
}

bool PRegistryKey::RemoveKey(const GString& name) {
    mStatus = Exists() ? ERROR_INVALID_NAME : ERROR_INVALID_HANDLE;
    // The empty name would be this key itself.
    if (Exists() && IsName(name) && !name.IsEmpty()) mStatus = ::RegDeleteKeyW(mKey, ::AsWide(name));
    return mStatus == ERROR_SUCCESS;
}

bool PRegistryKey::BeginEnumerateRegistryKey(unsigned long access) {
    mKeys.reset();
    if (!Exists()) return false;
    auto keys = std::make_unique<Enumeration>();
    keys->access = access;
    const auto list = [this](DWORD index, wchar_t* name, DWORD* units) {
        return ::RegEnumKeyExW(mKey, index, name, units, nullptr, nullptr, nullptr, nullptr);
    };
    if (!ListNames(mKey, keys->names, cMaxKeyNameUnits, list)) return false;
    mKeys = std::move(keys);
    return true;
}

bool PRegistryKey::NextRegistryKey(PRegistryKey& key) {
    while (Exists() && mKeys && mKeys->next < mKeys->names.GetCount()) {
        const GBuffer& name = mKeys->names[mKeys->next++];
        PRegistryKey found;
        found.mRoot = mRoot;
        found.mPath = mPath;
        if (!mPath.IsEmpty()) found.mPath += GString("\\");
        found.mPath += NameFromWide(AsWide(name), name.GetLength() / 2 - 1);
        found.mAccess = mKeys->access;
        found.Open(mKey, AsWide(name));
        if (found.mStatus == ERROR_FILE_NOT_FOUND || found.mStatus == ERROR_KEY_DELETED) continue;
        std::swap(found.mKey, key.mKey);
        key.mRoot = found.mRoot;
        key.mPath.Swap(found.mPath);
        key.mAccess = found.mAccess;
        key.mStatus = found.mStatus;
        return true;
    }
    return false;
}

void PRegistryKey::EndEnumerateRegistryKey() noexcept {
    mKeys.reset();
}

bool PRegistryKey::BeginEnumerateValue() {
    mValues.reset();
    if (!Exists()) return false;
    auto values = std::make_unique<Enumeration>();
    const auto list = [this](DWORD index, wchar_t* name, DWORD* units) {
        return ::RegEnumValueW(mKey, index, name, units, nullptr, nullptr, nullptr, nullptr);
    };
    if (!ListNames(mKey, values->names, cMaxValueNameUnits, list)) return false;
    mValues = std::move(values);
    return true;
}

PRegistryData* PRegistryKey::NextValue(GString& name) {
    while (Exists() && mValues && mValues->next < mValues->names.GetCount()) {
        const GBuffer& wide = mValues->names[mValues->next++];
        GBuffer stored;
        std::uint32_t type = 0;
        if (!QueryValue(AsWide(wide), stored, type)) continue;
        auto data = std::make_unique<PRegistryData>(type, stored);
        name = NameFromWide(AsWide(wide), wide.GetLength() / 2 - 1);
        return data.release();
    }
    return nullptr;
}

void PRegistryKey::EndEnumerateValue() noexcept {
    mValues.reset();
}
