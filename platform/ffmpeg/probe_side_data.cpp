// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/ffmpeg/probe_side_data.h"

#include "platform/ffmpeg/libav.h"

#include <array>
#include <cmath>
#include <cstdio>
#include <cstring>
#include <utility>

namespace veltro::ffmpeg {
namespace {

using Shape = ReportSection::Shape;
using DisplayMatrix = std::array<std::int32_t, 9>;

std::string matrixText(const DisplayMatrix &matrix)
{
    std::string text("\n");
    for (std::size_t row = 0; row < 3; ++row) {
        std::array<char, 64> line{};
        std::snprintf(line.data(), line.size(), "%08zx:  %11d %11d %11d\n", row, matrix[row * 3],
                      matrix[row * 3 + 1], matrix[row * 3 + 2]);
        text.append(line.data());
    }
    return text;
}

void addDisplayMatrix(ReportSection &section, const AVPacketSideData &data)
{
    DisplayMatrix matrix{};
    if (data.size < sizeof(matrix)) {
        return;
    }
    std::memcpy(matrix.data(), data.data, sizeof(matrix));
    const double rotation = av_display_rotation_get(matrix.data());
    section.addText("displaymatrix", matrixText(matrix));
    section.addNumber("rotation", std::isnan(rotation) ? 0 : static_cast<std::int64_t>(rotation));
}

void addRateLimits(ReportSection &section, const AVPacketSideData &data)
{
    AVCPBProperties limits{};
    if (data.size < sizeof(limits)) {
        return;
    }
    std::memcpy(&limits, data.data, sizeof(limits));
    section.addNumber("max_bitrate", limits.max_bitrate);
    section.addNumber("min_bitrate", limits.min_bitrate);
    section.addNumber("avg_bitrate", limits.avg_bitrate);
    section.addNumber("buffer_size", limits.buffer_size);
    section.addNumber("vbv_delay", static_cast<std::int64_t>(limits.vbv_delay));
}

ReportSection describeSideData(const AVPacketSideData &data)
{
    ReportSection section(Shape::record, "side_data", "SIDE_DATA");
    const char *name = av_packet_side_data_name(data.type);
    section.addText("side_data_type", name ? name : "unknown");
    if (data.type == AV_PKT_DATA_DISPLAYMATRIX) {
        addDisplayMatrix(section, data);
    } else if (data.type == AV_PKT_DATA_CPB_PROPERTIES) {
        addRateLimits(section, data);
    }
    return section;
}

}

void addSideData(ReportSection &section, const AVStream &stream)
{
    ReportSection list(Shape::list, "side_data_list");
    bool any = false;
    const auto add = [&](const AVPacketSideData &data) {
        list.addSection(describeSideData(data));
        any = true;
    };
#if LIBAVFORMAT_VERSION_INT >= AV_VERSION_INT(60, 16, 100)
    for (int i = 0; i < stream.codecpar->nb_coded_side_data; ++i) {
        add(stream.codecpar->coded_side_data[i]);
    }
#else
    for (int i = 0; i < stream.nb_side_data; ++i) {
        add(stream.side_data[i]);
    }
#endif
    if (any) {
        section.addSection(std::move(list));
    }
}

}
