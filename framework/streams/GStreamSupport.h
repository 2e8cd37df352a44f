#pragma once

#include "framework/core/GExport.h"
#include "framework/core/bytes/GBuffer.h"
#include "framework/files/GTypeEnums.h"

class GInStream;
class GOutStream;

/// GStreamSupport: copies, collects, measures and recognises streams.
class QUILLON_EXPORT GStreamSupport {
public:
    static constexpr long cCopyChunk = 0x19000;  ///< bytes

    /// Copies the rest of `source` to `target` and returns the number of bytes. Reports progress in
    /// bytes, with a total where `source` is a memory or file stream. Throws
    /// GExceptionID::cCouldNotWriteFile when `target` takes fewer bytes than it was given.
    static long long CopyStream(GInStream& source, GOutStream& target);

    /// Replaces `content` with the whole rest of `source` and returns its length. More than `limit` bytes
    /// throw GExceptionID::cNotEnoughSpace; whatever is thrown, `content` stays as it was.
    static long GetContent(GInStream& source, GBuffer& content, long limit = GBuffer::cMaxLength);

    /// The length of all data of `source` in bytes, from its start to its end, wherever it stands.
    /// `source` itself does not move: a stream whose length is not known is read by a clone.
    static unsigned long long GetStreamLength(const GInStream& source);

    /// The kind of data, judged from its first 4096 bytes, wherever `source` stands; it does not move.
    static GTypeEnums::Types GetStreamType(const GInStream& source);
    /// The same for bytes at hand.
    static GTypeEnums::Types GetBufferType(const GBuffer& data);
};
