#include "framework/core/errors/GStringPool.h"

#include <algorithm>
#include <mutex>
#include <utility>

#include "PPlatformTypes.h"
#include "framework/core/containers/GTable.h"
#include "framework/core/encodings/GASCIIEncoding.h"
#include "framework/core/encodings/GLatinEncodings.h"
#include "framework/core/encodings/GPlatformEncoding.h"
#include "framework/core/encodings/GUTF8Encoding.h"
#include "framework/core/encodings/GUnicodeEncoding.h"

namespace {

constinit const GBuffer cEnglish(cLiteral<"enUS">);

bool IsLessByID(const GStringPoolRow& row, std::int32_t id) {
    return row.mID < id;
}

bool AreSorted(const GStringPoolRow* rows, long count) {
    return std::is_sorted(rows, rows + count,
                          [](const GStringPoolRow& a, const GStringPoolRow& b) { return a.mID < b.mID; });
}

bool IsID(long id) {
    return id == static_cast<std::int32_t>(id);
}

/// What is registered in this process.
struct Registry {
    PCriticalSection mSection;
    GTable<GStringPool> mPools;
    GBuffer mLanguage = cEnglish;

    template <class Language>
    bool Find(const Language& language, long id, GString& text) const {
        for (long i = mPools.GetCount(); i > 0; --i) {
            const GStringPool& pool = mPools[i - 1];
            if (pool.GetLanguage() == language && pool.Find(id, text)) return true;
        }
        return false;
    }

    bool Has(const GBuffer& language, const GStringPoolRow* rows) const {
        return std::any_of(mPools.begin(), mPools.end(), [&](const GStringPool& pool) {
            return pool.GetRows() == rows && pool.GetLanguage() == language;
        });
    }
};

// Made right after the allocator and ended right before it, in the order of these numbers: failures are put
// into words in the constructors and destructors of other static objects, too.
Registry sRegistry __attribute__((init_priority(102)));

using Lock = std::lock_guard<PCriticalSection>;

}  // namespace

GStringPool::GStringPool(const GBuffer& language, const GBuffer& encodingName, const GStringPoolRow* rows,
                         long count)
    : mLanguage(language),
      mEncodingName(encodingName),
      mRows(rows),
      mCount(rows == nullptr ? 0 : static_cast<std::int32_t>(std::max(count, 0L))),
      mSorted(AreSorted(mRows, mCount)) {}

const GStringPoolRow* GStringPool::FindRow(std::int32_t id) const noexcept {
    const GStringPoolRow* const end = mRows + mCount;
    const GStringPoolRow* const row =
        mSorted ? std::lower_bound(mRows, end, id, IsLessByID)
                : std::find_if(mRows, end, [id](const GStringPoolRow& each) { return each.mID == id; });
    return row != end && row->mID == id ? row : nullptr;
}

bool GStringPool::Find(long id, GString& text) const {
    const GStringPoolRow* const row = IsID(id) ? FindRow(static_cast<std::int32_t>(id)) : nullptr;
    if (row == nullptr || row->mText == nullptr) return false;
    const GEncoding* const encoding = GStringPoolSupport::GetEncoding(mEncodingName);
    text.Set(row->mText, encoding != nullptr ? encoding : GASCIIEncoding::GetInstance(), true);
    return true;
}

void GStringPoolSupport::Register(const GBuffer& language, const GBuffer& encodingName,
                                  const GStringPoolRow* rows, long count) {
    const Lock lock(sRegistry.mSection);
    if (!sRegistry.Has(language, rows))
        sRegistry.mPools.Append(GStringPool(language, encodingName, rows, count));
}

void GStringPoolSupport::Unregister(const GStringPoolRow* rows) {
    const Lock lock(sRegistry.mSection);
    for (long i = sRegistry.mPools.GetCount(); i > 0; --i)
        if (sRegistry.mPools[i - 1].GetRows() == rows) sRegistry.mPools.Remove(i - 1);
}

void GStringPoolSupport::SetCurrentLanguage(const GBuffer& language) {
    const Lock lock(sRegistry.mSection);
    sRegistry.mLanguage = language;
}

GBuffer GStringPoolSupport::GetCurrentLanguage() {
    const Lock lock(sRegistry.mSection);
    return sRegistry.mLanguage;
}

bool GStringPoolSupport::FindString(long id, GString& text) {
    const Lock lock(sRegistry.mSection);
    return sRegistry.Find(sRegistry.mLanguage, id, text) || sRegistry.Find(cEnglish, id, text);
}

GString GStringPoolSupport::GetString(long id) {
    GString text;
    if (!FindString(id, text)) {
        text = GString("Message ");
        text += GString(id);
    }
    return text;
}

const GEncoding* GStringPoolSupport::GetEncoding(const GBuffer& name) {
    if (name == "WinAnsiEncoding") return GWinAnsiEncoding::GetInstance();
    if (name == "MacRomanEncoding") return GMacRomanEncoding::GetInstance();
    if (name == "UnicodeEncoding") return GUnicodeEncoding::GetInstance();
    if (name == "ShiftJISEncoding") return GShiftJISEncoding::GetInstance();
    if (name == "UTF8Encoding") return GUTF8Encoding::GetInstance();
    return nullptr;
}
