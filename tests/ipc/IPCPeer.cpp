// Another process for the tests of messages between processes. Its first argument says what it does.
#include <cstdlib>
#include <string>

#include "framework/core/errors/GException.h"
#include "framework/ipc/GIPCMessageQueue.h"
#include "framework/ipc/GIPMutex.h"
#include "platform/win32/base/PWin32Api.h"

namespace {

/// Ends while it holds the mutex of an identifier.
void DieHolding(const char* identifier) {
    GIPMutex mutex(GShMemID(identifier), GIPPrefix::cSharedMemoryLock);
    mutex.Lock();
    ::TerminateProcess(::GetCurrentProcess(), 7);
}

/// Appends `count` numbered messages of all sizes to a queue of the global name space.
void Write(long processID, long registrationID, long count) {
    GIPCMessageQueue queue(-1, processID, registrationID);
    for (long number = 0; number < count; ++number) {
        const std::string text = std::to_string(number) + ":" + std::string(number % 977, '.');
        while (!queue.TryToAddRawMessage(145, text.c_str())) ::Sleep(1);
    }
}

}  // namespace

int main(int argc, char** argv) {
    const auto number = [&](int index) { return index < argc ? std::atol(argv[index]) : 0; };
    const std::string what = argc > 1 ? argv[1] : "";
    GShMemID::Initialize();
    try {
        if (what == "die-holding") DieHolding(argv[2]);
        if (what == "write") Write(number(2), number(3), number(4));
    } catch (const GException& exception) {
        return static_cast<int>(exception.GetExceptionID() % 100);
    }
    GShMemID::Finalize();
    return 0;
}
