// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/ffmpeg/local_bytes.h"

#include "platform/ffmpeg/av_ptr.h"

#include <cerrno>
#include <cstdint>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace veltro::ffmpeg {
namespace {

constexpr int bufferBytes = 32 * 1024;

// Owns an open file; what the byte stream's calls are given as their context.
class LocalFile {
public:
    LocalFile(int descriptor, AVIOInterruptCB interrupt)
        : m_descriptor(descriptor), m_interrupt(interrupt)
    {}
    ~LocalFile() { close(m_descriptor); }
    LocalFile(const LocalFile &) = delete;
    LocalFile &operator=(const LocalFile &) = delete;

    [[nodiscard]] int descriptor() const { return m_descriptor; }
    [[nodiscard]] bool isInterrupted() const
    {
        return m_interrupt.callback && m_interrupt.callback(m_interrupt.opaque);
    }

private:
    const int m_descriptor;
    const AVIOInterruptCB m_interrupt;
};

int readBytes(void *context, std::uint8_t *into, int wanted)
{
    const LocalFile &file = *static_cast<LocalFile *>(context);
    if (file.isInterrupted()) {
        return AVERROR_EXIT;
    }
    for (;;) {
        const ssize_t got = read(file.descriptor(), into, static_cast<std::size_t>(wanted));
        if (got > 0) {
            return static_cast<int>(got);
        }
        if (got == 0) {
            return AVERROR_EOF;
        }
        if (errno != EINTR) {
            return AVERROR(errno);
        }
    }
}

std::int64_t seekBytes(void *context, std::int64_t offset, int whence)
{
    const int descriptor = static_cast<LocalFile *>(context)->descriptor();
    if (whence == AVSEEK_SIZE) {
        struct stat status = {};
        return fstat(descriptor, &status) < 0 ? AVERROR(errno) : status.st_size;
    }
    const off_t reached = lseek(descriptor, offset, whence & ~AVSEEK_FORCE);
    return reached < 0 ? AVERROR(errno) : reached;
}

int refuseUnlessRegular(int descriptor)
{
    struct stat status = {};
    if (fstat(descriptor, &status) < 0) {
        return AVERROR(errno);
    }
    if (S_ISDIR(status.st_mode)) {
        return AVERROR(EISDIR);
    }
    return S_ISREG(status.st_mode) ? 0 : AVERROR_INVALIDDATA;
}

}

void closeLocalBytes(AVIOContext *bytes)
{
    if (bytes) {
        delete static_cast<LocalFile *>(bytes->opaque);
        av_freep(static_cast<void *>(&bytes->buffer));
        avio_context_free(&bytes);
    }
}

int openLocalBytes(const std::string &path, AVIOInterruptCB interrupt, LocalBytesPtr &opened)
{
    // Without O_NONBLOCK, opening a pipe waits for its other end.
    const int descriptor = open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK | O_NOCTTY);
    if (descriptor < 0) {
        return AVERROR(errno);
    }
    auto file = std::make_unique<LocalFile>(descriptor, interrupt);
    if (const int error = refuseUnlessRegular(descriptor); error < 0) {
        return error;
    }
    auto *buffer = static_cast<unsigned char *>(av_malloc(bufferBytes));
    AVIOContext *bytes = buffer ? avio_alloc_context(buffer, bufferBytes, 0, file.get(), readBytes,
                                                     nullptr, seekBytes)
                                : nullptr;
    if (!bytes) {
        av_free(buffer);
        return AVERROR(ENOMEM);
    }
    bytes->opaque = file.release();
    opened.reset(bytes);
    return 0;
}

// Only openLocalInput() gives an input a byte stream of our own.
void InputContextDeleter::operator()(AVFormatContext *context) const
{
    AVIOContext *bytes = (context->flags & AVFMT_FLAG_CUSTOM_IO) ? context->pb : nullptr;
    avformat_close_input(&context);
    closeLocalBytes(bytes);
}

}
