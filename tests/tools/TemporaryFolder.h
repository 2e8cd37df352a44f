#pragma once

#include <filesystem>
#include <fstream>
#include <string>

/// A folder of its own for one test, gone with it.
class TemporaryFolder {
public:
    explicit TemporaryFolder(const std::string& name)
        : mPath(std::filesystem::temp_directory_path() / ("quillon-" + name)) {
        std::filesystem::remove_all(mPath);
        std::filesystem::create_directories(mPath);
    }
    TemporaryFolder(const TemporaryFolder&) = delete;
    TemporaryFolder& operator=(const TemporaryFolder&) = delete;
    ~TemporaryFolder() {
        std::error_code ignored;
        std::filesystem::remove_all(mPath, ignored);
    }

    std::wstring GetFile(const wchar_t* leaf) const { return (mPath / leaf).wstring(); }
    std::wstring WriteFile(const wchar_t* leaf, const std::string& bytes) const {
        std::ofstream(mPath / leaf, std::ios::binary) << bytes;
        return GetFile(leaf);
    }
    static std::string ReadFile(const std::wstring& path) {
        std::ifstream file(std::filesystem::path(path), std::ios::binary);
        return {std::istreambuf_iterator<char>(file), {}};
    }

private:
    std::filesystem::path mPath;
};
