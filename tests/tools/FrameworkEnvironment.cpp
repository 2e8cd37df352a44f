#include <gtest/gtest.h>

#include <optional>

#include "framework/GFrameworkScope.h"

namespace {

/// The framework runs during all tests of this program.
struct FrameworkEnvironment : testing::Environment {
    void SetUp() override { mFramework.emplace(); }
    void TearDown() override { mFramework.reset(); }
    std::optional<GFrameworkScope> mFramework;
};

[[maybe_unused]] const auto* const sEnvironment = testing::AddGlobalTestEnvironment(new FrameworkEnvironment);

}  // namespace
