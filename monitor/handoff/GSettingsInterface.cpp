#include "monitor/handoff/GSettingsInterface.h"

#include "framework/streams/text/GDictTextSupport.h"

GSettingsInterface::~GSettingsInterface() = default;

void GSettingsInterface::Set(const GBuffer& key, const GString& value) {
    mValues.Set(key, value);
}

const GString* GSettingsInterface::Find(const GBuffer& key) const {
    return mValues.Find(key);
}

void GSettingsInterface::Clear() {
    mValues.Clear();
}

void GSettingsInterface::WriteText(GString& text) const {
    GDictTextSupport::Write(mValues, text);
}

bool GSettingsInterface::ReadText(GBin2TextStream& stream) {
    return GDictTextSupport::Read(stream, mValues);
}
