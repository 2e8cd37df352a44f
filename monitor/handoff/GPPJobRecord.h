#pragma once

#include <cstdint>

#include "framework/core/GExport.h"
#include "framework/core/bytes/GBuffer.h"
#include "framework/core/containers/GDict.h"
#include "framework/core/text/GString.h"

class GPathName;

/// GPPJobRecord: what a processing application is told about one job file.
///
/// It travels as the data of a message of the type cMessageType. A value that is missing reads as
/// empty. One thread at a time; throws only for want of memory.
class QUILLON_EXPORT GPPJobRecord {
public:
    /// The type of the message that carries a job record.
    static constexpr std::int32_t cMessageType = 145;

    GPPJobRecord() = default;
    /// The values are copied; the path becomes a native one.
    GPPJobRecord(const GString& userName, const GPathName& jobPath, const GString& printerName,
                 const GString& portName, std::int32_t copyCount);

    /// Logon name of the user who printed.
    GString GetUserName() const;
    /// The job file as a native path. It may still be in the act of being closed.
    GString GetJobPath() const;
    GString GetPrinterName() const;  ///< the name by which the spooler knows the printer
    GString GetPortName() const;     ///< the port that the job was printed to
    /// 0 when missing or no number.
    std::int32_t GetCopyCount() const;
    /// The value of any key, also one that this version does not know; empty when there is none.
    GString GetValue(const GBuffer& key) const;

    /// The record as a message's data: dictionary text in UTF-8.
    GBuffer GetMessageData() const;
    /// Replaces the record with a message's data; false, with what could be read, when the data is no
    /// dictionary text. Keys beyond those above are kept.
    bool SetFromMessageData(const GBuffer& data);

private:
    GDict<GBuffer, GString> mValues;
};
