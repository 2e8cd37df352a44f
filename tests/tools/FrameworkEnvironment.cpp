#include <gtest/gtest.h>

#include "framework/GBasicFrameworkCoreLayer.h"

namespace {

/// The framework runs during all tests of this program.
class FrameworkEnvironment : public testing::Environment {
public:
    void SetUp() override { GBasicFrameworkCoreLayer::Initialize(); }
    void TearDown() override { GBasicFrameworkCoreLayer::Finalize(); }
};

[[maybe_unused]] const auto* const sEnvironment = testing::AddGlobalTestEnvironment(new FrameworkEnvironment);

}  // namespace
