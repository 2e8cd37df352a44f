#include "framework/ipc/GIPCClock.h"

#include <chrono>

#include "framework/system/PSystem.h"

namespace {

GIPCClock::NowFunction sNow = nullptr;
GIPCClock::SleepFunction sSleep = nullptr;

}  // namespace

unsigned long long GIPCClock::GetNow() {
    using namespace std::chrono;
    if (sNow != nullptr) return sNow();
    return static_cast<unsigned long long>(
        duration_cast<milliseconds>(steady_clock::now().time_since_epoch()).count());
}

void GIPCClock::Sleep(long milliseconds) {
    if (sSleep != nullptr) {
        sSleep(milliseconds);
    } else {
        PSystem::MilliSleep(milliseconds);
    }
}

void GIPCClock::Replace(NowFunction now, SleepFunction sleep) noexcept {
    sNow = now;
    sSleep = sleep;
}
