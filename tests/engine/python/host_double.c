// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
//
// The functions that the host program exports, loaded into a plain interpreter. A run lists its
// arguments; the argument "wait" makes it last until it is cancelled.

#define _GNU_SOURCE
#include <stdatomic.h>
#include <stdint.h>
#include <stdio.h>
#include <string.h>
#include <unistd.h>

static _Thread_local char output[4096];
static _Thread_local char text[64];
static atomic_long running;
static atomic_int cancelled;

static int32_t run(const char *tool, int32_t count, char **arguments) {
    int waits = 0;
    snprintf(output, sizeof output, "%s", tool);
    for (int32_t i = 0; i < count; ++i) {
        strncat(output, "|", sizeof output - strlen(output) - 1);
        strncat(output, arguments[i], sizeof output - strlen(output) - 1);
        waits |= !strcmp(arguments[i], "wait");
    }
    snprintf(text, sizeof text, "log of %s\n", tool);
    if (!waits)
        return count == 0;
    running = gettid();
    while (!cancelled)
        usleep(1000);
    cancelled = 0;
    running = 0;
    return 255;
}

int32_t VeltroFFmpegRun(int32_t count, char **arguments) {
    return run("ffmpeg", count, arguments);
}

int32_t VeltroFFprobeRun(int32_t count, char **arguments) {
    return run("ffprobe", count, arguments);
}

const char *VeltroFFmpegOutput(void) { return output; }
const char *VeltroFFmpegLog(void) { return text; }

void VeltroFFmpegCancel(int64_t thread) {
    if (running == thread)
        cancelled = 1;
}

int32_t VeltroFFmpegProgress(int64_t thread, int64_t *bytes, double *seconds) {
    if (running != thread)
        return 0;
    *bytes = 5000000000;
    *seconds = 2.5;
    return 1;
}
