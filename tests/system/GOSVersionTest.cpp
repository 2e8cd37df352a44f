#include "framework/system/GOSVersion.h"

#include <cstdio>

#include "tests/core/TextForTests.h"

namespace {

// Platform (2 is NT), version, whether it is a server, and which of the exact tests hold.
TEST(GOSVersion, GivesTheCode) {
    ForEachRow<2>(
        {"1 4.10 -> 0", "1 6.1 server, 6.2, 6.3 -> 0", "2 4.0 -> 3000", "2 5.0 -> 3003",
         "2 5.0 server -> 3004", "2 5.1 -> 3005", "2 5.1 server -> 3006", "2 5.2 -> 3007",
         "2 5.2 server -> 3008",
         // From 6.2 on a system tells the truth only to who asks for a version.
         "2 5.3 -> 3000", "2 6.0 -> 3009", "2 6.0 server -> 3010", "2 6.1 -> 3011", "2 6.1 server -> 3012",
         "2 6.1, 6.2, 6.3 -> 3011", "2 6.2, 6.2 -> 3013", "2 6.2 server, 6.2 -> 3014", "2 6.2, 6.3 -> 3015",
         "2 6.2 server, 6.3 -> 3016", "2 6.2 -> 3000", "2 6.2 server -> 3000", "2 6.3, 6.3 -> 3000",
         "2 10.0 -> 3000", "2 10.0 server -> 3000"},
        [](auto system, auto code) {
            long platform = 0, major = 0, minor = 0;
            std::sscanf(system.data(), "%ld %ld.%ld", &platform, &major, &minor);
            const auto has = [&](std::string_view what) { return system.find(what) != system.npos; };
            const GOSVersion version{platform, major, minor, has("server"), has(", 6.2"), has(", 6.3")};
            EXPECT_EQ(std::to_string(version.GetOSCode()), code);
        });
}

}  // namespace
