#include "framework/services/GPrefChanges.h"

void GPrefChanges::Set(const GBuffer& group, const GBuffer& key, const GString& value) {
    mValues.GetOrInsert(group).Set(key, value);
}

void GPrefChanges::Remove(const GBuffer& group, const GBuffer& key) {
    mValues.GetOrInsert(group).Set(key, std::nullopt);
}

void GPrefChanges::RemoveGroup(const GBuffer& group) {
    if (!mRemovedGroups.Has(group)) mRemovedGroups.Append(group);
    mValues.Remove(group);
}

void GPrefChanges::Clear() {
    mRemovedGroups.Clear();
    mValues.Clear();
}

void GPrefChanges::ApplyTo(GPrefsText::Groups& groups) const {
    for (const GBuffer& group : mRemovedGroups) groups.Remove(group);
    for (const auto& group : mValues) {
        GPrefsText::Values& values = groups.GetOrInsert(group.GetKey());
        for (const auto& entry : group.GetValue()) {
            if (entry.GetValue()) {
                values.Set(entry.GetKey(), *entry.GetValue());
            } else {
                values.Remove(entry.GetKey());
            }
        }
    }
}
