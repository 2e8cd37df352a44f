/* A processing application in plain C: shows the record of every job that it is told of. It uses nothing but
   Windows and follows docs/messaging.md and docs/formats.md. Its program must be named PrinterProcessorWin.exe; the
   number of jobs after which it ends may stand behind the name. */
#include <stdio.h>
#include <stdlib.h>
#include <string.h>
#include <windows.h>

enum { REGISTRY_SIZE = 8208, QUEUE_SIZE = 32772, FIRST_ENTRY = 12, FIRST_RECORD = 8, JOB = 145, LONGEST_WAIT = 5000 };

/* words[0] tells the size; what stands at the offset n is words[1 + n / 4]. */
struct segment { HANDLE mutex; LONG *words; };
struct listening { struct segment registry, queue; LONG id; };

/* Leaves the segment locked; words is null when it cannot be had. A fresh segment is all zero. */
static struct segment open_segment(const char *path, const char *identifier, LONG size) {
    char name[80];
    SECURITY_DESCRIPTOR everybody;
    SECURITY_ATTRIBUTES attributes = {sizeof attributes, &everybody, FALSE};
    struct segment result = {NULL, NULL};
    InitializeSecurityDescriptor(&everybody, SECURITY_DESCRIPTOR_REVISION);
    SetSecurityDescriptorDacl(&everybody, TRUE, NULL, FALSE);
    snprintf(name, sizeof name, "Global\\QulShL%s", identifier);
    result.mutex = CreateMutexA(&attributes, FALSE, name);
    if (result.mutex == NULL || WaitForSingleObject(result.mutex, LONGEST_WAIT) == WAIT_TIMEOUT) return result;
    snprintf(name, sizeof name, "%sQulShD%s", path, identifier);
    HANDLE mapping = CreateFileMappingA(INVALID_HANDLE_VALUE, &attributes, PAGE_READWRITE, 0, size, name);
    if (mapping != NULL) result.words = MapViewOfFile(mapping, FILE_MAP_ALL_ACCESS, 0, 0, size);
    if (result.words == NULL) ReleaseMutex(result.mutex);
    else if (result.words[0] == 0) result.words[0] = size, result.words[1] = 1;
    return result;
}

static LONG count_entries(const LONG *registry) {
    LONG bytes = registry[3] - FIRST_ENTRY;
    return bytes < 0 || bytes > REGISTRY_SIZE - 4 - FIRST_ENTRY ? 0 : bytes / 8;
}

static int is_taken(const LONG *registry, LONG id) {
    for (LONG i = 0; i < count_entries(registry); ++i)
        if (registry[5 + 2 * i] == id) return 1;
    return 0;
}

/* Enters this process in the registry of a path, once there is a queue behind the entry. */
static int enter(const char *path, struct listening *own) {
    char identifier[40];
    LONG *r = (own->registry = open_segment(path, "GIPC_PP", REGISTRY_SIZE)).words;
    if (r == NULL) return 0;
    if (r[3] == 0) r[3] = FIRST_ENTRY;
    do own->id = ++r[2] & 0x7FFF; while (own->id == 0 || is_taken(r, own->id));
    snprintf(identifier, sizeof identifier, "P%luMQ%ld", GetCurrentProcessId(), own->id);
    LONG n = count_entries(r), *q = n < 1024 ? (own->queue = open_segment(path, identifier, QUEUE_SIZE)).words : NULL;
    if (q != NULL) {
        q[2] = FIRST_RECORD;
        ReleaseMutex(own->queue.mutex);
        r[4 + 2 * n] = (LONG)GetCurrentProcessId(), r[5 + 2 * n] = own->id, r[3] = FIRST_ENTRY + 8 * (n + 1);
    }
    ReleaseMutex(own->registry.mutex);
    return q != NULL;
}

static void leave(struct listening *own) {
    if (WaitForSingleObject(own->registry.mutex, LONGEST_WAIT) == WAIT_TIMEOUT) return;
    LONG *r = own->registry.words, n = count_entries(r);
    for (LONG i = 0; i < n; ++i)
        if (r[4 + 2 * i] == (LONG)GetCurrentProcessId() && r[5 + 2 * i] == own->id) {
            memmove(r + 4 + 2 * i, r + 2 + 2 * n, 8), r[3] = FIRST_ENTRY + 8 * (n - 1);
            break;
        }
    ReleaseMutex(own->registry.mutex);
}

/* Takes all messages, then shows the jobs among them; their number. Any process can write to the queue. */
static int take(struct segment *queue) {
    static char bytes[QUEUE_SIZE - 4];
    int jobs = 0;
    if (WaitForSingleObject(queue->mutex, LONGEST_WAIT) == WAIT_TIMEOUT) return 0;
    memcpy(bytes, queue->words + 1, sizeof bytes);
    queue->words[2] = FIRST_RECORD;
    ReleaseMutex(queue->mutex);
    LONG end, record[5];
    memcpy(&end, bytes + 4, 4);
    if (end > (LONG)sizeof bytes) return 0;
    for (LONG at = FIRST_RECORD; at >= FIRST_RECORD && end - at >= 8; at += 8 + record[1]) {
        memset(record, 0, sizeof record);
        memcpy(record, bytes + at, end - at < 20 ? 8 : 20);
        if (record[1] < 0 || record[1] > end - at - 8) break;
        if (record[0] != 1 || record[3] != JOB || record[4] < 0 || record[4] > record[1] - 12) continue;
        fwrite(bytes + at + 20, 1, record[4], stdout), fflush(stdout), ++jobs;
    }
    return jobs;
}

int main(int argc, char **argv) {
    DWORD session = 0;
    char path[32];
    struct listening own[2];
    int count, left = argc > 1 ? atoi(argv[1]) : -1;
    ProcessIdToSessionId(GetCurrentProcessId(), &session);
    snprintf(path, sizeof path, "Session\\%lu\\", session);
    if (!enter(path, &own[0])) return fputs("The session's registry cannot be used.\n", stderr), 1;
    count = session != 0 && enter("Global\\", &own[1]) ? 2 : 1;
    fputs("Listening\n", stderr), fflush(stderr);
    for (; left != 0; Sleep(100))
        for (int i = 0; i < count && left != 0; ++i)
            for (int jobs = take(&own[i].queue); jobs > 0 && left != 0; --jobs) --left;
    while (count > 0) leave(&own[--count]);
    return 0;
}
