#include "tools/quillonctl/Listeners.h"

#include <gmock/gmock.h>

namespace {

TEST(Listeners, AProcessIsListedOnceUnderItsOwnSession) {
    const struct {
        const char* what;
        std::vector<GIPCQueueAddress> registrations;  // session, process, registration
        std::vector<std::pair<long, long>> expected;  // session, process
    } rows[] = {
        {"nobody", {}, {}},
        {"its session's registry alone", {{2, 10, 5}}, {{2, 10}}},
        {"the shared one first", {{-1, 10, 5}, {2, 10, 6}}, {{2, 10}}},
        {"the shared one last", {{2, 10, 6}, {-1, 10, 5}}, {{2, 10}}},
        {"the shared one as that of session 0", {{0, 10, 5}, {1, 10, 6}}, {{1, 10}}},
        {"session 0 itself", {{-1, 10, 5}, {0, 10, 5}}, {{0, 10}}},
        {"the shared one alone", {{-1, 10, 5}}, {{-1, 10}}},
        {"twice in one registry", {{1, 10, 5}, {1, 10, 6}}, {{1, 10}}},
        {"three processes",
         {{0, 30, 1}, {0, 10, 2}, {0, 20, 3}, {1, 10, 4}, {2, 20, 5}},
         {{0, 30}, {1, 10}, {2, 20}}},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.what);
        GTable<GIPCQueueAddress> registrations;
        for (const GIPCQueueAddress& registration : row.registrations) registrations.Append(registration);
        std::vector<std::pair<long, long>> found;
        for (const Listener& listener : Listeners::Merge(registrations)) {
            found.emplace_back(listener.session, listener.processID);
        }
        EXPECT_EQ(found, row.expected);
    }
}

}  // namespace
