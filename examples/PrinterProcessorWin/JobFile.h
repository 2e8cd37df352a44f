#pragma once

#include <optional>

class GString;

/// Waits until the monitor has closed the job file, then returns its size in bytes; nothing when the
/// file cannot be opened within five seconds.
///
/// A job is announced while its file is still open: the monitor waits for the message to be taken,
/// and closes the file only then. So the first attempt to open the file may fail, and one a few
/// milliseconds later succeeds. Whoever reads a job file needs this loop around the opening.
std::optional<unsigned long long> WaitForJobFile(const GString& nativePath);
