#pragma once

#include <optional>
#include <string>
#include <vector>

#include "tools/quillonctl/LoadedLibrary.h"
#include "tools/quillonctl/PrintPolicies.h"
#include "tools/quillonctl/PrintQueue.h"
#include "tools/quillonctl/Status.h"

/// DoctorFacts: all that `doctor` judges, asked for once.
struct DoctorFacts {
    struct Service {
        bool isRunning = false;
        bool isDisabled = false;
    };
    struct Job {
        std::wstring printer;
        QueuedJob job;
    };

    StatusFacts status;
    /// Wine's spooler is part of each program that prints: there is no service, no queue, and no library that
    /// stays loaded. Those answers are then unknown and not asked for.
    bool isWine = false;
    Answer<Service> spooler;
    std::optional<std::wstring> libraryFault;  // of the file on the disk
    Answer<LoadedLibrary::State> loaded;
    Answer<std::vector<Job>> jobs;
    std::wstring messagingObstacle;               // empty: none
    Answer<std::vector<long>> silentReceivers;    // processes of the told name that have not registered
    std::wstring folderFault;                     // why no file can be made in the job folder; empty: it can
    Answer<std::vector<PrintPolicy>> policies{};  // in force

    /// Asks the system. A question that fails leaves its reason in place of the answer.
    static DoctorFacts Gather();
};
