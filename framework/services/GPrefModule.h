#pragma once

#include <memory>

#include "framework/core/GExport.h"
#include "framework/core/containers/GTable.h"
#include "framework/core/encodings/GEncoding.h"
#include "framework/core/memory/GSharedObject.h"
#include "framework/services/GPrefChanges.h"
#include "framework/services/GPrefsText.h"

/// GPrefModule: one layer of preferences, groups of named values that a derived class keeps in a file or
/// in memory.
///
/// Group names and keys are ASCII. Changes stay in memory until FlushPrefs(). One thread at a time.
///
/// A temporary module is a state on top of the lasting one: it begins as a copy, and everything works on
/// it until it ends; what is written to the file meanwhile is the lasting state.
class QUILLON_EXPORT GPrefModule {
public:
    using Values = GPrefsText::Values;  ///< the values of one group by their keys

    GPrefModule(const GPrefModule&) = delete;
    GPrefModule& operator=(const GPrefModule&) = delete;
    virtual ~GPrefModule();

    /// The value, valid until the next change; the empty string when there is none.
    virtual const GString& Get(const GBuffer& group, const GBuffer& key) const;
    /// Inserts the value or replaces the one that the key has.
    virtual void Set(const GBuffer& group, const GBuffer& key, const GString& value);
    /// Whether the key is there, with an empty value, too.
    virtual bool Has(const GBuffer& group, const GBuffer& key) const;
    /// A key that is not there is no error, and no change.
    virtual void Remove(const GBuffer& group, const GBuffer& key);
    /// Removes all values of the group; one that is not there is no change.
    virtual void RemoveGroup(const GBuffer& group);
    /// Replaces the table.
    virtual void GetGroupNames(GTable<GBuffer>& names) const;
    /// Replaces what is given by the group's values, or its keys.
    virtual void GetGroupPreferences(const GBuffer& group, Values& values) const;
    /// The same for the keys alone.
    virtual void GetGroupPreferences(const GBuffer& group, GTable<GBuffer>& keys) const;
    /// Whether FlushPrefs() has something to write.
    virtual bool IsDirty() const;
    /// Says whether FlushPrefs() is to write.
    virtual void SetDirty(bool dirty);
    /// In which the text is written from now on; not null.
    virtual void SetEncoding(const GEncoding* encoding);
    /// Sets the value in the lasting state, too.
    virtual void SetIgnoreTemp(const GBuffer& group, const GBuffer& key, const GString& value);
    /// A second call does nothing.
    virtual void StartUsingTempModule();
    /// Makes the temporary state the lasting one, or drops it.
    virtual void EndUsingTempModule(bool keep);
    /// Takes over all values of the other; where both have one, the other's wins.
    virtual void UpdateWith(const GPrefModule* other);
    /// Writes what was changed. What is thrown leaves the changes unwritten and kept.
    virtual void FlushPrefs();
    /// Reads anew. Changes that are not written yet stay on top.
    virtual void Refresh();

protected:
    /// `encoding` as in SetEncoding().
    explicit GPrefModule(const GEncoding* encoding);

    /// Reads the lasting state, without the changes. A text that is missing is empty.
    virtual void ReadDict(GPrefsText::Groups& groups) = 0;
    /// Writes the lasting state. `changes` tells what of it is new; the groups may be brought up to date.
    virtual void WriteDict(GPrefsText::Groups& groups, const GPrefChanges& changes) = 0;

    /// In which the text is read and written.
    const GEncoding* GetEncoding() const noexcept { return mEncoding.Get(); }

private:
    struct State {
        GPrefsText::Groups groups;
        GPrefChanges changes;
        bool isDirty = false;

        void Set(const GBuffer& group, const GBuffer& key, const GString& value);
    };

    State& Lasting() noexcept { return mLasting ? *mLasting : mState; }

    State mState;
    std::unique_ptr<State> mLasting;  // while a temporary state is on; otherwise null
    GSharedObject<const GEncoding> mEncoding;
};

/// GPrefMemoryModule: preferences in memory, with a text to begin with and to end with.
class QUILLON_EXPORT GPrefMemoryModule : public GPrefModule {
public:
    GPrefMemoryModule();
    /// Parses the text; of a damaged one, what stands before the damage counts.
    explicit GPrefMemoryModule(const GString& data);

    /// Replaces `data` by the text of what was last flushed and all changes since.
    void GetPrefsData(GString& data);

protected:
    void ReadDict(GPrefsText::Groups& groups) override;
    void WriteDict(GPrefsText::Groups& groups, const GPrefChanges& changes) override;

private:
    GString mData;
};
