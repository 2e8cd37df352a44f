#include "monitor/handoff/GPPJobRecord.h"

#include "framework/core/encodings/GUTF8Encoding.h"
#include "framework/core/paths/GPathName.h"
#include "framework/streams/GMemoryInStream.h"
#include "framework/streams/text/GBin2TextStream.h"
#include "framework/streams/text/GDictTextSupport.h"
#include "monitor/handoff/GSettingsInterface.h"

GPPJobRecord::GPPJobRecord(const GString& userName, const GPathName& jobPath, const GString& printerName,
                           const GString& portName, std::int32_t copyCount) {
    mValues.Set(GPPSettingsKey::cUserName, userName);
    mValues.Set(GPPSettingsKey::cJobPath, jobPath.GetNativePathString());
    mValues.Set(GPPSettingsKey::cPrinterName, printerName);
    mValues.Set(GPPSettingsKey::cPortName, portName);
    mValues.Set(GPPSettingsKey::cCopyCount, GString(copyCount));
}

GString GPPJobRecord::GetUserName() const {
    return GetValue(GPPSettingsKey::cUserName);
}

GString GPPJobRecord::GetJobPath() const {
    return GetValue(GPPSettingsKey::cJobPath);
}

GString GPPJobRecord::GetPrinterName() const {
    return GetValue(GPPSettingsKey::cPrinterName);
}

GString GPPJobRecord::GetPortName() const {
    return GetValue(GPPSettingsKey::cPortName);
}

std::int32_t GPPJobRecord::GetCopyCount() const {
    return GetValue(GPPSettingsKey::cCopyCount).GetInt32();
}

GString GPPJobRecord::GetValue(const GBuffer& key) const {
    const GString* value = mValues.Find(key);
    return value != nullptr ? *value : GString();
}

GBuffer GPPJobRecord::GetMessageData() const {
    GString text;
    GDictTextSupport::Write(mValues, text);
    return text.GetBuffer(GUTF8Encoding::GetInstance());
}

bool GPPJobRecord::SetFromMessageData(const GBuffer& data) {
    GMemoryInStream bytes(data);
    GBin2TextStream text(bytes, GUTF8Encoding::GetInstance());
    return GDictTextSupport::Read(text, mValues);
}
