#include "fuzz/FuzzInput.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>

#include "framework/GBasicFrameworkCoreLayer.h"
#include "framework/core/encodings/GUnicodeEncoding.h"

std::uint8_t FuzzInput::TakeByte() noexcept {
    if (mLeft == 0) return 0;
    --mLeft;
    return *mBytes++;
}

std::int32_t FuzzInput::TakeNumber() noexcept {
    std::uint32_t number = 0;
    for (int shift = 0; shift < 32; shift += 8) number |= std::uint32_t{TakeByte()} << shift;
    return static_cast<std::int32_t>(number);
}

GBuffer FuzzInput::Take(std::size_t count) {
    const std::size_t taken = std::min(count, mLeft);
    const GBuffer piece(mBytes, static_cast<long>(taken));
    mBytes += taken;
    mLeft -= taken;
    return piece;
}

GBuffer FuzzInput::TakeBytes() {
    const std::size_t count = TakeByte();
    return Take(count);
}

GString FuzzInput::TakeText() {
    return GString(TakeBytes(), GUnicodeEncoding::GetInstance());
}

GBuffer FuzzInput::TakeRest() {
    return Take(mLeft);
}

GString FuzzInput::TakeRestAsText() {
    return GString(TakeRest(), GUnicodeEncoding::GetInstance());
}

void Require(bool holds, const char* what) {
    if (holds) return;
    std::fprintf(stderr, "This must hold: %s\n", what);
    std::abort();
}

extern "C" int LLVMFuzzerInitialize(int*, char***) {
    GBasicFrameworkCoreLayer::Initialize();
    return 0;
}

// The allocator chains free blocks through themselves, and they are poisoned: where the search for leaks
// leaves poisoned words out, all blocks of a chain but the first seem lost.
extern "C" const char* __lsan_default_options() {
    return "use_poisoned=1";
}
