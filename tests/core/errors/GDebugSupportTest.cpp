#include "framework/core/errors/GDebugSupport.h"

#include "tests/core/TextForTests.h"

TEST(GDebugSupport, DumpsTheStackBetweenTwoLinesForThreadsInTurn) {
    std::vector<std::jthread> threads;
    for (int i = 0; i < 4; ++i)
        threads.emplace_back([] {
            for (int j = 0; j < 5; ++j) {
                const std::u16string dump = Plain(GDebugSupport::GetStackDump());
                EXPECT_TRUE(dump.starts_with(u"=== begin stack dump ===\n"));
                EXPECT_TRUE(dump.ends_with(u"\n=== end stack dump ===\n"));
                EXPECT_GT(dump.size(), 50u) << "with something between";
            }
        });
}
