// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once
#include <QFont>

#include <vector>

namespace veltro {

// An item is named by a path of steps: #name is an object's name, @name a drawing's, anything else
// is a text that is seen. Each ^ after a step goes to what holds the item. A row may name several
// items that look alike, with " | " between two.

constexpr double any = -1000; ///< where the design leaves a number open

struct TextRow {
    const char *item;
    double size;
    QFont::Weight weight;
    const char *colour;
    double tracking = 0;
};

struct BoxRow {
    const char *item;
    double width;
    double height;
    double radius;
    const char *fill; ///< or "none" for what has none to ask for
    const char *stroke = "none";
    double strokeWidth = 1;
};

/// How far one item's edges lie within another's.
struct InsetRow {
    const char *item;
    const char *inner;
    double left = any;
    double top = any;
    double right = any;
    double bottom = any;
};

/// The frame of a drawing; a symbol's is 1.24 of its font's size.
struct IconRow {
    const char *item;
    double side;
    const char *colour;
};

struct ShadowRow {
    const char *item;
    double opacity;
    double blur;
    double offset;
};

enum class Curve { easeIn, easeOut, easeInOut, spring };

struct MotionRow {
    const char *item;
    int milliseconds; ///< of a spring its response
    Curve curve;
};

struct PageRows {
    const char *page;
    std::vector<TextRow> texts = {};
    std::vector<BoxRow> boxes = {};
    std::vector<InsetRow> insets = {};
    std::vector<IconRow> icons = {};
    std::vector<ShadowRow> shadows = {};
    std::vector<MotionRow> motions = {};
    int height = 680;
};

/// The design, page by page of the gallery.
[[nodiscard]] const std::vector<PageRows> &designedPages();

}
