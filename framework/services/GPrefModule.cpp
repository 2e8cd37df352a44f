#include "framework/services/GPrefModule.h"

#include <utility>

#include "framework/core/encodings/GUTF8Encoding.h"
#include "framework/core/encodings/GUnicodeEncoding.h"
#include "framework/core/errors/GException.h"
#include "framework/streams/GMemoryInStream.h"
#include "framework/streams/GMemoryOutStream.h"
#include "framework/streams/text/GBin2TextStream.h"
#include "framework/streams/text/GText2BinStream.h"

namespace {

const GEncoding* Require(const GEncoding* encoding) {
    if (encoding == nullptr) throw GSimpleException(GExceptionID::cInvalidParameter);
    return encoding;
}

}  // namespace

void GPrefModule::State::Set(const GBuffer& group, const GBuffer& key, const GString& value) {
    changes.Set(group, key, value);
    groups.GetOrInsert(group).Set(key, value);
    isDirty = true;
}

GPrefModule::GPrefModule(const GEncoding* encoding) : mEncoding(Require(encoding)) {}

GPrefModule::~GPrefModule() = default;

const GString& GPrefModule::Get(const GBuffer& group, const GBuffer& key) const {
    const Values* const values = mState.groups.Find(group);
    const GString* const value = values != nullptr ? values->Find(key) : nullptr;
    return value != nullptr ? *value : GString::cEmptyString;
}

void GPrefModule::Set(const GBuffer& group, const GBuffer& key, const GString& value) {
    mState.Set(group, key, value);
}

bool GPrefModule::Has(const GBuffer& group, const GBuffer& key) const {
    const Values* const values = mState.groups.Find(group);
    return values != nullptr && values->Has(key);
}

void GPrefModule::Remove(const GBuffer& group, const GBuffer& key) {
    if (!Has(group, key)) return;
    mState.changes.Remove(group, key);
    mState.groups.Find(group)->Remove(key);
    mState.isDirty = true;
}

void GPrefModule::RemoveGroup(const GBuffer& group) {
    if (!mState.groups.Has(group)) return;
    mState.changes.RemoveGroup(group);
    mState.groups.Remove(group);
    mState.isDirty = true;
}

void GPrefModule::GetGroupNames(GTable<GBuffer>& names) const {
    names.Clear();
    for (const auto& group : mState.groups)
        if (!group.GetValue().IsEmpty()) names.Append(group.GetKey());
}

void GPrefModule::GetGroupPreferences(const GBuffer& group, Values& values) const {
    const Values* const found = mState.groups.Find(group);
    values = found != nullptr ? *found : Values();
}

void GPrefModule::GetGroupPreferences(const GBuffer& group, GTable<GBuffer>& keys) const {
    keys.Clear();
    const Values* const found = mState.groups.Find(group);
    if (found == nullptr) return;
    for (const auto& entry : *found) keys.Append(entry.GetKey());
}

bool GPrefModule::IsDirty() const {
    return mLasting ? mLasting->isDirty : mState.isDirty;
}

void GPrefModule::SetDirty(bool dirty) {
    Lasting().isDirty = dirty;
}

void GPrefModule::SetEncoding(const GEncoding* encoding) {
    mEncoding = GSharedObject<const GEncoding>(Require(encoding));
}

void GPrefModule::SetIgnoreTemp(const GBuffer& group, const GBuffer& key, const GString& value) {
    if (mLasting) mLasting->Set(group, key, value);
    mState.Set(group, key, value);
}

void GPrefModule::StartUsingTempModule() {
    if (!mLasting) mLasting = std::make_unique<State>(mState);
}

void GPrefModule::EndUsingTempModule(bool keep) {
    if (!mLasting) return;
    if (!keep) std::swap(mState, *mLasting);
    mLasting.reset();
}

void GPrefModule::UpdateWith(const GPrefModule* other) {
    if (other == nullptr || other == this) return;
    for (const auto& group : other->mState.groups)
        for (const auto& entry : group.GetValue()) Set(group.GetKey(), entry.GetKey(), entry.GetValue());
}

void GPrefModule::FlushPrefs() {
    State& state = Lasting();
    if (!state.isDirty) return;
    WriteDict(state.groups, state.changes);
    state.changes.Clear();
    state.isDirty = false;
}

void GPrefModule::Refresh() {
    GPrefsText::Groups read;
    ReadDict(read);
    if (mLasting) {
        mLasting->groups = read;
        mLasting->changes.ApplyTo(mLasting->groups);
    }
    mState.groups.Swap(read);
    mState.changes.ApplyTo(mState.groups);
}

GPrefMemoryModule::GPrefMemoryModule() : GPrefMemoryModule(GString()) {}

GPrefMemoryModule::GPrefMemoryModule(const GString& data)
    : GPrefModule(GUTF8Encoding::GetInstance()), mData(data) {
    GPrefMemoryModule::Refresh();
}

void GPrefMemoryModule::ReadDict(GPrefsText::Groups& groups) {
    const GBuffer bytes = mData.GetBuffer(GUnicodeEncoding::GetInstance());
    GMemoryInStream source(bytes);
    GBin2TextStream text(source, GUnicodeEncoding::GetInstance());
    GPrefsText::Read(text, groups);
}

void GPrefMemoryModule::WriteDict(GPrefsText::Groups& groups, const GPrefChanges&) {
    GBuffer bytes;
    GMemoryOutStream target(bytes);
    GText2BinStream text(target, GUnicodeEncoding::GetInstance());
    GPrefsText::Write(groups, text);
    mData = GString(bytes, GUnicodeEncoding::GetInstance());
}

void GPrefMemoryModule::GetPrefsData(GString& data) {
    SetDirty(true);
    FlushPrefs();
    data = mData;
}
