#pragma once

#include <optional>
#include <string>

class GPPJobRecord;

/// The record as lines of "Name: value" and an empty line behind. Control characters show as
/// question marks: a document's user or printer must not steer the reader's terminal.
std::wstring FormatAsLines(const GPPJobRecord& record, std::optional<unsigned long long> jobBytes);

/// The record as one JSON object on one line, with the record's own key names and "JobBytes", the
/// size of the job file, null when it is not known.
std::wstring FormatAsJson(const GPPJobRecord& record, std::optional<unsigned long long> jobBytes);
