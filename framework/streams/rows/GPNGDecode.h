#pragma once

#include "framework/streams/GFilterInStream.h"
#include "framework/streams/rows/GPNGRow.h"

/// GPNGDecode: rows from the bytes of one PNG filter (ISO/IEC 15948) with its tag in front of each row.
///
/// A row is `columns` pixels of `colours` samples (up to 65535) of `bits` bits (1, 2, 4, 8 or 16) in whole
/// bytes. Each row is decoded by its own tag, whichever of the five it is: what differs from the class is
/// followed. An unfinished last row is delivered as far as it goes; then the end is unexpected.
class QUILLON_EXPORT GPNGDecode : public GFilterInStream {
protected:
    /// Throws GExceptionID::cInvalidParameter when there can be no such row.
    GPNGDecode(GHeldStream<GInStream> source, long columns, long colours, long bits);
    GPNGDecode(const GPNGDecode& other) = default;

private:
    GFilterStep Convert(GFilterWindow& window) override;
    void Restart() override;

    std::int32_t mRowLength;  // in bytes, without the tag
    bool mTagRead = false;
    GPNGTag mTag = GPNGTag::cNone;
    GPNGRow mRow;
};

/// Rows of the tag None.
class QUILLON_EXPORT GPNGNoneDecode : public GPNGDecode {
public:
    /// As GPNGDecode.
    explicit GPNGNoneDecode(GHeldStream<GInStream> source, long columns, long colours = 1, long bits = 8);
    GPNGNoneDecode* CreateClone() const override;
};

/// Rows of the tag Sub.
class QUILLON_EXPORT GPNGSubDecode : public GPNGDecode {
public:
    /// As GPNGDecode.
    explicit GPNGSubDecode(GHeldStream<GInStream> source, long columns, long colours = 1, long bits = 8);
    GPNGSubDecode* CreateClone() const override;
};

/// Rows of the tag Up.
class QUILLON_EXPORT GPNGUpDecode : public GPNGDecode {
public:
    /// As GPNGDecode.
    explicit GPNGUpDecode(GHeldStream<GInStream> source, long columns, long colours = 1, long bits = 8);
    GPNGUpDecode* CreateClone() const override;
};

/// Rows of the tag Average.
class QUILLON_EXPORT GPNGAvgDecode : public GPNGDecode {
public:
    /// As GPNGDecode.
    explicit GPNGAvgDecode(GHeldStream<GInStream> source, long columns, long colours = 1, long bits = 8);
    GPNGAvgDecode* CreateClone() const override;
};

/// Rows of the tag Paeth.
class QUILLON_EXPORT GPNGPaethDecode : public GPNGDecode {
public:
    /// As GPNGDecode.
    explicit GPNGPaethDecode(GHeldStream<GInStream> source, long columns, long colours = 1, long bits = 8);
    GPNGPaethDecode* CreateClone() const override;
};

/// Rows that each have the filter that suits them.
class QUILLON_EXPORT GPNGOptiDecode : public GPNGDecode {
public:
    /// As GPNGDecode.
    explicit GPNGOptiDecode(GHeldStream<GInStream> source, long columns, long colours = 1, long bits = 8);
    GPNGOptiDecode* CreateClone() const override;
};
