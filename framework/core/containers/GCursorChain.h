#pragma once

#include <utility>

/// GCursorChain: what chains the cursors of iterators to the container that they walk; the base of
/// each kind of cursor, with that kind as its parameter.
///
/// The container holds the head of the chain. A cursor leaves its chain when it ends; a container that
/// ends lets all of them go. The cursors' positions are their own business.
template <class Cursor>
class GCursorChain {
public:
    GCursorChain(const GCursorChain&) = delete;
    GCursorChain& operator=(const GCursorChain&) = delete;

protected:
    /// In no chain.
    GCursorChain() noexcept = default;
    GCursorChain(const void* owner, Cursor*& chain) noexcept { Attach(owner, chain); }
    ~GCursorChain() { Detach(); }

    /// Null when the container is gone.
    const void* GetOwner() const noexcept { return mOwner; }

    /// Into the chain that the other is in, out of the present one.
    void Follow(const GCursorChain& other) noexcept {
        if (mChain == other.mChain) return;
        Detach();
        if (other.mChain != nullptr) Attach(other.mOwner, *other.mChain);
    }

    template <class Action>
    static void ForEach(Cursor* chain, Action&& action) {
        for (Cursor* cursor = chain; cursor != nullptr; cursor = Next(cursor)) action(*cursor);
    }

    /// The container ends: releases all cursors.
    static void ReleaseAll(Cursor* chain) noexcept {
        while (chain != nullptr) {
            GCursorChain& released = *chain;
            chain = released.mNext;
            released.mNext = nullptr;
            released.mChain = nullptr;
            released.mOwner = nullptr;
        }
    }

    /// Two containers have changed places; their cursors go along.
    static void SwapChains(const void* ownerA, Cursor*& chainA, const void* ownerB,
                           Cursor*& chainB) noexcept {
        std::swap(chainA, chainB);
        Adopt(ownerA, chainA);
        Adopt(ownerB, chainB);
    }

private:
    static Cursor* Next(GCursorChain* cursor) noexcept { return cursor->mNext; }

    static void Adopt(const void* owner, Cursor*& chain) noexcept {
        ForEach(chain, [&](GCursorChain& cursor) {
            cursor.mOwner = owner;
            cursor.mChain = &chain;
        });
    }

    void Attach(const void* owner, Cursor*& chain) noexcept {
        mOwner = owner;
        mChain = &chain;
        mNext = chain;
        chain = static_cast<Cursor*>(this);
    }

    void Detach() noexcept {
        if (mChain == nullptr) return;
        Cursor** link = mChain;
        while (*link != this) link = &static_cast<GCursorChain*>(*link)->mNext;
        *link = mNext;
        mNext = nullptr;
        mChain = nullptr;
        mOwner = nullptr;
    }

    Cursor* mNext = nullptr;
    Cursor** mChain = nullptr;  // the head in the container; null when the container is gone
    const void* mOwner = nullptr;
};
