#include "platform/posix/ipc/PMemoryIPEventImp.h"

#include <chrono>
#include <condition_variable>
#include <map>
#include <mutex>
#include <string>
#include <utility>

struct PMemoryIPEventImp::Shared {
    bool mSet = false;
};

namespace {

// One of each for all events: few are ever waited for.
std::mutex sGuard;
std::condition_variable sChanged;

}  // namespace

PMemoryIPEventImp::PMemoryIPEventImp(const GBuffer& identifier, Use use) {
    static std::map<std::string, std::weak_ptr<Shared>> sEvents;
    const std::lock_guard<std::mutex> lock(sGuard);
    std::weak_ptr<Shared>& known = sEvents[std::string(identifier.GetPtr(), identifier.GetLength())];
    mShared = known.lock();
    if (!mShared && use == Use::cOpenOrCreate) known = mShared = std::make_shared<Shared>();
}

PMemoryIPEventImp::PMemoryIPEventImp(PMemoryIPEventImp&& other) noexcept = default;

PMemoryIPEventImp::~PMemoryIPEventImp() = default;

void PMemoryIPEventImp::Set() noexcept {
    const std::lock_guard<std::mutex> lock(sGuard);
    if (!mShared) return;
    mShared->mSet = true;
    sChanged.notify_all();
}

bool PMemoryIPEventImp::Take(PMemoryIPEventImp* event) noexcept {
    return event != nullptr && event->mShared && std::exchange(event->mShared->mSet, false);
}

bool PMemoryIPEventImp::WaitForEither(PMemoryIPEventImp* one, PMemoryIPEventImp* other,
                                      long milliseconds) noexcept {
    std::unique_lock<std::mutex> lock(sGuard);
    return sChanged.wait_for(lock, std::chrono::milliseconds(milliseconds),
                             [&] { return Take(one) || Take(other); });
}
