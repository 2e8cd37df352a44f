#include "framework/core/encodings/GPlatformEncodingModifier.h"

GPlatformEncodingModifier::GPlatformEncodingModifier(long codePage)
    : mEncoding(GPlatformEncoding::GetInstance()), mOldCodePage(mEncoding->GetModifier()) {
    mEncoding->SetModifier(codePage);
}

GPlatformEncodingModifier::~GPlatformEncodingModifier() {
    mEncoding->SetModifier(mOldCodePage);
}
