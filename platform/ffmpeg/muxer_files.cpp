// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/ffmpeg/muxer_files.h"

#include "platform/ffmpeg/av_ptr.h"
#include "platform/ffmpeg/run_control.h"
#include "platform/ffmpeg/safe_input.h"

#include <utility>

namespace veltro::ffmpeg {
namespace {

using OpenFile = decltype(AVFormatContext::io_open);

OpenFile librarysOwn()
{
    static const OpenFile function = [] {
        const OutputContextPtr fresh(avformat_alloc_context());
        return fresh ? fresh->io_open : nullptr;
    }();
    return function;
}

}

MuxerFiles::MuxerFiles(const InputFiles &inputs, RunControl &control)
    : m_inputs(inputs), m_control(control)
{
    control.setMuxerFiles(this);
}

MuxerFiles::~MuxerFiles()
{
    m_control.setMuxerFiles(nullptr);
}

void MuxerFiles::attachTo(AVFormatContext &muxer)
{
    muxer.io_open = &MuxerFiles::open;
}

void MuxerFiles::keep()
{
    for (WrittenFile &file : m_files) {
        file.keep();
    }
}

int MuxerFiles::open(AVFormatContext *muxer, AVIOContext **file, const char *url, int flags,
                     AVDictionary **options)
{
    // A muxer within a muxer takes over its callbacks; nothing else leads to the run.
    const auto *control = static_cast<RunControl *>(muxer->interrupt_callback.opaque);
    MuxerFiles *const files = control ? control->muxerFiles() : nullptr;
    const InputName name = classifyInput(url);
    const OpenFile openFile = librarysOwn();
    const bool writes = flags & AVIO_FLAG_WRITE;
    if (!files || !openFile || name.kind != InputKind::localFile ||
        (writes && !files->mayWrite(url, name.path))) {
        return AVERROR(EPERM);
    }
    const int error = openFile(muxer, file, url, flags, options);
    if (error >= 0 && writes) {
        files->opened(name.path);
    }
    return error;
}

std::optional<std::string> MuxerFiles::refusal() const
{
    const std::lock_guard lock(m_mutex);
    return m_refusal;
}

bool MuxerFiles::mayWrite(const char *url, const std::string &path)
{
    std::optional<std::string> refusal = refusalToWrite(url, path, m_inputs);
    if (refusal) {
        const std::lock_guard lock(m_mutex);
        m_refusal = std::move(refusal);
        return false;
    }
    return true;
}

void MuxerFiles::opened(const std::string &path)
{
    constexpr std::string_view passing = ".tmp";
    const std::lock_guard lock(m_mutex);
    WrittenFile &file = m_files.emplace_back(path);
    file.opened();
    // What is written under a passing name gets its own when it is whole.
    if (path.ends_with(passing)) {
        m_files.emplace_back(path.substr(0, path.size() - passing.size())).comesFrom(file);
    }
}

}
