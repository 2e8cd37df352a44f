#pragma once

#include <optional>

#include "framework/core/containers/GTable.h"
#include "framework/services/GPrefsText.h"

/// GPrefChanges: what was done to groups of preferences since they were last written, so that it can be
/// done once more to what another process has written meanwhile.
class GPrefChanges {
public:
    void Set(const GBuffer& group, const GBuffer& key, const GString& value);
    void Remove(const GBuffer& group, const GBuffer& key);
    void RemoveGroup(const GBuffer& group);
    void Clear();
    bool IsEmpty() const { return mValues.IsEmpty() && mRemovedGroups.IsEmpty(); }

    void ApplyTo(GPrefsText::Groups& groups) const;

private:
    using Values = GDict<GBuffer, std::optional<GString>>;  // without a value: removed

    GTable<GBuffer> mRemovedGroups;  // before any of the values
    GDict<GBuffer, Values> mValues;
};
