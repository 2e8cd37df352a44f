#pragma once

#include <cstddef>
#include <cstdint>

#include "framework/core/bytes/GBuffer.h"
#include "framework/core/errors/GException.h"
#include "framework/core/text/GString.h"

/// FuzzInput: made-up bytes, taken from the front piece by piece. When they run out, pieces are
/// empty and numbers 0.
class FuzzInput {
public:
    FuzzInput(const std::uint8_t* bytes, std::size_t count) noexcept : mBytes(bytes), mLeft(count) {}

    std::uint8_t TakeByte() noexcept;
    /// Any 32-bit number, little-endian.
    std::int32_t TakeNumber() noexcept;
    /// A piece whose first byte says how long it is.
    GBuffer TakeBytes();
    /// The same as UTF-16 text; units need not make sense.
    GString TakeText();
    /// All that is left.
    GBuffer TakeRest();
    GString TakeRestAsText();
    bool IsEmpty() const noexcept { return mLeft == 0; }

private:
    GBuffer Take(std::size_t count);

    const std::uint8_t* mBytes;
    std::size_t mLeft;
};

/// Ends the process, which the fuzzer reports with its input, when what must hold does not.
void Require(bool holds, const char* what);

/// Makes a call that may refuse what makes no sense, with a numbered exception and in no other way.
template <class Call>
void Try(Call call) {
    try {
        call();
    } catch (const GException&) {
        // Refused.
    }
}
