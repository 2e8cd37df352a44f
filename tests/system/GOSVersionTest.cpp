#include "framework/system/GOSVersion.h"

#include <gtest/gtest.h>

#include <tuple>

namespace {

TEST(GOSVersion, GivesTheCode) {
    const std::tuple<const char*, GOSVersion, long> rows[] = {
        {"not NT", {1, 4, 10, false, false, false}, 0},
        {"not NT, whatever the numbers", {1, 6, 1, true, true, true}, 0},
        {"4.0", {2, 4, 0, false, false, false}, 3000},
        {"5.0", {2, 5, 0, false, false, false}, 3003},
        {"5.0 server", {2, 5, 0, true, false, false}, 3004},
        {"5.1", {2, 5, 1, false, false, false}, 3005},
        {"5.1 server", {2, 5, 1, true, false, false}, 3006},
        {"5.2", {2, 5, 2, false, false, false}, 3007},
        {"5.2 server", {2, 5, 2, true, false, false}, 3008},
        {"5.3", {2, 5, 3, false, false, false}, 3000},
        {"6.0", {2, 6, 0, false, false, false}, 3009},
        {"6.0 server", {2, 6, 0, true, false, false}, 3010},
        {"6.1", {2, 6, 1, false, false, false}, 3011},
        {"6.1 server", {2, 6, 1, true, false, false}, 3012},
        {"6.1, the exact tests do not matter", {2, 6, 1, false, true, true}, 3011},
        {"6.2 indeed", {2, 6, 2, false, true, false}, 3013},
        {"6.2 server indeed", {2, 6, 2, true, true, false}, 3014},
        {"6.2 that is 6.3", {2, 6, 2, false, false, true}, 3015},
        {"6.2 server that is 6.3", {2, 6, 2, true, false, true}, 3016},
        {"6.2 that is neither", {2, 6, 2, false, false, false}, 3000},
        {"6.2 server that is neither", {2, 6, 2, true, false, false}, 3000},
        {"6.3 by its own number", {2, 6, 3, false, false, true}, 3000},
        {"10.0", {2, 10, 0, false, false, false}, 3000},
        {"10.0 server", {2, 10, 0, true, false, false}, 3000},
    };
    for (const auto& [what, version, code] : rows) EXPECT_EQ(version.GetOSCode(), code) << what;
}

}  // namespace
