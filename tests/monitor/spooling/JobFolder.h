#pragma once

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
};
