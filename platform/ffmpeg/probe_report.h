// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace veltro::ffmpeg {

/// How a probe's answer is written.
enum class ReportFormat {
    plain, ///< "[STREAM]", "key=value" lines, "[/STREAM]"
    json,
};

/// One part of a probe's answer: fields in order, then parts inside it. Plain data, no thread.
class ReportSection {
public:
    enum class Shape {
        list,   ///< an array; its children are the elements
        record, ///< an object; in brackets when plain
        pairs,  ///< an object; a prefix before each name when plain
    };

    ReportSection(Shape shape, std::string_view name, std::string_view plainName = {});

    /// Text from a file may be of any bytes; what is not UTF-8 is replaced.
    void addText(std::string_view name, std::string_view value);
    void addNumber(std::string_view name, std::int64_t value);
    /// What the file does not tell: left out of JSON, `shown` in the plain form.
    void addAbsent(std::string_view name, std::string_view shown);
    void addSection(ReportSection section) { m_sections.push_back(std::move(section)); }

    friend std::string writeReport(const std::vector<ReportSection> &sections, ReportFormat format);

private:
    enum class Kind { text, number, absent };
    struct Field {
        Kind kind;
        std::string name;
        std::string value;
    };

    void writePlain(std::string &into) const;
    void writeJson(std::string &into, int depth) const;

    Shape m_shape;
    std::string m_name;
    std::string m_plainName; // the brackets' or the prefix's word
    std::vector<Field> m_fields;
    std::vector<ReportSection> m_sections;
};

/// The whole answer, its last line feed included.
[[nodiscard]] std::string writeReport(const std::vector<ReportSection> &sections,
                                      ReportFormat format);

}
