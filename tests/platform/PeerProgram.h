#pragma once

#include "framework/system/PSystem.h"
#include "tests/WindowsTesting.h"

/// The program that tests start; it stands beside them.
inline GPathName PeerPath(const char* name = "ProcessPeer.exe") {
    GPathName path = PSystem::GetApplicationPath();
    path.ReplaceLeaf(GString(name));
    return path;
}

/// The arguments that it has written to "argv", each with its zero: as the run-time library and as the system
/// took the line apart.
inline std::pair<std::u16string, std::u16string> WrittenArguments(const TestFolder& folder) {
    const std::u16string units = Plain(BufferOf(folder.Take("argv")));
    const std::size_t middle = units.find(u'\1');
    return {units.substr(0, middle), units.substr(middle + 1)};
}
