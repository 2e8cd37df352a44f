#pragma once

#include <atomic>

/// GEncodingSingleton: the holder behind an encoding's GetInstance and SetInstance.
///
/// It has no constructor code and no destructor, so that it works before and after all static
/// objects. It owns one reference to the instance. The first threads to ask may each make an
/// instance; one of them is kept. Replacing releases the old instance, which strings that use it
/// keep alive: replace only while no other thread works with the plain pointer.
template <class Encoding>
class GEncodingSingleton {
public:
    constexpr GEncodingSingleton() noexcept = default;
    GEncodingSingleton(const GEncodingSingleton&) = delete;
    GEncodingSingleton& operator=(const GEncodingSingleton&) = delete;

    template <class Maker>
    Encoding* Get(Maker make) {
        Encoding* present = mInstance.load(std::memory_order_acquire);
        return present != nullptr ? present : Create(make);
    }

    void Set(Encoding* instance) {
        if (instance != nullptr) instance->AddRef();
        Encoding* old = mInstance.exchange(instance, std::memory_order_acq_rel);
        if (old != nullptr) old->Release();
    }

private:
    template <class Maker>
    Encoding* Create(Maker make) {
        Encoding* created = make();
        created->AddRef();
        Encoding* winner = nullptr;
        if (mInstance.compare_exchange_strong(winner, created, std::memory_order_acq_rel)) return created;
        created->Release();
        return winner;
    }

    std::atomic<Encoding*> mInstance = nullptr;
};
