// What posting and draining a message costs beyond taking the queue's mutex and copying the bytes.
#include <cstdio>
#include <cstring>
#include <vector>

#include "bench/Comparison.h"
#include "framework/GFrameworkScope.h"
#include "framework/ipc/GIPCMessageQueue.h"
#include "platform/win32/base/PWin32Api.h"
#include "platform/win32/base/PWin32ScopedHandle.h"

namespace {

constexpr int cMessages = 200;
constexpr long cMessageType = 145;
constexpr long cRegistrationID = 1;

class PlainMutex {
public:
    PlainMutex() : mHandle(::CreateMutexW(nullptr, FALSE, L"Global\\MessageBench")) {}

    void Copy(void* to, const void* from, std::size_t count) const {
        ::WaitForSingleObject(mHandle.Get(), INFINITE);
        std::memcpy(to, from, count);
        ::ReleaseMutex(mHandle.Get());
    }

private:
    PWin32ScopedHandle<PWin32KernelHandle> mHandle;
};

bool PostAndDrain(GIPCMessageQueue& queue, const GBuffer& data) {
    GTable<GSmartPtr<GIPCMessage>> messages;
    const bool posted = queue.TryToAddRawMessage(cMessageType, data);
    queue.ReadPendingMessages(messages);
    return posted && messages.GetCount() == 1;
}

/// False when a message was lost, which would make the figures worthless.
bool Compare(GIPCMessageQueue& queue, std::size_t size) {
    const std::vector<unsigned char> bytes(size, 'x');
    std::vector<char> shared(size);
    std::vector<char> taken(size);
    const GBuffer data(bytes.data(), static_cast<long>(size));
    const PlainMutex mutex;
    bool good = true;
    Comparison::Run({.what = "post and drain a message",
                     .size = static_cast<long>(size),
                     .count = cMessages,
                     .unit = "us"},
                    [&] {
                        for (int i = 0; i < cMessages; ++i) good = PostAndDrain(queue, data) && good;
                    },
                    {{"two waits and copies", {1.05, 1.15}, [&] {
                          for (int i = 0; i < cMessages; ++i) {
                              mutex.Copy(shared.data(), bytes.data(), size);
                              mutex.Copy(taken.data(), shared.data(), size);
                          }
                      }}});
    return good;
}

}  // namespace

int main() {
    const GFrameworkScope framework;
    bool created = false;
    GIPCMessageQueue queue(-1, static_cast<long>(::GetCurrentProcessId()), cRegistrationID, created);
    bool good = true;
    for (const std::size_t size : {16, 64, 256, 1024, 4096, 16384, 32000})
        good = Compare(queue, size) && good;
    if (!good) std::fputs("MessageBench: a message was lost\n", stderr);
    return good ? 0 : 1;
}
