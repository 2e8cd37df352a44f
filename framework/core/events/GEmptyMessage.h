#pragma once

/// GEmptyMessage: what a signal carries that says no more than its number.
struct GEmptyMessage {};
