#pragma once

// The one place that includes <windows.h>. Its macros would rename those methods of ours that share
// an API's name (GLockFile::DeleteFile, GFileSystemBase::CreateFile) in some sources only.
#ifndef NOMINMAX
#define NOMINMAX
#endif
#ifndef WIN32_LEAN_AND_MEAN
#define WIN32_LEAN_AND_MEAN
#endif
#include <windows.h>
#undef CreateFile
#undef CreateMutex
#undef CreateProcess
#undef CopyFile
#undef DeleteFile
#undef GetMessage
#undef GetObject
#undef GetUserName
#undef GetClassName
#undef MoveFile
#undef OutputDebugString
#undef ReplaceFile
#undef SendMessage
#undef Yield
