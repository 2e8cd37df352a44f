// A processing application for tests: its program is called PrinterProcessorWin.exe, and it does what it is
// told to.
//
//     PrinterProcessorWin.exe <mode> <event prefix> <output file>
//
// It sets the event "<prefix>ready" once it listens, writes the job path of every message it gets as a line
// of UTF-8, and waits for the event "<prefix>go". Modes:
//     listen   takes messages until "go", then once more, and ends
//     stall    takes no message before "go", then those that wait, and ends
//     full     fills its own queue, empties it at "go", sets "<prefix>drained", and takes messages until
//              "<prefix>end"
//     die      ends without any clean-up at "go"

#include <string>

#include "framework/GBasicFrameworkCoreLayer.h"
#include "framework/core/GBasicSignals.h"
#include "framework/core/GException.h"
#include "framework/core/GUTF8Encoding.h"
#include "framework/ipc/GIPCReceiver.h"
#include "framework/system/GProcessInfo.h"
#include "monitor/GPPIPCManager.h"
#include "monitor/GPPJobRecord.h"
#include "platform/win32/PWin32Api.h"

namespace {

constexpr long cFillerType = 146;
constexpr long cLargestPayload = 32740;
constexpr DWORD cTick = 20;  // milliseconds

class LineFile {
public:
    explicit LineFile(const wchar_t* path)
        : mFile(::CreateFileW(path, GENERIC_WRITE, FILE_SHARE_READ, nullptr, CREATE_ALWAYS, 0, nullptr)) {}
    void Write(GBuffer line) {
        line += '\n';
        DWORD count = 0;
        ::WriteFile(mFile, line.GetRawData(), static_cast<DWORD>(line.GetLength()), &count, nullptr);
    }

private:
    HANDLE mFile;
};

class JobReceiver final : public GIPCReceiver {
public:
    explicit JobReceiver(LineFile& file) : GIPCReceiver(GPPIPCManager::GetInstance()), mFile(file) {
        Register(GPPJobRecord::cMessageType);
    }
    void HandleIPCMessage(const GIPCMessage& message) override {
        GPPJobRecord record;
        const bool good = record.SetFromMessageData(message.GetData());
        mFile.Write(good ? record.GetJobPath().GetBuffer(GUTF8Encoding::GetInstance()) : GBuffer("(bad)"));
    }

private:
    LineFile& mFile;
};

class Events {
public:
    explicit Events(std::wstring prefix) : mPrefix(std::move(prefix)) {}
    HANDLE Get(const wchar_t* name) const {
        return ::CreateEventW(nullptr, TRUE, FALSE, (mPrefix + name).c_str());
    }

private:
    std::wstring mPrefix;
};

void FillOwnQueue() {
    GBuffer filler;
    while (filler.GetLength() < cLargestPayload) filler += 'x';
    GPPIPCManager::GetInstance()->SendRaw(GProcessInfo::GetInstance()->GetCurrentProcessID(), cFillerType,
                                          filler);
}

void TickUntil(HANDLE event) {
    while (::WaitForSingleObject(event, cTick) == WAIT_TIMEOUT) GBasicSignals::DevoteTimeToRepeaters();
}

void Run(const std::wstring& mode, const Events& events, LineFile& file) {
    const JobReceiver receiver(file);
    if (mode == L"full") FillOwnQueue();
    const HANDLE go = events.Get(L"go");
    ::SetEvent(events.Get(L"ready"));
    if (mode == L"listen") {
        TickUntil(go);
    } else {
        ::WaitForSingleObject(go, INFINITE);
    }
    if (mode == L"die") ::TerminateProcess(::GetCurrentProcess(), 9);
    if (mode == L"full") {
        GBasicSignals::DevoteTimeToRepeaters();
        ::SetEvent(events.Get(L"drained"));
        TickUntil(events.Get(L"end"));
    }
    GBasicSignals::DevoteTimeToRepeaters();
}

}  // namespace

int wmain(int argc, wchar_t** argv) {
    if (argc != 4) return 2;
    try {
        LineFile file(argv[3]);
        GBasicFrameworkCoreLayer::Initialize();
        GPPIPCManager::AddReference();
        Run(argv[1], Events(argv[2]), file);
        GPPIPCManager::ReleaseReference();
        GBasicFrameworkCoreLayer::Finalize();
        return 0;
    } catch (const GException&) {
        return 1;
    }
}
