// MessagingVandal: spoils the shared memory of the messaging, as any local process can.
//
//     PrinterProcessorWin.exe <seconds> <seed>
//
// Named so, the monitor takes it for a processing application. For so many seconds it writes numbers, mostly
// likely ones, to registries and queues at random, its own and others', and holds their locks now and then.
// Then it says "resting", and keeps everything open as it is until its input ends.
#include <array>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <cwchar>
#include <functional>
#include <map>
#include <random>
#include <string>

#include "platform/win32/base/PWin32Api.h"
#include "platform/win32/base/PWin32ScopedHandle.h"
#include "tests/ipc/RawSegment.h"

namespace {

constexpr long cRegistryBytes = 8208;
constexpr long cQueueBytes = 32772;

/// A segment and its lock, made when they are missing. Both stay open for good.
class Target {
public:
    Target(const std::string& path, const std::string& identifier, long size)
        : mLock(::CreateMutexA(nullptr, FALSE, ("Global\\QulShL" + identifier).c_str())),
          mSegment(RawSegment::Make(path, "QulShD" + identifier, size)) {}

    void Write(long index, long word) {
        if (Has(index)) mSegment->SetWord(4 * index, static_cast<std::uint32_t>(word));
    }
    long Read(long index) const {
        return Has(index) ? static_cast<std::int32_t>(mSegment->GetWord(4 * index)) : 0;
    }
    void Hold(DWORD milliseconds) {
        if (::WaitForSingleObject(mLock.Get(), 1000) == WAIT_TIMEOUT) return;
        ::Sleep(milliseconds);
        ::ReleaseMutex(mLock.Get());
    }

private:
    bool Has(long index) const { return mSegment && index >= 0 && index < mSegment->GetSize() / 4; }

    PWin32ScopedHandle<PWin32KernelHandle> mLock;
    std::unique_ptr<RawSegment> mSegment;
};

class Vandal {
public:
    explicit Vandal(unsigned seed) : mRandom(seed), mPaths{GetSessionPath(), "Global\\"} {}

    void Act() {
        const std::string& path = mPaths[Below(2)];
        const std::function<void()> actions[] = {
            [&] { Spoil(Registry(path), cRegistryBytes); },
            [&] { Mend(Registry(path), 3, 12); },
            [&] { Enter(Registry(path), Below(4) == 0 ? 1024 : Below(8)); },
            [&] { Enter(Registry(path), Below(8)); },
            [&] { Spoil(OwnQueue(path), cQueueBytes); },
            [&] { Mend(OwnQueue(path), 2, 8); },
            [&] { Fill(OwnQueue(path)); },
            [&] { SpoilSomebodys(path); },
            [&] { SpoilSomebodys(path); },
            [&] { Registry(path).Hold(Below(20) == 0 ? 6000 : Below(200)); },
            [&] { OwnQueue(path).Hold(Below(20) == 0 ? 6000 : Below(200)); },
            [&] { ::Sleep(Below(50)); }};
        actions[Below(static_cast<long>(std::size(actions)))]();
    }

    /// A registry of another version is refused by design, so what is left behind bears the known one.
    void LeaveVersions() {
        for (const std::string& path : mPaths) Registry(path).Write(1, 1);
    }

private:
    static std::string GetSessionPath() {
        DWORD session = 0;
        ::ProcessIdToSessionId(::GetCurrentProcessId(), &session);
        return std::string("Session\\").append(std::to_string(session)).append("\\");
    }
    long Below(long limit) { return std::uniform_int_distribution<long>(0, limit - 1)(mRandom); }

    Target& Get(const std::string& path, const std::string& identifier, long size) {
        return mTargets.try_emplace(path + identifier, path, identifier, size).first->second;
    }
    Target& Registry(const std::string& path) { return Get(path, "GIPC_PP", cRegistryBytes); }
    Target& Queue(const std::string& path, long processID, long registrationID) {
        return Get(path, "P" + std::to_string(processID).append("MQ").append(std::to_string(registrationID)),
                   cQueueBytes);
    }
    Target& OwnQueue(const std::string& path) { return Queue(path, GetOwnID(), Below(4)); }
    static long GetOwnID() { return static_cast<long>(::GetCurrentProcessId()); }

    /// A number that some reader may take for good.
    long Word() {
        const std::array<long, 16> likely = {0,    1,    -1,    -5,    4,     8,     12,        20,
                                             8204, 8208, 32768, 32772, 40000, 99999, INT32_MAX, INT32_MIN};
        const long choice = Below(18);
        if (choice == 17) return static_cast<long>(mRandom());
        return choice == 16 ? GetOwnID() : likely[static_cast<std::size_t>(choice)];
    }
    void Spoil(Target& target, long bytes) {
        for (long count = 1 + Below(4); count > 0; --count)
            target.Write(Below(2) == 0 ? Below(6) : Below(bytes / 4), Word());
    }
    void Mend(Target& target, long endIndex, long end) {
        target.Write(0, endIndex == 3 ? cRegistryBytes : cQueueBytes);
        target.Write(1, 1);
        target.Write(endIndex, end);
    }
    /// A sound registry of so many entries: of itself, of nobody, and of whatever stood there before.
    void Enter(Target& registry, long count) {
        Mend(registry, 3, 12 + 8 * count);
        for (long entry = 0; entry < count; ++entry) {
            if (Below(3) == 0) continue;
            registry.Write(4 + 2 * entry, Below(8) == 0 ? Word() : GetOwnID());
            registry.Write(5 + 2 * entry, Below(8) == 0 ? Word() : Below(4));
        }
    }
    /// A sound queue that is never drained, with little room or none.
    void Fill(Target& queue) {
        const long payload = cQueueBytes - 4 - 8 - 20 - Below(400);
        Mend(queue, 2, 8 + 20 + payload);
        const long record[] = {1, payload + 12, GetOwnID(), 145, payload};
        for (long i = 0; i < 5; ++i) queue.Write(3 + i, record[i]);
    }
    void SpoilSomebodys(const std::string& path) {
        const Target& registry = Registry(path);
        const long entry = Below(8);
        const long processID = registry.Read(4 + 2 * entry);
        const long registrationID = registry.Read(5 + 2 * entry);
        // Queues that nobody has would be made and kept; a few do.
        if (mTargets.size() < 200) Spoil(Queue(path, processID, registrationID), cQueueBytes);
    }

    std::mt19937 mRandom;
    std::array<std::string, 2> mPaths;
    std::map<std::string, Target> mTargets;
};

void Say(const char* text) {
    std::puts(text);
    std::fflush(stdout);
}

}  // namespace

int wmain(int argc, wchar_t** argv) {
    if (argc != 3) {
        std::fputs("usage: PrinterProcessorWin <seconds> <seed>\n", stderr);
        return 2;
    }
    Vandal vandal(static_cast<unsigned>(std::wcstoul(argv[2], nullptr, 10)));
    const auto end =
        std::chrono::steady_clock::now() + std::chrono::seconds(std::wcstol(argv[1], nullptr, 10));
    Say("spoiling");
    while (std::chrono::steady_clock::now() < end) vandal.Act();
    vandal.LeaveVersions();
    Say("resting");
    while (std::getchar() != EOF) continue;
    return 0;
}
