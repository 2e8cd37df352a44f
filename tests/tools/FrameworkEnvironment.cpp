#include <gtest/gtest.h>

#include <optional>

#include "framework/GFrameworkScope.h"

namespace {

/// The framework runs during all tests of this program.
class FrameworkEnvironment : public testing::Environment {
public:
    void SetUp() override { mFramework.emplace(); }
    void TearDown() override { mFramework.reset(); }

private:
    std::optional<GFrameworkScope> mFramework;
};

[[maybe_unused]] const auto* const sEnvironment = testing::AddGlobalTestEnvironment(new FrameworkEnvironment);

}  // namespace
