#pragma once

#include "tests/files/TestFolder.h"
#include "tests/streams/filters/FilterTestSupport.h"

/// Runs a program for a minute at most.
inline bool Succeeds(const std::string& command) {
    return std::system(("timeout 60 " + command + " >/dev/null 2>&1").c_str()) == 0;
}

/// Inputs of all lengths up to some, and longer ones that fill tables.
inline std::vector<std::string> ProofInputs(std::size_t count) {
    std::vector<std::string> inputs;
    for (std::size_t i = 0; i < count; ++i) {
        const std::size_t length = i < 20 ? i : i % 10 == 0 ? i * 300 : i * 11;
        inputs.push_back(MixedBytes(length, static_cast<unsigned>(i)));
    }
    return inputs;
}
