#pragma once

#include <memory>
#include <string>

#include "tests/tools/ChildProcess.h"

/// IPCPeer with these arguments.
inline std::unique_ptr<ChildProcess> StartPeer(const std::string& arguments) {
    const std::string line = "IPCPeer.exe " + arguments;
    return std::make_unique<ChildProcess>(std::wstring(line.begin(), line.end()), L"NUL", L"NUL");
}
