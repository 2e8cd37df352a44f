#pragma once

#include "monitor/handoff/GPPJobRecord.h"
#include "receiver/JobFile.h"

/// Job: what this program is told about a job, and the file that it has taken over.
struct Job {
    GPPJobRecord record;
    JobFile file;
};
