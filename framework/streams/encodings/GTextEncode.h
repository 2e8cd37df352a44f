#pragma once

#include <string_view>

#include "framework/streams/GFilterInStream.h"

/// GTextEncode: the base of the encoders that write text: an end mark, and line ends on demand.
class QUILLON_EXPORT GTextEncode : public GFilterInStream {
protected:
    /// `breakLines`: a LF behind each 80 characters, so that no line is longer and the end mark stands
    /// on one line. `endMark` outlives the filter.
    GTextEncode(GHeldStream<GInStream> source, std::string_view endMark, bool breakLines);
    GTextEncode(const GTextEncode& other) = default;

    /// What Encode must have to get on, at most.
    static constexpr long cEncodeRoom = 64;

    /// As Convert, without the end mark.
    virtual GFilterStep Encode(GFilterWindow& window) const = 0;

private:
    static constexpr long cLineLength = 80;

    GFilterStep Convert(GFilterWindow& window) override;
    void Restart() override;
    GFilterStep EncodeInLines(GFilterWindow& window);
    void PutInLines(GFilterWindow& window, const unsigned char* text, long count);

    std::string_view mEndMark;
    std::int32_t mColumn = 0;  // characters on the line so far
    bool mBreakLines;
};
