#pragma once

/// The bits of the mode in which a file is opened.
///
/// Without cCreate and cStartEmpty the file must exist. Others may read an open file but not write
/// it, unless cAllowWriters is given: then others may write it, and read it only with cAllowReaders.
struct GFileOpenMode {
    static constexpr long cRead = 1;           ///< reading; together with cWrite both
    static constexpr long cWrite = 2;          ///< writing
    static constexpr long cCreate = 4;         ///< missing folders, too; an existing file keeps its content
    static constexpr long cStartEmpty = 8;     ///< makes the file or empties it
    static constexpr long cAllowReaders = 16;  ///< only together with cAllowWriters
    static constexpr long cAllowWriters = 32;  ///< others may open it for writing
    static constexpr long cWriteThrough = 64;  ///< writes reach the disk before they return
};
