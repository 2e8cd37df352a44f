#include "framework/files/GFileSystem.h"

#include "PPlatformFiles.h"
#include "framework/files/GFileSystemDefinitions.h"

template class GFileSystemBase<PFileSystemImp>;
