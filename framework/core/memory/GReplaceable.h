#pragma once

#include <atomic>

/// GReplaceable: the holder behind the GetInstance and SetInstance of a class.
///
/// It owns one instance: one with AddRef and Release by a reference, any other alone. Without constructor
/// code and destructor it works before and after all static objects; the framework's end takes the instance
/// back by Set(nullptr).
///
/// Threads: the first ones to ask may each make an instance; one of them is kept. Replacing ends the old
/// instance (a counted one lives on while others refer to it): replace only while no other thread uses the
/// plain pointer.
template <class T>
class GReplaceable {
public:
    constexpr GReplaceable() noexcept = default;
    GReplaceable(const GReplaceable&) = delete;
    GReplaceable& operator=(const GReplaceable&) = delete;

    /// The instance. When there is none, `make` creates it with `new`; what `make` throws passes through.
    template <class Maker>
    T* Get(Maker make) {
        T* const present = mInstance.load(std::memory_order_acquire);
        return present != nullptr ? present : Create(make);
    }

    /// Takes over `instance` and ends the one before. Null: the next Get makes a new one. The instance that
    /// is there already stays.
    void Set(T* instance) {
        if (instance == mInstance.load(std::memory_order_acquire)) return;
        Take(instance);
        Drop(mInstance.exchange(instance, std::memory_order_acq_rel));
    }

private:
    // A function and not a constant: T is still incomplete where the holder is declared.
    static constexpr bool IsCounted() {
        return requires(T & instance) {
            instance.AddRef(), instance.Release();
        };
    }

    template <class Maker>
    T* Create(Maker make) {
        T* const created = make();
        Take(created);
        T* winner = nullptr;
        if (mInstance.compare_exchange_strong(winner, created, std::memory_order_acq_rel)) return created;
        Drop(created);
        return winner;
    }

    static void Take(T* instance) {
        if constexpr (IsCounted()) {
            if (instance != nullptr) instance->AddRef();
        }
    }
    static void Drop(T* instance) {
        if constexpr (!IsCounted()) {
            delete instance;
        } else if (instance != nullptr) {
            instance->Release();
        }
    }

    std::atomic<T*> mInstance = nullptr;
};
