// For prefs_proof.py: reads every file FOLDER/*.in and writes what it has read to a file *.out beside it, in
// UTF-16 when its name has "utf16". Tells each damaged file.
#include <cstdio>
#include <filesystem>
#include <string>

#include "framework/GFrameworkScope.h"
#include "framework/core/encodings/GUTF8Encoding.h"
#include "framework/core/encodings/GUnicodeEncoding.h"
#include "framework/services/GPrefsFile.h"

int main(int argc, char** argv) {
    if (argc != 2) return 2;
    const GFrameworkScope framework;
    for (const auto& entry : std::filesystem::directory_iterator(argv[1])) {
        if (entry.path().extension() != ".in") continue;
        const std::string name = entry.path().string();
        const GEncoding* encoding = GUTF8Encoding::GetInstance();
        if (name.find("utf16") != std::string::npos) encoding = GUnicodeEncoding::GetInstance();
        GPrefsText::Groups groups;
        if (!GPrefsFile::Read(GPathName(name.c_str()), encoding, groups))
            std::printf("damaged: %s\n", name.c_str());
        const std::string out = std::filesystem::path(entry.path()).replace_extension(".out").string();
        GPrefsFile::Write(GPathName(out.c_str()), encoding, groups);
    }
    return 0;
}
