#pragma once

/// Marks what the DLL exports. The build that compiles the framework defines it as "dllexport", a
/// program that links the DLL's import library defines it as "dllimport"; elsewhere it is nothing.
#ifndef QUILLON_EXPORT
#define QUILLON_EXPORT
#endif
