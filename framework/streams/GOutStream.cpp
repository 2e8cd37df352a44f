#include "framework/streams/GOutStream.h"

GOutStream::~GOutStream() = default;

long long GOutStream::Skip(long long) {
    return 0;
}

void GOutStream::Flush() {}

void GOutStream::Reset() {}
