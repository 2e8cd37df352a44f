#pragma once

#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <vector>

#include "tests/streams/filters/FilterTestSupport.h"

/// A folder of one test, gone with it.
class ProofFolder {
public:
    ProofFolder() {
        std::string name = std::filesystem::temp_directory_path() / "filter-proof-XXXXXX";
        mPath = mkdtemp(name.data());
    }
    ProofFolder(const ProofFolder&) = delete;
    ProofFolder& operator=(const ProofFolder&) = delete;
    ~ProofFolder() { std::filesystem::remove_all(mPath); }

    std::string operator/(const std::string& name) const { return mPath / name; }

private:
    std::filesystem::path mPath;
};

inline void WriteFile(const std::string& path, const std::string& bytes) {
    std::ofstream(path, std::ios::binary) << bytes;
}

inline std::string ReadFile(const std::string& path) {
    std::ifstream file(path, std::ios::binary);
    if (!file) return "there is no file " + path;
    return std::string(std::istreambuf_iterator<char>(file), {});
}

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
