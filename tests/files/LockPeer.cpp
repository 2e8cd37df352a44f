// Another process for the tests of lock files: `LockPeer read|write LOCK MADE` takes the lock, waiting for
// it, makes the file MADE and keeps the lock until it is ended.
#include <string>

#include "framework/core/errors/GException.h"
#include "framework/files/GFileSystem.h"
#include "framework/files/GLockFile.h"
#include "framework/system/PSystem.h"

int main(int argc, char** argv) {
    if (argc != 4) return 2;
    const bool reads = std::string(argv[1]) == "read";
    try {
        const GLockByFile lock(GPathName(argv[2]), reads ? GLockFile::cReadLock : GLockFile::cWriteLock,
                               true);
        GFileSystem::CreateFile(GPathName(argv[3]), GTypeEnums::cNone, true);
        PSystem::Sleep(60);
    } catch (const GException&) {
        return 1;
    }
    return 0;
}
