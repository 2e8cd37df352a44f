#pragma once

class GBuffer;

/// PStackDump: the calling thread's stack, as far as the system can tell.
class PStackDump {
public:
    /// Adds a line for each of at most cMaxFrames return addresses, innermost first, or one line that
    /// says why there are none. Not for two threads at once.
    static void AppendTo(GBuffer& text);

    static constexpr long cMaxFrames = 1024;  ///< return addresses in one dump
};
