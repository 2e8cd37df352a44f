#include "platform/posix/ipc/PMemoryIPMutexImp.h"

#include <atomic>
#include <chrono>
#include <condition_variable>
#include <map>
#include <mutex>
#include <string>
#include <thread>

#include "framework/core/errors/GException.h"
#include "framework/core/errors/GExceptionID.h"
#include "framework/core/text/GString.h"

struct PMemoryIPMutexImp::Shared {
    std::mutex mGuard;
    std::condition_variable mFreed;
    std::thread::id mHolder;
    long mDepth = 0;
};

namespace {

std::atomic<long> sWaits{0};
std::atomic<long> sReleases{0};

}  // namespace

PMemoryIPMutexImp::PMemoryIPMutexImp(const GBuffer& identifier) {
    static std::mutex sGuard;
    static std::map<std::string, std::weak_ptr<Shared>> sMutexes;
    const std::lock_guard<std::mutex> lock(sGuard);
    std::weak_ptr<Shared>& known = sMutexes[std::string(identifier.GetPtr(), identifier.GetLength())];
    mShared = known.lock();
    if (!mShared) known = mShared = std::make_shared<Shared>();
}

PMemoryIPMutexImp::~PMemoryIPMutexImp() = default;

void PMemoryIPMutexImp::Lock() {
    ++sWaits;
    std::unique_lock<std::mutex> lock(mShared->mGuard);
    const auto self = std::this_thread::get_id();
    mShared->mFreed.wait(lock, [&] { return mShared->mDepth == 0 || mShared->mHolder == self; });
    mShared->mHolder = self;
    ++mShared->mDepth;
}

bool PMemoryIPMutexImp::TryToLock(double seconds) {
    ++sWaits;
    std::unique_lock<std::mutex> lock(mShared->mGuard);
    const auto self = std::this_thread::get_id();
    const bool locked = mShared->mFreed.wait_for(lock, std::chrono::duration<double>(seconds), [&] {
        return mShared->mDepth == 0 || mShared->mHolder == self;
    });
    if (!locked) return false;
    mShared->mHolder = self;
    ++mShared->mDepth;
    return true;
}

void PMemoryIPMutexImp::Unlock() {
    ++sReleases;
    const std::lock_guard<std::mutex> lock(mShared->mGuard);
    if (mShared->mDepth == 0 || mShared->mHolder != std::this_thread::get_id())
        throw GCustomException(GExceptionID::cGeneral, GString("The mutex is not held by this thread"));
    if (--mShared->mDepth == 0) mShared->mFreed.notify_all();
}

void PMemoryIPMutexImp::Close() noexcept {
    mShared.reset();
}

long PMemoryIPMutexImp::GetMaxIDSize() {
    return 253;
}

long PMemoryIPMutexImp::GetWaitCount() {
    return sWaits;
}

long PMemoryIPMutexImp::GetReleaseCount() {
    return sReleases;
}
