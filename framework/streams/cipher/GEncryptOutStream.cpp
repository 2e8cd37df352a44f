#include "framework/streams/cipher/GEncryptOutStream.h"

#include <utility>

#include "framework/core/errors/GException.h"
#include "framework/core/errors/GExceptionID.h"

namespace {

void Put(GOutStream& target, const GBuffer& bytes) {
    if (target.Write(bytes) != bytes.GetLength()) throw GSimpleException(GExceptionID::cCouldNotWriteFile);
}

}  // namespace

GEncryptOutStream::GEncryptOutStream(GHeldStream<GOutStream> target, const GBuffer& key)
    : mTarget(std::move(target)), mKey(key) {
    PCipher::CheckKey(key);
}

GEncryptOutStream::~GEncryptOutStream() {
    try {
        Finish();
    } catch (...) {
        // Whoever wants to know calls Finish.
    }
}

void GEncryptOutStream::Begin() {
    if (mCipher) return;
    const PCipher::Block start = PCipher::GetRandomBlock();
    auto cipher = std::make_unique<PCipher>(PCipher::Direction::cEncrypt, mKey, start);
    Put(*mTarget, GBuffer(start.data(), static_cast<long>(start.size())));
    mCipher = std::move(cipher);
}

void GEncryptOutStream::HandOver(GBuffer& blocks) {
    if (blocks.IsEmpty()) return;
    Begin();
    unsigned char* const bytes = blocks.GetWritePtr();
    mCipher->Process(bytes, bytes, blocks.GetLength());
    Put(*mTarget, blocks);
}

long GEncryptOutStream::Write(const GBuffer& data) {
    if (mFinished) throw GSimpleException(GExceptionID::cInvalidParameter);
    GBuffer blocks;
    blocks.Allocate(mRest.GetLength() + data.GetLength());
    blocks += mRest;
    blocks += data;
    const long whole = blocks.GetLength() / PCipher::cBlock * PCipher::cBlock;
    mRest = blocks.GetSubBuffer(whole);
    blocks.SetLength(whole);
    HandOver(blocks);
    return data.GetLength();
}

void GEncryptOutStream::Flush() {
    mTarget->Flush();
}

void GEncryptOutStream::Reset() {
    mTarget->Reset();
    mRest.Clear();
    mCipher.reset();
    mFinished = false;
}

void GEncryptOutStream::Finish() {
    if (mFinished) return;
    mFinished = true;
    const long padding = PCipher::cBlock - mRest.GetLength();
    for (long i = 0; i < padding; ++i) mRest += static_cast<unsigned char>(padding);
    HandOver(mRest);
    mRest.Clear();
}
