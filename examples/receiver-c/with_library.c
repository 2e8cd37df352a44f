/* A processing application in plain C: shows what it is told of every job. It uses the C interface of
   QuillonReceiver64.dll and nothing else of ours. Its program must be named PrinterProcessorWin.exe; the number of
   jobs after which it ends may stand behind the name. */
#include <quillon_receiver.h>
#include <stdio.h>
#include <stdlib.h>

static void show_text(quillon_job job, const char *name, int32_t field) {
    char text[2048];
    if (quillon_job_utf8(job, field, text, sizeof text, NULL) == QUILLON_OK) printf("%s: %s\n", name, text);
}

static void show_job(quillon_job job) {
    int64_t bytes;
    show_text(job, "Job file", QUILLON_PATH);
    if (quillon_job_number(job, QUILLON_BYTES, &bytes) == QUILLON_OK) printf("Bytes: %lld\n", (long long)bytes);
    show_text(job, "Document", QUILLON_NAME);
    show_text(job, "User", QUILLON_USER);
    show_text(job, "Printer", QUILLON_PRINTER);
    puts(""), fflush(stdout);
}

static void show_problems(quillon_receiver receiver) {
    char text[2048];
    while (quillon_next_problem_utf8(receiver, text, sizeof text, NULL) == QUILLON_OK) fprintf(stderr, "%s\n", text);
}

int main(int argc, char **argv) {
    int left = argc > 1 ? atoi(argv[1]) : -1;
    quillon_receiver receiver;
    int32_t result = quillon_open(QUILLON_PENDING, &receiver);
    if (result != QUILLON_OK) return fprintf(stderr, "%s\n", quillon_error_text(result)), 1;
    fputs("Listening\n", stderr), fflush(stderr);
    while (left != 0) {
        quillon_job job;
        result = quillon_wait(receiver, 1000, &job);
        show_problems(receiver);
        if (result == QUILLON_NOTHING) continue;
        if (result != QUILLON_OK) break;
        show_job(job);
        quillon_job_close(job);
        if (left > 0) --left;
    }
    quillon_close(receiver);
    if (result > QUILLON_NOTHING) return fprintf(stderr, "%s\n", quillon_error_text(result)), 1;
    return 0;
}
