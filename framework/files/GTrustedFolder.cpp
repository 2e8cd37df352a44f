#include "framework/files/GTrustedFolder.h"

#include <utility>

#include "PPlatformFiles.h"
#include "framework/core/errors/GException.h"
#include "framework/core/errors/GExceptionLocation.h"
#include "framework/files/GFile.h"
#include "framework/files/GFileSystem.h"

namespace {

using Fault = GFileTrust::Fault;

const char* TextOf(Fault fault) {
    switch (fault) {
        case Fault::cLeadsAway:
            return "It leads to another place";
        case Fault::cNoFolder:
            return "It is no folder";
        case Fault::cNoFile:
            return "It is no file";
        case Fault::cLinkedTwice:
            return "It is linked twice";
        case Fault::cForeign:
            return "It belongs to somebody else";
        case Fault::cElsewhere:
            return "It lies in another place";
        default:
            return "It has another name";
    }
}

void Require(Fault fault) {
    if (fault != Fault::cNone) throw GCustomException(GExceptionID::cCouldNotOpenFile, TextOf(fault));
}

}  // namespace

GTrustedFolder::GTrustedFolder(const GPathName& path, bool make)
    : mPath(path), mWalk(std::make_unique<PFolderWalk>()) {
    const GExceptionLocation location(path);
    GString name = path.GetCrossPlatformString();
    if (!path.HasLeaf() && !name.IsEmpty()) name.SetLength(name.GetLength() - 1);  // as in "C:/a/"
    const GPathName folderPath(name);
    const GString leaf = folderPath.GetLeaf();
    const GPathName above = folderPath.GetBranch();
    if (make) GFileSystem::CreateFolder(above);
    PFolderWalk::Opened start = mWalk->OpenStart(above);
    const GPathName parent = mWalk->GetFacts(start).mFinalPath;
    mWalk->Enter(std::move(start));
    if (make) mWalk->MakeFolder(leaf);
    PFolderWalk::Opened folder = mWalk->Open(leaf, PFolderWalk::Purpose::cEnter);
    if (!folder) mWalk->Throw(folder, leaf);
    const GFileFacts facts = mWalk->GetFacts(folder);
    Require(GFileTrust::FindFolderFault(facts, parent));
    mFinalPath = facts.mFinalPath;
    mWalk->Enter(std::move(folder));
}

GTrustedFolder::~GTrustedFolder() = default;

std::unique_ptr<GFile> GTrustedFolder::Open(const GString& name, bool toWrite) const {
    GPathName path(mPath);
    path.Append(name);
    const GExceptionLocation location(path);
    PFolderWalk::Opened opened =
        mWalk->Open(name, toWrite ? PFolderWalk::Purpose::cWriteThrough : PFolderWalk::Purpose::cRead);
    if (!opened) mWalk->Throw(opened, name);
    Require(GFileTrust::FindFileFault(mWalk->GetFacts(opened), mFinalPath, name));
    return std::make_unique<GFile>(PFolderWalk::TakeFile(std::move(opened), path));
}

std::unique_ptr<GFile> GTrustedFolder::OpenToRead(const GString& name) const {
    return Open(name, false);
}

std::unique_ptr<GFile> GTrustedFolder::OpenEmpty(const GString& name) const {
    std::unique_ptr<GFile> file = Open(name, true);
    file->SetLength(0);
    return file;
}
