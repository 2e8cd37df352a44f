#include "framework/GBasicFrameworkCoreLayer.h"

#include <memory>

#include "framework/core/encodings/GASCIIEncoding.h"
#include "framework/core/encodings/GLatinEncodings.h"
#include "framework/core/encodings/GMacExpertEncoding.h"
#include "framework/core/encodings/GPlatformEncoding.h"
#include "framework/core/encodings/GUTF8Encoding.h"
#include "framework/core/encodings/GUnicodeEncoding.h"
#include "framework/core/errors/GErrorReporter.h"
#include "framework/core/errors/GException.h"
#include "framework/core/text/GBufferSupport.h"
#include "framework/files/GFileSystem.h"
#include "framework/ipc/GShMemID.h"
#include "framework/services/GPreferences.h"
#include "framework/services/GTrace.h"
#include "framework/streams/GProgress.h"
#include "framework/system/GProcessInfo.h"
#include "framework/system/GSessionInfo.h"

namespace {

void CreateEncodings() {
    GASCIIEncoding::GetInstance();
    GUnicodeEncoding::GetInstance();
    GUTF8Encoding::GetInstance();
    GWinAnsiEncoding::GetInstance();
    GMacRomanEncoding::GetInstance();
    GMacExpertEncoding::GetInstance();
    GStandardEncoding::GetInstance();
    GPDFDocEncoding::GetInstance();
    GShiftJISEncoding::GetInstance();
}

// The shared instances end with the framework, in the reverse order of what they are made of.
void Stop() noexcept {
    GPreferences::Finalize();
    GTrace::SetInstance(nullptr);
    GProgressCentre::SetInstance(nullptr);
    GShMemID::Finalize();
    GFileSystem::RemoveAllSpecialPaths();
    GSessionInfo::SetInstance(nullptr);
    GProcessInfo::SetInstance(nullptr);
    GErrorReporter::SetInstance(nullptr);
    GEncoding::FinalizeAll();
}

}  // namespace

std::int32_t GBasicFrameworkCoreLayer::sInitCount = 0;

void GBasicFrameworkCoreLayer::Initialize() {
    if (sInitCount > 0) {
        ++sInitCount;
        return;
    }
    try {
        GBufferSupport::SetLineEnding(true, true);
        CreateEncodings();
        GException::Initialize();
        GShMemID::Initialize();
        GProgressCentre::GetInstance();
        GTrace::SetInstance(std::make_unique<GTrace>().release());
    } catch (...) {
        Stop();
        throw;
    }
    sInitCount = 1;
}

void GBasicFrameworkCoreLayer::Finalize() noexcept {
    if (sInitCount == 0) return;
    --sInitCount;
    if (sInitCount == 0) Stop();
}
