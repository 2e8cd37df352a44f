#pragma once

#include <string>

#include "examples/PrinterProcessorWin/JobFile.h"

class GPPJobRecord;

/// The record as lines of "Name: value" and an empty line behind, control characters replaced.
std::wstring FormatAsLines(const GPPJobRecord& record, const JobFile& file);

/// The record as one JSON object on one line: the record's own keys, and of the file "JobFile", its path
/// now, "JobBytes" and "Complete", each null when the file was not taken.
std::wstring FormatAsJson(const GPPJobRecord& record, const JobFile& file);

/// The text with question marks for control characters: a document's user or printer must not steer the
/// reader's terminal.
std::wstring MakePrintable(std::wstring text);
