#include "platform/posix/base/PPosixCriticalSection.h"

#include <cstdlib>

PPosixCriticalSection::PPosixCriticalSection() noexcept {
    pthread_mutexattr_t attributes;
    pthread_mutexattr_init(&attributes);
    pthread_mutexattr_settype(&attributes, PTHREAD_MUTEX_RECURSIVE);
    const int result = pthread_mutex_init(&mMutex, &attributes);
    pthread_mutexattr_destroy(&attributes);
    if (result != 0) std::abort();
}

PPosixCriticalSection::~PPosixCriticalSection() {
    pthread_mutex_destroy(&mMutex);
}

void PPosixCriticalSection::Lock() noexcept {
    pthread_mutex_lock(&mMutex);
}

bool PPosixCriticalSection::TryToLock() noexcept {
    return pthread_mutex_trylock(&mMutex) == 0;
}

void PPosixCriticalSection::Unlock() noexcept {
    pthread_mutex_unlock(&mMutex);
}
