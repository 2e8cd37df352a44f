#include "framework/GBasicFrameworkCoreLayer.h"

#include <gtest/gtest.h>

#include "framework/core/containers/GDictUtil.h"
#include "framework/core/encodings/GUTF8Encoding.h"
#include "framework/core/errors/GException.h"
#include "framework/core/errors/GStringPool.h"
#include "framework/ipc/GShMemID.h"

namespace {

bool IsUp() {
    return !GShMemID::GetSpecialID(GShMemID::cRegistry).IsEmpty();
}

TEST(GBasicFrameworkCoreLayer, StartsOnceAndStopsWithTheLastUserButLeavesTheTexts) {
    GBasicFrameworkCoreLayer::Finalize();
    EXPECT_FALSE(IsUp()) << "one too many does nothing";
    for (int round = 0; round < 3; ++round) {
        SCOPED_TRACE(round);
        GBasicFrameworkCoreLayer::Initialize();
        EXPECT_TRUE(IsUp());
        GBasicFrameworkCoreLayer::Initialize();
        GBasicFrameworkCoreLayer::Finalize();
        EXPECT_TRUE(IsUp());
        EXPECT_TRUE(GDictUtil::GetEOLString() == GString("\r\n"));
        EXPECT_TRUE(GSimpleException(40153).GetDescription() ==
                    GString("The message you tried to send was too large"));
        const GString before = GString::FromUTF8("na\u00EFve");
        GBasicFrameworkCoreLayer::Finalize();
        EXPECT_FALSE(IsUp());
        EXPECT_TRUE(before == GString::FromUTF8("na\u00EFve"));
        EXPECT_EQ(before.GetLength(), 5);
    }
}

}  // namespace
