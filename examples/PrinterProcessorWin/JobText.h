#pragma once

#include <string>

#include "examples/PrinterProcessorWin/JobFile.h"

class GPPJobRecord;

/// The record as lines of "Name: value" and an empty line behind, control characters replaced.
std::wstring FormatAsLines(const GPPJobRecord& record, const JobFile& file);

/// The record as one JSON object on one line: the record's own keys, and of the file "JobFile", its path
/// now, "JobBytes" and "Complete", each null when the file was not taken, and what it says itself, "Title"
/// and "Pages", null when it does not.
std::wstring FormatAsJson(const GPPJobRecord& record, const JobFile& file);
