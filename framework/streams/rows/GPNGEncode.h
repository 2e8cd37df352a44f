#pragma once

#include "framework/streams/GFilterInStream.h"
#include "framework/streams/rows/GPNGRow.h"

/// GPNGEncode: puts rows through one PNG filter (ISO/IEC 15948) and its tag in front of each.
///
/// A row is `columns` pixels of `colours` samples (up to 65535) of `bits` bits (1, 2, 4, 8 or 16) in whole
/// bytes. An unfinished last row is written as a short row.
class QUILLON_EXPORT GPNGEncode : public GFilterInStream {
protected:
    /// Throws GExceptionID::cInvalidParameter when there can be no such row.
    GPNGEncode(GHeldStream<GInStream> source, GPNGTag tag, long columns, long colours, long bits);
    GPNGEncode(const GPNGEncode& other) = default;

private:
    GFilterStep Convert(GFilterWindow& window) override;
    void Restart() override;

    GPNGTag mTag;
    std::int32_t mRowLength;  // in bytes, without the tag
    bool mTagWritten = false;
    GPNGRow mRow;
};

/// Writes rows with the tag None: as they are.
class QUILLON_EXPORT GPNGNoneEncode : public GPNGEncode {
public:
    /// As GPNGEncode.
    explicit GPNGNoneEncode(GHeldStream<GInStream> source, long columns, long colours = 1, long bits = 8);
    GPNGNoneEncode* CreateClone() const override;
};

/// Writes rows with the tag Sub.
class QUILLON_EXPORT GPNGSubEncode : public GPNGEncode {
public:
    /// As GPNGEncode.
    explicit GPNGSubEncode(GHeldStream<GInStream> source, long columns, long colours = 1, long bits = 8);
    GPNGSubEncode* CreateClone() const override;
};

/// Writes rows with the tag Up.
class QUILLON_EXPORT GPNGUpEncode : public GPNGEncode {
public:
    /// As GPNGEncode.
    explicit GPNGUpEncode(GHeldStream<GInStream> source, long columns, long colours = 1, long bits = 8);
    GPNGUpEncode* CreateClone() const override;
};

/// Writes rows with the tag Average.
class QUILLON_EXPORT GPNGAvgEncode : public GPNGEncode {
public:
    /// As GPNGEncode.
    explicit GPNGAvgEncode(GHeldStream<GInStream> source, long columns, long colours = 1, long bits = 8);
    GPNGAvgEncode* CreateClone() const override;
};

/// Writes rows with the tag Paeth.
class QUILLON_EXPORT GPNGPaethEncode : public GPNGEncode {
public:
    /// As GPNGEncode.
    explicit GPNGPaethEncode(GHeldStream<GInStream> source, long columns, long colours = 1, long bits = 8);
    GPNGPaethEncode* CreateClone() const override;
};
