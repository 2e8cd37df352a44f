#pragma once

#include <string>

#include "examples/PrinterProcessorWin/JobProgram.h"
#include "receiver/JobFile.h"

class GPPJobRecord;

/// The record as lines of "Name: value" and an empty line behind, control characters replaced.
std::wstring FormatAsLines(const GPPJobRecord& record, const JobFile& file);

/// The record as one JSON object on one line: the record's own keys, and of the file "JobFile", its path
/// now, "JobBytes" and "Complete", each null when the file was not taken, and what it says itself, "Title"
/// and "Pages", null when it does not.
std::wstring FormatAsJson(const GPPJobRecord& record, const JobFile& file);

/// How the program of a job ended, in the two forms: "Job file" and "Program" as lines; as one JSON object
/// "JobFile", "Program" (its path), "Outcome" ("succeeded", "failed", "crashed", "not started" or
/// "running"), "ExitCode" and "Milliseconds", these two null for one that has not been started or runs.
std::wstring FormatAsLines(const JobFile& file, const std::wstring& program, const ProgramResult& result);
std::wstring FormatAsJson(const JobFile& file, const std::wstring& program, const ProgramResult& result);
