#include "framework/core/GDebugSupport.h"

#include <gtest/gtest.h>

#include <string>
#include <thread>
#include <vector>

#include "tests/core/TextForTests.h"

namespace {

std::vector<std::u16string> LinesOf(const GString& text) {
    std::vector<std::u16string> lines(1);
    for (const char16_t unit : Plain(text)) {
        if (unit == u'\n') {
            lines.emplace_back();
        } else {
            lines.back() += unit;
        }
    }
    return lines;
}

}  // namespace

TEST(GDebugSupport, DumpsTheStackBetweenTwoLinesForThreadsInTurn) {
    std::vector<std::thread> threads;
    for (int i = 0; i < 4; ++i)
        threads.emplace_back([] {
            for (int j = 0; j < 5; ++j) {
                const std::vector<std::u16string> lines = LinesOf(GDebugSupport::GetStackDump());
                EXPECT_GE(lines.size(), 4u);
                EXPECT_EQ(lines.front(), u"=== begin stack dump ===");
                EXPECT_EQ(lines[lines.size() - 2], u"=== end stack dump ===");
                EXPECT_EQ(lines.back(), u"") << "the last line ends";
            }
        });
    for (std::thread& thread : threads) thread.join();
}
