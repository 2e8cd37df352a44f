#include "framework/core/errors/GException.h"
#include "framework/core/errors/GExceptionID.h"
#include "framework/streams/cipher/PCipher.h"
#include "platform/win32/base/PWin32Api.h"
#include "platform/win32/base/PWin32ScopedHandle.h"

#include <bcrypt.h>

namespace {

void Require(NTSTATUS status) {
    if (!BCRYPT_SUCCESS(status)) throw GSimpleException(GExceptionID::cGeneral);
}

struct AlgorithmHandle {
    static void* None() noexcept { return nullptr; }
    static void Close(void* handle) noexcept { ::BCryptCloseAlgorithmProvider(handle, 0); }
};

struct KeyHandle {
    static void* None() noexcept { return nullptr; }
    static void Close(void* handle) noexcept { ::BCryptDestroyKey(handle); }
};

PWin32ScopedHandle<AlgorithmHandle> OpenAlgorithm() {
    BCRYPT_ALG_HANDLE handle = nullptr;
    Require(::BCryptOpenAlgorithmProvider(&handle, BCRYPT_AES_ALGORITHM, nullptr, 0));
    PWin32ScopedHandle<AlgorithmHandle> algorithm(handle);
    wchar_t mode[] = BCRYPT_CHAIN_MODE_CBC;
    Require(
        ::BCryptSetProperty(handle, BCRYPT_CHAINING_MODE, reinterpret_cast<UCHAR*>(mode), sizeof mode, 0));
    return algorithm;
}

PWin32ScopedHandle<KeyHandle> MakeKey(void* algorithm, const GBuffer& key) {
    BCRYPT_KEY_HANDLE handle = nullptr;
    // The library only reads the key.
    auto* const bytes = const_cast<UCHAR*>(key.GetRawData());
    Require(::BCryptGenerateSymmetricKey(algorithm, &handle, nullptr, 0, bytes,
                                         static_cast<ULONG>(key.GetLength()), 0));
    return PWin32ScopedHandle<KeyHandle>(handle);
}

}  // namespace

struct PCipher::Implementation {
    Direction direction;
    Block previous;  // advanced by the library
    PWin32ScopedHandle<AlgorithmHandle> algorithm;
    PWin32ScopedHandle<KeyHandle> key;
};

PCipher::PCipher(Direction direction, const GBuffer& key, const Block& start) {
    CheckKey(key);
    PWin32ScopedHandle<AlgorithmHandle> algorithm = OpenAlgorithm();
    PWin32ScopedHandle<KeyHandle> made = MakeKey(algorithm.Get(), key);
    mImplementation.reset(new Implementation{direction, start, std::move(algorithm), std::move(made)});
}

PCipher::~PCipher() = default;

void PCipher::Process(const unsigned char* in, unsigned char* out, long count) {
    Implementation& cipher = *mImplementation;
    const auto process = cipher.direction == Direction::cEncrypt ? ::BCryptEncrypt : ::BCryptDecrypt;
    ULONG written = 0;
    const auto length = static_cast<ULONG>(count);
    Require(process(cipher.key.Get(), const_cast<UCHAR*>(in), length, nullptr, cipher.previous.data(),
                    static_cast<ULONG>(cipher.previous.size()), out, length, &written, 0));
    if (written != length) throw GSimpleException(GExceptionID::cGeneral);
}

PCipher::Block PCipher::GetRandomBlock() {
    Block block;
    Require(::BCryptGenRandom(nullptr, block.data(), static_cast<ULONG>(block.size()),
                              BCRYPT_USE_SYSTEM_PREFERRED_RNG));
    return block;
}
