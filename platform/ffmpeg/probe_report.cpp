// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/ffmpeg/probe_report.h"

#include "platform/ffmpeg/libav.h"

#include <array>
#include <cstdio>
#include <utility>

namespace veltro::ffmpeg {
namespace {

std::string validUtf8(std::string_view bytes)
{
    std::string text;
    text.reserve(bytes.size());
    const auto *next = reinterpret_cast<const std::uint8_t *>(bytes.data());
    const auto *end = next + bytes.size();
    while (next < end) {
        const auto *begin = next;
        std::int32_t codePoint = 0;
        if (av_utf8_decode(&codePoint, &next, end, 0) < 0) {
            text.append("\xEF\xBF\xBD");
        } else {
            text.append(begin, next);
        }
    }
    return text;
}

void appendJsonText(std::string &into, std::string_view text)
{
    constexpr std::string_view special = "\"\\\b\f\n\r\t";
    constexpr std::string_view letters = "\"\\bfnrt";
    into.push_back('"');
    for (const char c : text) {
        if (const std::size_t found = special.find(c); found != std::string_view::npos) {
            into.push_back('\\');
            into.push_back(letters[found]);
        } else if (static_cast<unsigned char>(c) < 0x20) {
            std::array<char, 8> escape{};
            std::snprintf(escape.data(), escape.size(), "\\u%04x", static_cast<unsigned>(c));
            into.append(escape.data());
        } else {
            into.push_back(c);
        }
    }
    into.push_back('"');
}

void indentJson(std::string &into, int depth)
{
    into.append(static_cast<std::size_t>(depth) * 4, ' ');
}

}

ReportSection::ReportSection(Shape shape, std::string_view name, std::string_view plainName)
    : m_shape(shape), m_name(name), m_plainName(plainName)
{}

void ReportSection::addText(std::string_view name, std::string_view value)
{
    m_fields.push_back({Kind::text, validUtf8(name), validUtf8(value)});
}

void ReportSection::addNumber(std::string_view name, std::int64_t value)
{
    m_fields.push_back({Kind::number, std::string(name), std::to_string(value)});
}

void ReportSection::addAbsent(std::string_view name, std::string_view shown)
{
    m_fields.push_back({Kind::absent, std::string(name), std::string(shown)});
}

void ReportSection::writePlain(std::string &into) const
{
    const bool bracketed = m_shape == Shape::record;
    if (bracketed) {
        into.append("[").append(m_plainName).append("]\n");
    }
    for (const Field &field : m_fields) {
        if (m_shape == Shape::pairs) {
            into.append(m_plainName).append(":");
        }
        into.append(field.name).append("=").append(field.value).append("\n");
    }
    for (const ReportSection &section : m_sections) {
        section.writePlain(into);
    }
    if (bracketed) {
        into.append("[/").append(m_plainName).append("]\n");
    }
}

void ReportSection::writeJson(std::string &into, int depth) const
{
    const bool isList = m_shape == Shape::list;
    const char *separator = "\n";
    into.push_back(isList ? '[' : '{');
    const auto beginMember = [&](std::string_view name) {
        into.append(std::exchange(separator, ",\n"));
        indentJson(into, depth + 1);
        if (!isList) {
            appendJsonText(into, name);
            into.append(": ");
        }
    };
    for (const Field &field : m_fields) {
        if (field.kind == Kind::absent) {
            continue;
        }
        beginMember(field.name);
        if (field.kind == Kind::number) {
            into.append(field.value);
        } else {
            appendJsonText(into, field.value);
        }
    }
    for (const ReportSection &section : m_sections) {
        beginMember(section.m_name);
        section.writeJson(into, depth + 1);
    }
    into.append(isList && m_sections.empty() ? "\n\n" : "\n");
    indentJson(into, depth);
    into.push_back(isList ? ']' : '}');
}

std::string writeReport(const std::vector<ReportSection> &sections, ReportFormat format)
{
    std::string text;
    switch (format) {
    case ReportFormat::plain:
        for (const ReportSection &section : sections) {
            section.writePlain(text);
        }
        return text;
    case ReportFormat::json: {
        ReportSection whole(ReportSection::Shape::record, {});
        whole.m_sections = sections;
        whole.writeJson(text, 0);
        return sections.empty() ? "{\n\n}\n" : text + "\n";
    }
    }
    return text;
}

}
