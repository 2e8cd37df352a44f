#pragma once

/// @file
/// The marks of what the DLL exports.
#include "platform/base/PExport.h"
