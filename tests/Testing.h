#pragma once

// What the tests of all rooms use of the standard library and of GoogleTest, so that a test's own includes
// name what it tests.
#include <gmock/gmock.h>

#include <algorithm>
#include <array>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <functional>
#include <limits>
#include <memory>
#include <random>
#include <stdexcept>
#include <string>
#include <string_view>
#include <thread>
#include <tuple>
#include <utility>
#include <vector>

// For texts with zero bytes in them.
using namespace std::string_literals;
using namespace std::string_view_literals;
