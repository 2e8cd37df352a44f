// What posting and draining a message costs beyond taking the queue's mutex and copying the bytes.
#include <cstdio>
#include <cstring>
#include <vector>

#include "bench/Rounds.h"
#include "framework/GFrameworkScope.h"
#include "framework/ipc/GIPCMessageQueue.h"
#include "platform/win32/base/PWin32Api.h"
#include "platform/win32/base/PWin32ScopedHandle.h"

namespace {

constexpr int cRounds = 31;
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
    const std::vector<double> times = Rounds(cRounds, cMessages)
                                          .Measure({{"queue",
                                                     [&] {
                                                         for (int i = 0; i < cMessages; ++i)
                                                             good = PostAndDrain(queue, data) && good;
                                                     }},
                                                    {"mutex", [&] {
                                                         for (int i = 0; i < cMessages; ++i) {
                                                             mutex.Copy(shared.data(), bytes.data(), size);
                                                             mutex.Copy(taken.data(), shared.data(), size);
                                                         }
                                                     }}});
    std::printf("%6u bytes: post and drain %8.2f us, two waits, copies and releases %8.2f us, ratio %5.3f\n",
                static_cast<unsigned>(size), times[0], times[1], times[0] / times[1]);
    return good;
}

}  // namespace

int main() {
    const GFrameworkScope framework;
    bool created = false;
    GIPCMessageQueue queue(-1, static_cast<long>(::GetCurrentProcessId()), cRegistrationID, created);
    const bool good = Compare(queue, 256) && Compare(queue, 16384);
    if (!good) std::fputs("MessageBench: a message was lost\n", stderr);
    return good ? 0 : 1;
}
