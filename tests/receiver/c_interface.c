/* The C interface as a program in C sees it: built without our C++, linked with the import library alone. Its job files
   lie below a temporary folder of its own; the jobs are those from before. */
#include <quillon_receiver.h>
#include <stdio.h>
#include <string.h>
#include <windows.h>

#include <objbase.h>

enum { WAITERS = 4, MANY = 20 };

static wchar_t folder[MAX_PATH];
static int failures;

static void check(int line, const char *what, long long actual, long long expected) {
    if (actual == expected) return;
    printf("line %d: %s is %lld in place of %lld\n", line, what, actual, expected);
    ++failures;
}
#define CHECK(actual, expected) check(__LINE__, #actual, (long long)(actual), (long long)(expected))

static void put_file(const wchar_t *name, const char *bytes) {
    wchar_t path[MAX_PATH];
    FILE *file;
    swprintf(path, MAX_PATH, L"%ls\\anna\\Proof\\%ls", folder, name);
    file = _wfopen(path, L"wb");
    if (file == NULL) { CHECK(GetLastError(), 0); return; }
    fputs(bytes, file), fclose(file);
}

static int count_files(const wchar_t *pattern) {
    wchar_t path[MAX_PATH];
    WIN32_FIND_DATAW entry;
    int count = 0;
    swprintf(path, MAX_PATH, L"%ls\\anna\\Proof\\%ls", folder, pattern);
    HANDLE entries = FindFirstFileW(path, &entry);
    if (entries == INVALID_HANDLE_VALUE) return 0;
    do ++count; while (FindNextFileW(entries, &entry));
    FindClose(entries);
    return count;
}

static void run(const wchar_t *command, const wchar_t *below) {
    wchar_t line[2 * MAX_PATH];
    swprintf(line, 2 * MAX_PATH, L"%ls \"%ls%ls\"", command, folder, below);
    CHECK(_wsystem(line), 0);
}

/* The library finds the spooler's temporary folder where Windows would, and must not yet be asked. */
static void make_folder(void) {
    wchar_t temporary[MAX_PATH];
    GetTempPathW(MAX_PATH, temporary);
    swprintf(folder, MAX_PATH, L"%lsc_interface%lu", temporary, GetCurrentProcessId());
    run(L"mkdir", L"\\anna\\Proof");
    SetEnvironmentVariableW(L"TMP", folder);
}

static void refuses_what_makes_no_sense(void) {
    quillon_receiver receiver = 7;
    quillon_job job = 7;
    intptr_t event;
    int32_t listening;
    int64_t number;
    CHECK(quillon_version(), QUILLON_RECEIVER_VERSION);
    CHECK(quillon_open(0, NULL), QUILLON_BAD_ARGUMENT);
    CHECK(quillon_open(4, &receiver), QUILLON_BAD_ARGUMENT);
    CHECK(receiver, 0);
    CHECK(quillon_wait(1, 0, NULL), QUILLON_BAD_ARGUMENT);
    CHECK(quillon_get_event(1, NULL), QUILLON_BAD_ARGUMENT);
    CHECK(quillon_is_listening(1, NULL), QUILLON_BAD_ARGUMENT);
    CHECK(quillon_job_number(1, QUILLON_BYTES, NULL), QUILLON_BAD_ARGUMENT);
    static const uint64_t wrong[] = {0, 1, 0xFFFFFFFFFFFFFFFFu};
    for (int i = 0; i < 3; ++i) {
        CHECK(quillon_wait(wrong[i], QUILLON_FOREVER, &job), QUILLON_BAD_HANDLE);
        CHECK(job, 0);
        CHECK(quillon_get_event(wrong[i], &event), QUILLON_BAD_HANDLE);
        CHECK(quillon_is_listening(wrong[i], &listening), QUILLON_BAD_HANDLE);
        CHECK(quillon_next_problem_utf8(wrong[i], NULL, 0, NULL), QUILLON_BAD_HANDLE);
        CHECK(quillon_close(wrong[i]), QUILLON_BAD_HANDLE);
        CHECK(quillon_job_utf8(wrong[i], QUILLON_PATH, NULL, 0, NULL), QUILLON_BAD_HANDLE);
        CHECK(quillon_job_utf16(wrong[i], QUILLON_PATH, NULL, 0, NULL), QUILLON_BAD_HANDLE);
        CHECK(quillon_job_number(wrong[i], QUILLON_BYTES, &number), QUILLON_BAD_HANDLE);
        CHECK(quillon_job_close(wrong[i]), QUILLON_BAD_HANDLE);
    }
    for (int32_t result = 0; result <= QUILLON_FAILED; ++result)
        CHECK(strcmp(quillon_error_text(result), quillon_error_text(-1)) != 0, 1);
    CHECK(strcmp(quillon_error_text(QUILLON_FAILED + 1), quillon_error_text(-1)), 0);
}

static void gives_texts_into_any_room(quillon_job job) {
    static const struct { uint32_t size; int32_t result; const char *text; } rows[] = {
        {8, QUILLON_OK, "Gr\xC3\xBC\xC3\x9F"}, {7, QUILLON_OK, "Gr\xC3\xBC\xC3\x9F"},
        {6, QUILLON_TOO_SMALL, "before"}, {1, QUILLON_TOO_SMALL, "before"}, {0, QUILLON_BAD_ARGUMENT, "before"}};
    uint32_t length;
    for (int i = 0; i < 5; ++i) {
        char text[16] = "before";
        length = 99;
        CHECK(quillon_job_utf8(job, QUILLON_NAME, text, rows[i].size, &length), rows[i].result);
        CHECK(strcmp(text, rows[i].text), 0);
        CHECK(length, rows[i].size == 0 ? 99 : 6);
    }
    uint16_t units[5] = {1, 1, 1, 1, 1};
    CHECK(quillon_job_utf16(job, QUILLON_NAME, units, 4, &length), QUILLON_TOO_SMALL);
    CHECK(units[0] == 1 && length == 4, 1);
    CHECK(quillon_job_utf16(job, QUILLON_NAME, units, 5, NULL), QUILLON_OK);
    CHECK(memcmp(units, L"Gr\u00FC\u00DF", sizeof units), 0);
    CHECK(quillon_job_utf8(job, QUILLON_NAME, NULL, 0, &length), QUILLON_OK);
    CHECK(quillon_job_utf8(job, QUILLON_NAME, NULL, 1, &length), QUILLON_BAD_ARGUMENT);
    CHECK(quillon_job_utf8(job, QUILLON_NAME, NULL, 0, NULL), QUILLON_BAD_ARGUMENT);
    CHECK(quillon_job_utf8(job, 0, NULL, 0, &length), QUILLON_BAD_ARGUMENT);
    CHECK(quillon_job_utf8(job, QUILLON_DOUBT + 1, NULL, 0, &length), QUILLON_BAD_ARGUMENT);
}

static void gives_all_fields(quillon_job job) {
    static const char *const texts[] = {"", "(taken ", "\\anna\\Proof\\Gr\xC3\xBC\xC3\x9F.ps", "Gr\xC3\xBC\xC3\x9F",
                                        "A title", "anna", "Proof", "QuillonPDFPort:", ""};
    static const long long numbers[] = {0, 49, 1, 3, 1};
    char text[MAX_PATH];
    int64_t number;
    for (int32_t field = QUILLON_PATH; field <= QUILLON_DOUBT; ++field) {
        CHECK(quillon_job_utf8(job, field, text, sizeof text, NULL), QUILLON_OK);
        if (strstr(text, texts[field]) == NULL) printf("text %d is %s\n", (int)field, text), ++failures;
    }
    for (int32_t field = QUILLON_BYTES; field <= QUILLON_COMPLETE; ++field) {
        CHECK(quillon_job_number(job, field, &number), QUILLON_OK);
        CHECK(number, numbers[field]);
    }
    CHECK(quillon_job_number(job, QUILLON_COMPLETE + 1, &number), QUILLON_BAD_ARGUMENT);
}

static DWORD WINAPI wait_for_ever(void *receiver) {
    quillon_job job;
    int32_t result;
    DWORD count = 0;
    while ((result = quillon_wait(*(quillon_receiver *)receiver, QUILLON_FOREVER, &job)) == QUILLON_OK)
        count += quillon_job_close(job) == QUILLON_OK;
    return result == QUILLON_BAD_HANDLE ? count : 1000;
}

static void hands_out_what_is_pending(void) {
    quillon_receiver receiver, second;
    quillon_job job, late, none;
    intptr_t event;
    int32_t listening;
    char text[400];
    put_file(L"Gr\u00FC\u00DF.ps", "%!PS-Adobe-3.0\n%%Title: A title\n%%Pages: 3\n%%EOF\n");
    put_file(L"late.ps", "%!PS cut short");
    CHECK(quillon_open(QUILLON_PENDING, &receiver), QUILLON_OK);
    CHECK(quillon_open(0, &second), QUILLON_ALREADY_OPEN);
    CHECK(quillon_is_listening(receiver, &listening), QUILLON_OK);
    CHECK(listening, 1);
    CHECK(quillon_get_event(receiver, &event), QUILLON_OK);
    CHECK(WaitForSingleObject((HANDLE)event, 0), WAIT_OBJECT_0);
    CHECK(ResetEvent((HANDLE)event), FALSE);
    CHECK(quillon_wait(receiver, 0, &job), QUILLON_OK);
    CHECK(count_files(L"Gr*(taken *).ps"), 1);
    CHECK(count_files(L"late (waiting *).ps"), 1);
    gives_all_fields(job);
    gives_texts_into_any_room(job);
    CHECK(quillon_wait(job, 0, &late), QUILLON_BAD_HANDLE);
    CHECK(quillon_job_close(receiver), QUILLON_BAD_HANDLE);
    CHECK(quillon_wait(receiver, QUILLON_FOREVER, &late), QUILLON_OK);
    CHECK(WaitForSingleObject((HANDLE)event, 0), WAIT_TIMEOUT);
    CHECK(quillon_wait(receiver, 20, &none), QUILLON_NOTHING);
    CHECK(quillon_next_problem_utf8(receiver, text, 3, NULL), QUILLON_TOO_SMALL);
    CHECK(quillon_next_problem_utf8(receiver, text, sizeof text, NULL), QUILLON_OK);
    CHECK(strstr(text, "%%EOF") != NULL, 1);
    CHECK(quillon_next_problem_utf8(receiver, text, sizeof text, NULL), QUILLON_NOTHING);
    CHECK(quillon_close(receiver), QUILLON_OK);
    CHECK(quillon_close(receiver), QUILLON_BAD_HANDLE);
    gives_all_fields(job);
    CHECK(quillon_job_close(job), QUILLON_OK);
    CHECK(quillon_job_close(job), QUILLON_BAD_HANDLE);
}

static void leaves_what_nobody_asked_for(void) {
    quillon_receiver receiver;
    quillon_job job;
    put_file(L"left.ps", "%!PS");
    CHECK(quillon_open(QUILLON_PENDING, &receiver), QUILLON_OK);
    CHECK(quillon_close(receiver), QUILLON_OK);
    CHECK(count_files(L"left (waiting *).ps"), 1);
    CHECK(quillon_open(0, &receiver), QUILLON_OK);
    CHECK(quillon_wait(receiver, 0, &job), QUILLON_NOTHING);
    CHECK(quillon_close(receiver), QUILLON_OK);
}

/* Any program can hold the lock of the registries. */
static void goes_on_when_the_messaging_is_free_again(void) {
    quillon_receiver receiver;
    int32_t listening = 1;
    char text[400];
    HANDLE lock = CreateMutexA(NULL, FALSE, "Global\\QulShLGIPC_PP");
    CHECK(WaitForSingleObject(lock, INFINITE), WAIT_OBJECT_0);
    CHECK(quillon_open(0, &receiver), QUILLON_OK);
    CHECK(quillon_is_listening(receiver, &listening), QUILLON_OK);
    CHECK(listening, 0);
    CHECK(quillon_next_problem_utf8(receiver, text, sizeof text, NULL), QUILLON_OK);
    CHECK(strstr(text, "mutex") != NULL, 1);
    ReleaseMutex(lock);
    while (!listening && quillon_is_listening(receiver, &listening) == QUILLON_OK) Sleep(10);
    CHECK(listening, 1);
    CHECK(quillon_close(receiver), QUILLON_OK);
    CloseHandle(lock);
}

/* With what was left before: each job goes to one of the threads, and the closing ends them. */
static void serves_many_threads_and_ends_their_waits(void) {
    quillon_receiver receiver;
    HANDLE threads[WAITERS];
    DWORD count, sum = 0;
    for (int i = 1; i < MANY; ++i) {
        wchar_t name[16];
        swprintf(name, 16, L"many%d.ps", i), put_file(name, "%!PS");
    }
    CHECK(quillon_open(QUILLON_PENDING, &receiver), QUILLON_OK);
    for (int i = 0; i < WAITERS; ++i) threads[i] = CreateThread(NULL, 0, wait_for_ever, &receiver, 0, NULL);
    while (count_files(L"*(waiting *).ps") > 0) Sleep(10);
    CHECK(quillon_close(receiver), QUILLON_OK);
    CHECK(WaitForMultipleObjects(WAITERS, threads, TRUE, INFINITE) < WAITERS, 1);
    for (int i = 0; i < WAITERS; ++i) GetExitCodeThread(threads[i], &count), sum += count;
    CHECK(sum, MANY);
    CHECK(count_files(L"*(taken *).ps"), MANY + 2);
}

int main(void) {
    quillon_receiver receiver;
    make_folder();
    refuses_what_makes_no_sense();
    hands_out_what_is_pending();
    leaves_what_nobody_asked_for();
    goes_on_when_the_messaging_is_free_again();
    serves_many_threads_and_ends_their_waits();
    CHECK(CoInitializeEx(NULL, COINIT_APARTMENTTHREADED), S_OK);
    /* A process may also end with its receiver open. */
    CHECK(quillon_open(0, &receiver), QUILLON_OK);
    run(L"rmdir /s /q", L"");
    if (failures == 0) puts("All as it should be.");
    return failures;
}
