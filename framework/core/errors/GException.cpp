#include "framework/core/errors/GException.h"

#include <atomic>

#include "framework/core/errors/GExceptionLocation.h"
#include "framework/core/errors/GExceptionMessages.h"
#include "framework/core/errors/GStringPool.h"
#include "framework/core/memory/GAllocator.h"
#include "framework/core/text/GString.h"

namespace {

/// Thrown where an exception under construction finds no memory. To other threads that allocate
/// meanwhile it is the ordinary failure.
class NoMemoryForException : public std::bad_alloc {};

void ThrowNoMemory() {
    throw NoMemoryForException();
}

/// Keeps the program's new-handler out while an exception is being built: it might wait for the user
/// or end the process. The handler belongs to all threads, so threads may overlap here: whoever finds
/// a foreign handler saves it, and the last one to leave puts it back.
class NewHandlerGuard {
public:
    NewHandlerGuard() noexcept {
        sUsers.fetch_add(1);
        const std::new_handler before = std::set_new_handler(ThrowNoMemory);
        if (before != ThrowNoMemory) sSaved.store(before);
    }
    ~NewHandlerGuard() {
        if (sUsers.fetch_sub(1) == 1 && std::get_new_handler() == ThrowNoMemory)
            std::set_new_handler(sSaved.load());
    }
    NewHandlerGuard(const NewHandlerGuard&) = delete;
    NewHandlerGuard& operator=(const NewHandlerGuard&) = delete;

private:
    static std::atomic<long> sUsers;
    static std::atomic<std::new_handler> sSaved;
};

std::atomic<long> NewHandlerGuard::sUsers{0};
std::atomic<std::new_handler> NewHandlerGuard::sSaved{nullptr};

/// Runs a step of building an exception. What is being reported matters more than a detail for which
/// there is no memory.
template <class Step>
void Attempt(Step step) noexcept {
    const NewHandlerGuard guard;
    try {
        step();
    } catch (...) {
        // The detail stays away.
    }
}

std::unique_ptr<GString> CopyOf(const GString* text) noexcept {
    std::unique_ptr<GString> copy;
    if (text != nullptr) Attempt([&] { copy = std::make_unique<GString>(*text); });
    return copy;
}

}  // namespace

GException::GException() : GException(GExceptionID::cGeneral) {}

GException::GException(long id) : mExceptionID(static_cast<std::int32_t>(id)) {
    if (mExceptionID != GExceptionID::cOutOfMemory) CaptureLocation();
}

GException::~GException() = default;

void GException::CaptureLocation() noexcept {
    Attempt([this] { mLocation = GExceptionLocation::GetLngDescription(); });
}

GLngString GException::GetLngDescription() const {
    // The language string of the number 0 is the empty one.
    if (mExceptionID == 0) return GLngString(GStringPoolSupport::GetString(0));
    return GLngString(static_cast<long>(mExceptionID));
}

GLngString GException::GetLngFullDescription() const {
    if (mLocation.IsEmpty()) return GetLngDescription();
    GLngString description = mLocation;
    description += GString(": ");
    description += GetLngDescription();
    return description;
}

long GException::GetExceptionID() const {
    return mExceptionID;
}

GString GException::GetDescription() const {
    return GetLngDescription().GetString();
}

GString GException::DescribeCurrent() {
    try {
        throw;
    } catch (const GException& failure) {
        return failure.GetFullDescription();
    } catch (const std::exception& failure) {
        return GString(failure.what());
    } catch (...) {
        return GString("an unknown failure");
    }
}

GString GException::GetFullDescription() const {
    return GetLngFullDescription().GetString();
}

void GException::Initialize() {
    GStringPoolSupport::Register("enUS", "WinAnsiEncoding", GExceptionMessages::GetRows(),
                                 GExceptionMessages::GetCount());
}

GSimpleException::GSimpleException(long id) : GException(id) {}
GSimpleException::~GSimpleException() = default;

GAbortException::GAbortException() : GException(GExceptionID::cAborted) {}
GAbortException::~GAbortException() = default;

GMemoryException::GMemoryException() : GException(GExceptionID::cOutOfMemory) {}
GMemoryException::~GMemoryException() = default;

const char* GMemoryException::what() const noexcept {
    return "bad allocation";
}

// Defined here and not beside the allocator, which knows no exceptions: only here is it known what to throw.
void GAllocator::ThrowOutOfMemory() {
    throw GMemoryException();
}

GCustomException::GCustomException(long id) : GException(id) {}

GCustomException::GCustomException(long id, const GString& text) : GException(id), mText(CopyOf(&text)) {}

GCustomException::GCustomException(const GCustomException& other) noexcept
    : GException(other), mText(CopyOf(other.mText.get())) {}

GCustomException& GCustomException::operator=(const GCustomException& other) noexcept {
    GException::operator=(other);
    if (this != &other) mText = CopyOf(other.mText.get());
    return *this;
}

GCustomException::~GCustomException() = default;

GLngString GCustomException::GetLngDescription() const {
    return mText ? GLngString(*mText) : GException::GetLngDescription();
}

GLngException::GLngException(const GLngString& description)
    : GException(description.GetID()), mDescription(description) {}

GLngException::GLngException(long id, const GString& param) : GException(id) {
    Attempt([&] { mDescription = GLngString(id).AddParam(param); });
}

GLngException::~GLngException() = default;

GLngString GLngException::GetLngDescription() const {
    return mDescription.IsEmpty() ? GException::GetLngDescription() : mDescription;
}
