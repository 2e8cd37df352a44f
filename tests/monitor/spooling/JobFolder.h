#pragma once

#include <regex>

#include "framework/files/GFileSystem.h"
#include "framework/files/GSpecialPath.h"
#include "framework/system/PSystem.h"
#include "tests/files/TestFolder.h"

/// A folder of its own in the place of the global temporary folder.
class JobFolder : public TestFolder {
public:
    JobFolder() { GFileSystem::AddSpecialPath(GSpecialPath::cGlobalTemp, Portable()); }
    ~JobFolder() { GFileSystem::RemoveSpecialPath(GSpecialPath::cGlobalTemp); }

    /// The job file of that name for the printer Proof, relative to the folder.
    static std::string Job(const std::string& fileName) {
        GString user;
        PSystem::GetLogonName(user);
        return TextOf(user) + "/Proof/" + fileName;
    }
    std::string ContentOf(const std::string& fileName) const { return Take(Job(fileName)); }

    /// Switches the trace log on for the program whose configuration has that name, without times and places.
    void SwitchTraceOn(const std::string& configuration) const {
        std::filesystem::create_directories(Standard("QuillonDebug"));
        Put("QuillonDebug/" + configuration,
            "#BEGINPREFS\n\"Defaults\"\n#BEGINDICT\n\"Log\" \"1\"\n\"LogTime\" \"0\"\n"
            "\"LogLocation\" \"0\"\n\"Prefix\" \"-\"\n#ENDDICT\n#ENDPREFS\n");
    }
    /// What the log says, with N for the times that something took.
    static std::string WithoutTimes(const std::string& log) {
        return std::regex_replace(log, std::regex("[0-9]+ ms"), "N ms");
    }
};
