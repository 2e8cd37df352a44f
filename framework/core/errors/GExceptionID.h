#pragma once

/// The numbers of the framework's failures. Each is also the key of its text in the string pool.
struct GExceptionID {
    /// Nothing more exact is known; the exception may carry another library's text.
    static constexpr long cGeneral = 2450;
    static constexpr long cOutOfMemory = 2451;  ///< thrown as GMemoryException
    /// A byte or value that cannot be in data of that format.
    static constexpr long cInvalidDataToDecode = 2452;
    static constexpr long cUnexpectedEndOfData = 2453;  ///< the data ends in the middle of something
    static constexpr long cCouldNotReadFile = 2454;     ///< for programs; the framework never throws it
    /// The byte in front of a PNG row is none of the five filters.
    static constexpr long cWrongPNGTag = 2457;
    /// Thrown as GAbortException: the user or the program has given up.
    static constexpr long cAborted = 2459;
    /// A file that may not be used: not to be trusted, or no name is free for it.
    static constexpr long cCouldNotOpenFile = 2460;
    static constexpr long cInvalidDataToEncode = 2462;  ///< for programs; the framework never throws it
    static constexpr long cWrongKeyLength = 2463;       ///< an AES key that has neither 16 nor 32 bytes
    /// A file or target took fewer bytes than it was given: the disk is full.
    static constexpr long cCouldNotWriteFile = 2464;

    static constexpr long cFileNotOpen = 40005;          ///< a call on a closed GFile
    static constexpr long cPositionBeforeStart = 40007;  ///< a negative position in a file
    static constexpr long cFileNotFound = 40010;         ///< no such file or folder, or no path at all
    static constexpr long cInvalidParameter = 40017;     ///< an argument that cannot be
    static constexpr long cPathNotRelative = 40066;      ///< a root name where a relative path is wanted
    static constexpr long cPathNotAbsolute = 40067;      ///< for programs; the framework never throws it
    /// A zero or backslash in a portable path; a job's path that leads elsewhere.
    static constexpr long cInvalidPath = 40068;
    /// Thrown as PWin32SystemException, with the system's own code and text.
    static constexpr long cWin32SystemError = 40073;
    /// The same in the native build, thrown as GCustomException.
    static constexpr long cUNIXSystemError = 40074;
    /// Never thrown: what a GExceptionLocation says while a file is moved.
    static constexpr long cMoving = 40075;
    static constexpr long cCopying = 40076;          ///< the same while a file is copied
    static constexpr long cURLNotSupported = 40090;  ///< a text that begins like a URL, as a path
    static constexpr long cCouldNotLock = 40092;     ///< a path that cannot become a lock file
    /// A lock file is to be removed while its object holds the lock.
    static constexpr long cLockFileInUse = 40093;

    static constexpr long cTargetNotListening = 40150;   ///< for programs; the framework never throws it
    static constexpr long cBroadcastIncomplete = 40151;  ///< for programs; the framework never throws it
    static constexpr long cTargetNotRunning = 40152;     ///< the process has ended while it was waited for
    static constexpr long cMessageTooLarge = 40153;      ///< longer than any queue can hold
    /// A queue or registry in shared memory has another layout.
    static constexpr long cUnknownIPCVersion = 40154;
    static constexpr long cMessageWithoutData = 40155;  ///< for programs; the framework never throws it
    /// A write behind the end of a segment, a full registry, a caller's limit.
    static constexpr long cNotEnoughSpace = 40160;
    /// A read behind the end of a segment, or a segment that makes no sense.
    static constexpr long cNotEnoughData = 40161;
    static constexpr long cInvalidShMemID = 40162;          ///< a name that GShMemID or GIPPrefix refuses
    static constexpr long cSharedMemoryReadFailed = 40163;  ///< a segment claims a size that it does not have
    /// Bytes fit into a segment, but not with the length in front of them.
    static constexpr long cSharedMemoryWriteFailed = 40164;
    /// A segment of that name is there with another size.
    static constexpr long cSharedMemorySizeDiffers = 40168;
    static constexpr long cIPCNotInitialized = 40169;  ///< there is no GIPCManager
    /// A mutex could not be had in the time that was given.
    static constexpr long cCouldNotLockMutex = 40202;
};
