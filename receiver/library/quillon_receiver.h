#pragma once

#include <stdint.h>

/// @file
/// The jobs of the Quillon Port Monitor, for programs in any language that can call C. In
/// QuillonReceiver64.dll.
///
///     quillon_receiver receiver;
///     quillon_job job;
///     char path[1024];
///     if (quillon_open(0, &receiver) != QUILLON_OK) return 1;
///     while (quillon_wait(receiver, QUILLON_FOREVER, &job) == QUILLON_OK) {
///         if (quillon_job_utf8(job, QUILLON_PATH, path, sizeof path, NULL) == QUILLON_OK) puts(path);
///         quillon_job_close(job);
///     }
///     quillon_close(receiver);
///
/// The program's file must be called PrinterProcessorWin.exe, in exactly these letters: the monitor tells no
/// other. From quillon_open to quillon_close the library hears of jobs on a thread of its own, whatever the
/// program does in the meantime. It registers again when another program spoils the messaging, and takes each
/// job's file over at once: "Letter.ps" is called "Letter (waiting 4711-1).ps" until quillon_wait hands the
/// job out, then "Letter (taken 4711-1).ps". Of several receivers one gets the job. From then on the file is
/// the caller's, to be read, moved or deleted; the library has closed it.
///
/// Every function but quillon_error_text and quillon_version returns one of the numbers below. A call that
/// fails changes nothing and hands out the handle 0. Any thread may call any function at any time, except
/// that none may be called from a DllMain. Handles are numbers that never come again, so a wrong one is
/// always recognised. The library makes and changes no COM apartment. Once a receiver was opened, it stays
/// loaded until the process ends.

#ifdef __cplusplus
extern "C" {
#endif

/// A receiver, of which a process has one at a time; 0 is none.
typedef uint64_t quillon_receiver;
/// A job that was handed out; 0 is none. It is there until quillon_job_close, also when its receiver is
/// closed.
typedef uint64_t quillon_job;

/// What functions return.
enum {
    QUILLON_OK = 0,             ///< it has done what was asked for
    QUILLON_NOTHING = 1,        ///< no job in that time; nothing went wrong
    QUILLON_TOO_SMALL = 2,      ///< the text does not fit into the room that was given
    QUILLON_BAD_ARGUMENT = 3,   ///< a null pointer, an unknown option or field
    QUILLON_BAD_HANDLE = 4,     ///< no open receiver or job, or one that was closed during the call
    QUILLON_ALREADY_OPEN = 5,   ///< this process has a receiver
    QUILLON_WRONG_NAME = 6,     ///< the program is not called PrinterProcessorWin.exe
    QUILLON_NO_JOB_FOLDER = 7,  ///< the machine's environment names no temporary folder
    QUILLON_NO_MEMORY = 8,      ///< the memory of the process is used up
    QUILLON_FAILED = 9          ///< the system refused what should always work
};

/// Options of quillon_open; any of them together, or 0.
enum {
    QUILLON_PENDING = 1,  ///< first the jobs that lie there because nobody has been handed them, oldest first
    QUILLON_ANYWHERE = 2  ///< also job files that do not lie below the spooler's job folder: for tests
};

/// Texts of a job. What the document or its user chose may be anything: check it before you use it.
enum {
    QUILLON_PATH = 1,            ///< the job file, as a full path, where it is now
    QUILLON_ANNOUNCED_PATH = 2,  ///< the same before it was taken over
    QUILLON_NAME = 3,            ///< the document: the file's name without folder, mark and ending
    QUILLON_TITLE = 4,           ///< what the document's comments call it; may be empty
    QUILLON_USER = 5,            ///< logon name of the user who printed
    QUILLON_PRINTER = 6,         ///< the printer's name
    QUILLON_PORT = 7,            ///< its port, "QuillonPDFPort:"
    QUILLON_DOUBT = 8            ///< what is wrong or doubtful about the file, in English; usually empty
};

/// Numbers of a job.
enum {
    QUILLON_BYTES = 1,    ///< the file's size
    QUILLON_COPIES = 2,   ///< copies asked for; 0 when nobody said
    QUILLON_PAGES = 3,    ///< as the document's comments say; -1 when they do not
    QUILLON_COMPLETE = 4  ///< 1 when the document ends as it should; 0 for one that was perhaps cancelled
};

/// No limit to a wait.
#define QUILLON_FOREVER 0xFFFFFFFFu

/// What quillon_version returns for this header. A later library that has all of it and more returns more.
#define QUILLON_RECEIVER_VERSION 1u

/// The version of the library that is loaded; QUILLON_RECEIVER_VERSION is that of this header.
uint32_t quillon_version(void);

/// What a returned number means, in English, for ever valid; never null.
const char* quillon_error_text(int32_t result);

/// Starts to receive, and returns once jobs are heard of. With QUILLON_PENDING that is after all that lies
/// there has been taken over. Where another program blocks the messaging this succeeds, too: the receiver
/// goes on trying, quillon_is_listening tells 0, and quillon_next_problem_utf8 why.
int32_t quillon_open(uint32_t options, quillon_receiver* receiver);

/// Stops. Waits of other threads return QUILLON_BAD_HANDLE. Jobs that were not handed out stay as they are,
/// for QUILLON_PENDING. Takes some seconds at most: a file that is just being taken over is waited for.
int32_t quillon_close(quillon_receiver receiver);

/// Hands out the next job, waiting for one for so many milliseconds: 0 not at all, QUILLON_FOREVER without
/// limit. Returns QUILLON_NOTHING when none came. A job is handed out once; of several threads that wait one
/// gets it.
int32_t quillon_wait(quillon_receiver receiver, uint32_t milliseconds, quillon_job* job);

/// An event of Windows (a HANDLE) that is set as long as a job can be had without waiting, for the loop of a
/// window: MsgWaitForMultipleObjects, then quillon_wait with 0 until it returns QUILLON_NOTHING. It can only
/// be waited for, and belongs to the receiver: it is closed by quillon_close, after which nobody may wait for
/// it.
int32_t quillon_get_event(quillon_receiver receiver, intptr_t* event);

/// 1 while the monitor can tell this process of jobs, 0 while something keeps it from being told.
int32_t quillon_is_listening(quillon_receiver receiver, int32_t* listening);

/// The oldest problem that has not been asked for yet, one line in English for a log: a job whose file could
/// not be had, or what blocks the messaging. QUILLON_NOTHING when there is none. A hundred are kept; the same
/// one counts again only after a minute. Texts are given as by quillon_job_utf8.
int32_t quillon_next_problem_utf8(quillon_receiver receiver, char* text, uint32_t size, uint32_t* length);

///@{ A text of a job, with a zero behind it. `size` is the room at `text`, the zero's included, in bytes or
/// in units of 16 bits. `length`, which may be null, is told the length without the zero, also with
/// QUILLON_TOO_SMALL; then nothing is written to `text`. With a null `text` and the size 0 the length alone
/// is told.
int32_t quillon_job_utf8(quillon_job job, int32_t field, char* text, uint32_t size, uint32_t* length);
int32_t quillon_job_utf16(quillon_job job, int32_t field, uint16_t* text, uint32_t size, uint32_t* length);
///@}

/// A number of a job.
int32_t quillon_job_number(quillon_job job, int32_t field, int64_t* value);

/// Forgets a job. Its file stays.
int32_t quillon_job_close(quillon_job job);

#ifdef __cplusplus
}
#endif
