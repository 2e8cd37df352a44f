// The C interface. Nothing that is thrown passes it, and nothing of it is trusted.
#include <algorithm>
#include <new>
#include <optional>
#include <string>
#include <string_view>

#include "platform/win32/base/PWin32Api.h"
#include "receiver/JobFileName.h"
#include "receiver/library/HandleTable.h"
#include "receiver/library/JobReceiver.h"
#include "receiver/library/quillon_receiver.h"
#include "tools/console/Console.h"

namespace {

struct Library {
    std::mutex opening;  // held while a receiver starts or ends
    HandleTable<JobReceiver> receivers;
    HandleTable<const ReceivedJob> jobs;
};

// Never destroyed: at the end of the process other threads have been stopped wherever they were.
Library& GetLibrary() {
    static Library& sLibrary = *new Library;
    return sLibrary;
}

template <class Body>
std::int32_t Answer(Body&& body) noexcept {
    try {
        return body();
    } catch (const std::bad_alloc&) {
        return QUILLON_NO_MEMORY;
    } catch (...) {
        return QUILLON_FAILED;
    }
}

template <class Body>
std::int32_t WithReceiver(quillon_receiver handle, Body&& body) noexcept {
    return Answer([&]() -> std::int32_t {
        const std::shared_ptr<JobReceiver> receiver = GetLibrary().receivers.Find(handle);
        return receiver ? body(*receiver) : QUILLON_BAD_HANDLE;
    });
}

template <class Body>
std::int32_t WithJob(quillon_job handle, Body&& body) noexcept {
    return Answer([&]() -> std::int32_t {
        const std::shared_ptr<const ReceivedJob> job = GetLibrary().jobs.Find(handle);
        return job ? body(*job) : QUILLON_BAD_HANDLE;
    });
}

/// A handle made beforehand: once a job was handed out, nothing may fail any more.
class ReservedJob {
public:
    explicit ReservedJob(HandleTable<const ReceivedJob>& jobs)
        : mJobs(jobs), mJob(std::make_shared<ReceivedJob>()), mHandle(jobs.Add(mJob)) {}
    ReservedJob(const ReservedJob&) = delete;
    ReservedJob& operator=(const ReservedJob&) = delete;
    ~ReservedJob() {
        if (mJob->file.path.empty()) mJobs.Remove(mHandle);
    }
    std::uint64_t Fill(ReceivedJob job) const noexcept {
        *mJob = std::move(job);
        return mHandle;
    }

private:
    HandleTable<const ReceivedJob>& mJobs;
    std::shared_ptr<ReceivedJob> mJob;
    std::uint64_t mHandle;
};

std::int32_t AsResult(JobReceiver::Start start) {
    switch (start) {
        case JobReceiver::Start::cDone:
            return QUILLON_OK;
        case JobReceiver::Start::cWrongName:
            return QUILLON_WRONG_NAME;
        case JobReceiver::Start::cNoJobFolder:
            return QUILLON_NO_JOB_FOLDER;
        case JobReceiver::Start::cNoMemory:
            return QUILLON_NO_MEMORY;
        case JobReceiver::Start::cFailed:
            break;
    }
    return QUILLON_FAILED;
}

// The thread of a receiver runs this module's code, so nobody may unload it.
bool StayLoaded() {
    HMODULE module = nullptr;
    return ::GetModuleHandleExW(GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS | GET_MODULE_HANDLE_EX_FLAG_PIN,
                                reinterpret_cast<LPCWSTR>(&GetLibrary), &module);
}

std::optional<std::wstring> GetText(const ReceivedJob& job, std::int32_t field) {
    switch (field) {
        case QUILLON_PATH:
            return job.file.path;
        case QUILLON_ANNOUNCED_PATH:
            return job.announcedPath;
        case QUILLON_NAME:
            return JobFileName::GetTitle(job.file.path);
        case QUILLON_TITLE:
            return job.file.title;
        case QUILLON_USER:
            return job.user;
        case QUILLON_PRINTER:
            return job.printer;
        case QUILLON_PORT:
            return job.port;
        case QUILLON_DOUBT:
            return job.file.problem;
        default:
            return std::nullopt;
    }
}

std::optional<std::int64_t> GetNumber(const ReceivedJob& job, std::int32_t field) {
    switch (field) {
        case QUILLON_BYTES:
            return static_cast<std::int64_t>(job.file.bytes.value_or(0));
        case QUILLON_COPIES:
            return job.copies;
        case QUILLON_PAGES:
            return job.file.pages.value_or(-1);
        case QUILLON_COMPLETE:
            return job.file.isComplete ? 1 : 0;
        default:
            return std::nullopt;
    }
}

/// Where a text is to go.
template <class Unit>
struct Room {
    Unit* text;
    std::uint32_t size;
    std::uint32_t* length;

    bool MakesSense() const { return text != nullptr ? size > 0 : size == 0 && length != nullptr; }
    template <class Given>
    std::int32_t Put(std::basic_string_view<Given> given) const {
        static_assert(sizeof(Given) == sizeof(Unit));
        if (length != nullptr) *length = static_cast<std::uint32_t>(given.size());
        if (text == nullptr) return QUILLON_OK;
        if (given.size() >= size) return QUILLON_TOO_SMALL;
        *std::ranges::copy(given, text).out = 0;
        return QUILLON_OK;
    }
};

template <class Unit, class Convert>
std::int32_t GiveText(quillon_job handle, std::int32_t field, const Room<Unit>& room, Convert convert) {
    return WithJob(handle, [&](const ReceivedJob& job) -> std::int32_t {
        const std::optional<std::wstring> text = GetText(job, field);
        return text && room.MakesSense() ? room.Put(convert(*text)) : QUILLON_BAD_ARGUMENT;
    });
}

}  // namespace

std::uint32_t quillon_version() {
    return QUILLON_RECEIVER_VERSION;
}

const char* quillon_error_text(std::int32_t result) {
    static constexpr const char* cTexts[] = {
        "Done.",
        "There was nothing in that time.",
        "The text does not fit into the room that was given.",
        "An argument is wrong: a null pointer, a size without room, an unknown option or field.",
        "The handle is none of an open receiver or job.",
        "This process has a receiver already.",
        "The program is not called PrinterProcessorWin.exe, so the monitor would tell it nothing.",
        "The machine's environment names no temporary folder (TMP or TEMP), where job files would lie.",
        "Memory ran out.",
        "The system refused what was needed.",
    };
    static_assert(std::size(cTexts) == std::size_t{QUILLON_FAILED} + 1);
    const bool isKnown = result >= 0 && static_cast<std::size_t>(result) < std::size(cTexts);
    return isKnown ? cTexts[result] : "This number is no result.";
}

std::int32_t quillon_open(std::uint32_t options, quillon_receiver* receiver) {
    if (receiver == nullptr) return QUILLON_BAD_ARGUMENT;
    *receiver = 0;
    constexpr std::uint32_t cKnown = QUILLON_PENDING | QUILLON_ANYWHERE;
    if ((options & ~cKnown) != 0) return QUILLON_BAD_ARGUMENT;
    return Answer([&]() -> std::int32_t {
        Library& library = GetLibrary();
        const std::lock_guard opening(library.opening);
        if (!library.receivers.IsEmpty()) return QUILLON_ALREADY_OPEN;
        if (!StayLoaded()) return QUILLON_FAILED;
        const JobReceiver::Options wishes{(options & QUILLON_PENDING) != 0,
                                          (options & QUILLON_ANYWHERE) != 0};
        auto made = std::make_shared<JobReceiver>(wishes);
        const std::int32_t result = AsResult(made->WaitForStart());
        if (result == QUILLON_OK) *receiver = library.receivers.Add(std::move(made));
        return result;
    });
}

std::int32_t quillon_close(quillon_receiver receiver) {
    return Answer([&]() -> std::int32_t {
        Library& library = GetLibrary();
        const std::lock_guard opening(library.opening);
        const std::shared_ptr<JobReceiver> closed = library.receivers.Remove(receiver);
        if (!closed) return QUILLON_BAD_HANDLE;
        closed->Stop();
        return QUILLON_OK;
    });
}

std::int32_t quillon_wait(quillon_receiver receiver, std::uint32_t milliseconds, quillon_job* job) {
    if (job == nullptr) return QUILLON_BAD_ARGUMENT;
    *job = 0;
    return WithReceiver(receiver, [&](JobReceiver& open) -> std::int32_t {
        const ReservedJob reserved(GetLibrary().jobs);
        std::optional<ReceivedJob> next = open.Wait(milliseconds);
        if (!next) return open.IsStopped() ? QUILLON_BAD_HANDLE : QUILLON_NOTHING;
        *job = reserved.Fill(std::move(*next));
        return QUILLON_OK;
    });
}

std::int32_t quillon_get_event(quillon_receiver receiver, std::intptr_t* event) {
    if (event == nullptr) return QUILLON_BAD_ARGUMENT;
    *event = 0;
    return WithReceiver(receiver, [&](const JobReceiver& open) -> std::int32_t {
        *event = reinterpret_cast<std::intptr_t>(open.GetEvent());
        return QUILLON_OK;
    });
}

std::int32_t quillon_is_listening(quillon_receiver receiver, std::int32_t* listening) {
    if (listening == nullptr) return QUILLON_BAD_ARGUMENT;
    *listening = 0;
    return WithReceiver(receiver, [&](const JobReceiver& open) -> std::int32_t {
        *listening = open.IsListening() ? 1 : 0;
        return QUILLON_OK;
    });
}

std::int32_t quillon_next_problem_utf8(quillon_receiver receiver, char* text, std::uint32_t size,
                                       std::uint32_t* length) {
    return WithReceiver(receiver, [&](JobReceiver& open) -> std::int32_t {
        const Room<char> room{text, size, length};
        if (!room.MakesSense()) return QUILLON_BAD_ARGUMENT;
        std::int32_t result = QUILLON_NOTHING;
        open.TakeProblem([&](const std::wstring& line) {
            result = room.Put(std::string_view(ToUTF8(line)));
            return result == QUILLON_OK && text != nullptr;
        });
        return result;
    });
}

std::int32_t quillon_job_utf8(quillon_job job, std::int32_t field, char* text, std::uint32_t size,
                              std::uint32_t* length) {
    const auto convert = [converted = std::string()](const std::wstring& given) mutable {
        converted = ToUTF8(given);
        return std::string_view(converted);
    };
    return GiveText(job, field, Room<char>{text, size, length}, convert);
}

std::int32_t quillon_job_utf16(quillon_job job, std::int32_t field, std::uint16_t* text, std::uint32_t size,
                               std::uint32_t* length) {
    const auto convert = [](const std::wstring& given) { return std::wstring_view(given); };
    return GiveText(job, field, Room<std::uint16_t>{text, size, length}, convert);
}

std::int32_t quillon_job_number(quillon_job job, std::int32_t field, std::int64_t* value) {
    if (value == nullptr) return QUILLON_BAD_ARGUMENT;
    *value = 0;
    return WithJob(job, [&](const ReceivedJob& open) -> std::int32_t {
        const std::optional<std::int64_t> number = GetNumber(open, field);
        if (!number) return QUILLON_BAD_ARGUMENT;
        *value = *number;
        return QUILLON_OK;
    });
}

std::int32_t quillon_job_close(quillon_job job) {
    return Answer([&] { return GetLibrary().jobs.Remove(job) ? QUILLON_OK : QUILLON_BAD_HANDLE; });
}
