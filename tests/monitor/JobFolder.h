#pragma once

#include <string>

#include "framework/core/GBuffer.h"
#include "framework/core/GPathName.h"
#include "framework/files/GFileSystem.h"
#include "framework/files/GSpecialPath.h"
#include "framework/streams/GFileInStream.h"
#include "framework/streams/GStreamSupport.h"
#include "framework/system/GProcessInfo.h"
#include "framework/system/PSystem.h"

/// A folder of its own in the place of the global temporary folder, for as long as it lives. What is in it
/// at the end stays for the system to clean up.
class JobFolder {
public:
    JobFolder() {
        static int sCount = 0;
        mRoot = GFileSystem::GetGlobalTempFolder();
        mRoot.Append(GString("quillon-jobs-") + GString(GProcessInfo::GetInstance()->GetCurrentProcessID()) +
                     GString("-") + GString(++sCount));
        GFileSystem::CreateFolder(mRoot);
        GFileSystem::AddSpecialPath(GSpecialPath::cGlobalTemp, mRoot);
    }
    JobFolder(const JobFolder&) = delete;
    JobFolder& operator=(const JobFolder&) = delete;
    ~JobFolder() { GFileSystem::RemoveSpecialPath(GSpecialPath::cGlobalTemp); }

    const GPathName& GetRoot() const { return mRoot; }
    /// The job file of that name for the printer Proof.
    GPathName PathOf(const char* fileName) const {
        GString user;
        PSystem::GetLogonName(user);
        GPathName path(mRoot);
        path.Append(user);
        path.Append("Proof");
        path.Append(fileName);
        return path;
    }
    std::string ContentOf(const char* fileName) const {
        GFileInStream stream(PathOf(fileName));
        GBuffer content;
        GStreamSupport::GetContent(stream, content);
        return std::string(content.GetPtr(), content.GetLength());
    }

private:
    GPathName mRoot;
};
