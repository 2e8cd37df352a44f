#include "framework/GBasicFrameworkCoreLayer.h"

#include "framework/core/GASCIIEncoding.h"
#include "framework/core/GBufferSupport.h"
#include "framework/core/GException.h"
#include "framework/core/GMacExpertEncoding.h"
#include "framework/core/GMacRomanEncoding.h"
#include "framework/core/GPDFDocEncoding.h"
#include "framework/core/GProgress.h"
#include "framework/core/GShiftJISEncoding.h"
#include "framework/core/GStandardEncoding.h"
#include "framework/core/GUTF8Encoding.h"
#include "framework/core/GUnicodeEncoding.h"
#include "framework/core/GWinAnsiEncoding.h"
#include "framework/files/GFileSystem.h"
#include "framework/ipc/GShMemID.h"

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

void Stop() noexcept {
    GProgressCentre::SetInstance(nullptr);
    GShMemID::Finalize();
    GFileSystem::RemoveAllSpecialPaths();
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
