#pragma once

#include "framework/core/GExport.h"
#include "framework/core/bytes/GBuffer.h"
#include "framework/core/containers/GDict.h"
#include "framework/core/text/GString.h"

class GBin2TextStream;

/// The keys that the monitor and the processing applications share. Those of the job record are in
/// every notification; the others name what an application keeps about a printer.
struct GPPSettingsKey {
    static constexpr const char* cUserName = "UserName";        ///< the logon name of the user who printed
    static constexpr const char* cJobPath = "JobPath";          ///< the job file as a native path
    static constexpr const char* cPrinterName = "PrinterName";  ///< the printer's name
    static constexpr const char* cPortName = "PortName";        ///< the port's name
    static constexpr const char* cCopyCount = "CopyCount";      ///< copies, in decimal

    ///@{ What an application may keep about a printer; the framework itself never looks at it.
    static constexpr const char* cPrinterProcessorRegistry = "PrinterProcessorRegistry";
    static constexpr const char* cActorName = "ActorName";
    static constexpr const char* cApplicationPath = "ApplicationPath";
    static constexpr const char* cContextFilePath = "ContextFilePath";
    static constexpr const char* cIsVirtualPrinter = "IsVirtualPrinter";
    static constexpr const char* cIsPlugin = "IsPlugin";
    static constexpr const char* cPDFSettings = "PDFSettings";
    ///@}
};

/// GSettingsInterface: named string values and their text form, for the settings classes of a
/// processing application, which say where the text is kept.
///
/// Keys are ASCII, values any text. Throws only for want of memory, except where the derived class
/// says otherwise. One thread at a time.
class QUILLON_EXPORT GSettingsInterface {
public:
    GSettingsInterface() = default;
    GSettingsInterface(const GSettingsInterface& other) = default;
    GSettingsInterface& operator=(const GSettingsInterface& other) = default;
    virtual ~GSettingsInterface();

    /// Fetches the values from where the application keeps them; false when there are none.
    virtual bool Load() = 0;
    /// Keeps the values where Load() finds them.
    virtual void Store() const = 0;
    /// Removes what Store has kept.
    virtual void Forget() = 0;

    /// Inserts the value or replaces the one that `key` has.
    void Set(const GBuffer& key, const GString& value);
    /// Null when there is none; valid until the values change.
    const GString* Find(const GBuffer& key) const;
    void Clear();  ///< removes all values from memory; what Store() has kept stays

    /// Replaces `text` with the text form of all values (GDictTextSupport).
    void WriteText(GString& text) const;
    /// Replaces the values with those read; false, with the values before the fault, for bad text.
    bool ReadText(GBin2TextStream& stream);

private:
    GDict<GBuffer, GString> mValues;
};
