#pragma once

/// The numbers of the framework's failures. Each is also the key of its text in the string pool.
struct GExceptionID {
    static constexpr long cGeneral = 2450;
    static constexpr long cOutOfMemory = 2451;
    static constexpr long cInvalidDataToDecode = 2452;
    static constexpr long cUnexpectedEndOfData = 2453;
    static constexpr long cCouldNotReadFile = 2454;
    static constexpr long cWrongPNGTag = 2457;
    static constexpr long cAborted = 2459;
    static constexpr long cCouldNotOpenFile = 2460;
    static constexpr long cInvalidDataToEncode = 2462;
    static constexpr long cWrongKeyLength = 2463;
    static constexpr long cCouldNotWriteFile = 2464;

    static constexpr long cFileNotOpen = 40005;
    static constexpr long cPositionBeforeStart = 40007;
    static constexpr long cFileNotFound = 40010;
    static constexpr long cInvalidParameter = 40017;
    static constexpr long cPathNotRelative = 40066;
    static constexpr long cPathNotAbsolute = 40067;
    static constexpr long cInvalidPath = 40068;
    static constexpr long cWin32SystemError = 40073;
    static constexpr long cUNIXSystemError = 40074;
    static constexpr long cMoving = 40075;
    static constexpr long cCopying = 40076;
    static constexpr long cURLNotSupported = 40090;
    static constexpr long cCouldNotLock = 40092;
    static constexpr long cLockFileInUse = 40093;

    static constexpr long cTargetNotListening = 40150;
    static constexpr long cBroadcastIncomplete = 40151;
    static constexpr long cTargetNotRunning = 40152;
    static constexpr long cMessageTooLarge = 40153;
    static constexpr long cUnknownIPCVersion = 40154;
    static constexpr long cMessageWithoutData = 40155;
    static constexpr long cNotEnoughSpace = 40160;
    static constexpr long cNotEnoughData = 40161;
    static constexpr long cInvalidShMemID = 40162;
    static constexpr long cSharedMemoryReadFailed = 40163;
    static constexpr long cSharedMemoryWriteFailed = 40164;
    static constexpr long cSharedMemorySizeDiffers = 40168;
    static constexpr long cIPCNotInitialized = 40169;
    static constexpr long cCouldNotLockMutex = 40202;
};
