#pragma once

/// Marks what the DLL exports. The build that compiles the framework defines it as "dllexport", a
/// program that links the DLL's import library defines it as "dllimport"; elsewhere it is nothing.
#ifndef QUILLON_EXPORT
#define QUILLON_EXPORT
#endif

/// The same for a class that stands whole in its header and of which every program takes a copy: a
/// program that links the DLL's import library leaves it undefined.
#ifndef QUILLON_EXPORT_INLINE
#define QUILLON_EXPORT_INLINE
#endif
