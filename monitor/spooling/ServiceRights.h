#pragma once

#include "framework/core/errors/GException.h"
#include "monitor/spooling/MonitorPlatform.h"

/// The thread could not take the rights of the service, or not go back to those of the job's user: it must
/// do no more for this job.
class ServiceRightsException : public GException {
public:
    ServiceRightsException() = default;
};

/// Runs `action` with the rights of the service itself, and goes back to the rights that the thread had, also
/// when it throws. Throws ServiceRightsException when one of the changes fails, whatever the action has
/// thrown.
template <class Action>
void RunAsService(MonitorPlatform& platform, Action&& action) {
    const auto require = [&platform](bool done, const wchar_t* word) {
        if (done) return;
        platform.Trace(word);
        throw ServiceRightsException();
    };
    void* token = nullptr;
    const auto goBack = [&] {
        require(platform.PutTokenBack(token), L"The rights of the job's user cannot be given back!");
    };
    require(platform.PutTokenAside(token), L"The rights of the service cannot be taken!");
    try {
        action();
    } catch (...) {
        goBack();
        throw;
    }
    goBack();
}
