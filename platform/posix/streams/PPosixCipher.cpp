#include <openssl/evp.h>
#include <openssl/rand.h>

#include "framework/core/errors/GException.h"
#include "framework/core/errors/GExceptionID.h"
#include "framework/streams/cipher/PCipher.h"

namespace {

void Require(bool done) {
    if (!done) throw GSimpleException(GExceptionID::cGeneral);
}

struct FreeContext {
    void operator()(EVP_CIPHER_CTX* context) const noexcept { EVP_CIPHER_CTX_free(context); }
};

}  // namespace

struct PCipher::Implementation {
    std::unique_ptr<EVP_CIPHER_CTX, FreeContext> context{EVP_CIPHER_CTX_new()};
};

PCipher::PCipher(Direction direction, const GBuffer& key, const Block& start)
    : mImplementation(std::make_unique<Implementation>()) {
    CheckKey(key);
    EVP_CIPHER_CTX* const context = mImplementation->context.get();
    Require(context != nullptr);
    const EVP_CIPHER* const kind = key.GetLength() == 16 ? EVP_aes_128_cbc() : EVP_aes_256_cbc();
    const int encrypts = direction == Direction::cEncrypt ? 1 : 0;
    Require(EVP_CipherInit_ex(context, kind, nullptr, key.GetRawData(), start.data(), encrypts) == 1);
    EVP_CIPHER_CTX_set_padding(context, 0);
}

PCipher::~PCipher() = default;

void PCipher::Process(const unsigned char* in, unsigned char* out, long count) {
    int written = 0;
    const int length = static_cast<int>(count);
    Require(EVP_CipherUpdate(mImplementation->context.get(), out, &written, in, length) == 1);
    Require(written == length);
}

PCipher::Block PCipher::GetRandomBlock() {
    Block block;
    Require(RAND_bytes(block.data(), static_cast<int>(block.size())) == 1);
    return block;
}
