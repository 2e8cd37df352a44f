#pragma once

#include <cstdint>
#include <string>

#include "receiver/JobFile.h"

/// ReceivedJob: a job in plain values, which any thread may read without the framework.
struct ReceivedJob {
    JobFile file;
    std::wstring announcedPath;
    std::wstring user;
    std::wstring printer;
    std::wstring port;
    std::int32_t copies = 0;
};
