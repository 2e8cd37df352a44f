#pragma once

#include <filesystem>
#include <fstream>

#include "framework/core/encodings/GUTF8Encoding.h"
#include "framework/core/errors/GException.h"
#include "framework/core/paths/GPathName.h"
#include "framework/system/GProcessInfo.h"
#include "tests/core/TextForTests.h"

/// TestFolder: an empty folder of its own for one test, removed with everything in it.
///
/// It looks at files with the standard library, so that what is tested is not tested by itself.
class TestFolder {
public:
    TestFolder() {
        static int sCount = 0;
        const long processID = GProcessInfo::GetInstance()->GetCurrentProcessID();
        mPath = std::filesystem::temp_directory_path() /
                ("quillon-" + std::to_string(processID) + "-" + std::to_string(++sCount));
        std::filesystem::create_directories(mPath);
    }
    TestFolder(const TestFolder&) = delete;
    TestFolder& operator=(const TestFolder&) = delete;
    ~TestFolder() {
        std::error_code ignored;
        std::filesystem::remove_all(mPath, ignored);
    }

    /// A portable path in the folder, from UTF-8.
    GPathName Portable(const std::string& relative = "") const {
        const std::u8string text = Standard(relative).generic_u8string();
        return GPathName(GString::FromUTF8(reinterpret_cast<const char*>(text.c_str())));
    }

    std::filesystem::path Standard(const std::string& relative) const {
        return mPath / std::u8string(relative.begin(), relative.end());
    }

    /// Writes a file; its path.
    std::filesystem::path Put(const std::string& relative, const std::string& bytes) const {
        std::ofstream(Standard(relative), std::ios::binary) << bytes;
        return Standard(relative);
    }

    /// The content of a file, or "no file".
    std::string Take(const std::string& relative) const {
        std::ifstream file(Standard(relative), std::ios::binary);
        if (!file) return "no file";
        return std::string((std::istreambuf_iterator<char>(file)), std::istreambuf_iterator<char>());
    }

    bool Has(const std::string& relative) const {
        std::error_code ignored;
        return std::filesystem::exists(Standard(relative), ignored);
    }

private:
    std::filesystem::path mPath;
};

/// With a folder for each test.
struct FolderTest : testing::Test {
    const TestFolder mFolder;
};

/// A portable path or text as UTF-8.
inline std::string TextOf(const GString& text) {
    return BytesOf(text.GetBuffer(GUTF8Encoding::GetInstance()));
}
inline std::string TextOf(const GPathName& path) {
    return TextOf(path.GetPortablePath());
}

/// What `call` throws, in words; "none" when it throws nothing.
inline std::string FailureOf(const std::function<void()>& call) {
    try {
        call();
    } catch (const GException& failure) {
        return TextOf(failure.GetFullDescription());
    }
    return "none";
}
