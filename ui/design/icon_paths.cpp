// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/design/icon_paths.h"

#include <QHash>
#include <QStringList>

namespace veltro {
namespace {

// The words of a drawing: M, L, Q, C and Z as in a path; R x y width height radius; E centre and
// radii; A centre, radius, first angle and sweep in degrees against the clock, from three o'clock.
struct IconWords {
    const char *outline;
    const char *solid = "";
    const char *cut = "";
    const char *over = "";
};

constexpr auto magnifier = "E 10.5 10.5 6.5 6.5 M 15.4 15.4 L 20.5 20.5";
constexpr auto cross = "M 6 6 L 18 18 M 18 6 L 6 18";
constexpr auto globe = "E 12 12 9 9 E 12 12 3.9 9 M 4.2 8.4 L 19.8 8.4 M 4.2 15.6 L 19.8 15.6";
constexpr auto tray =
    "M 3.5 7.5 Q 3.5 5.5 5.5 5.5 L 9.2 5.5 L 11.4 7.8 L 18.5 7.8 Q 20.5 7.8 20.5 9.8"
    " L 20.5 16.8 Q 20.5 18.8 18.5 18.8 L 5.5 18.8 Q 3.5 18.8 3.5 16.8 Z";
constexpr auto speaker = "M 4 9.5 L 7.5 9.5 L 12 5.5 L 12 18.5 L 7.5 14.5 L 4 14.5 Z";
constexpr auto triangle = "M 12 4 L 21 19.5 L 3 19.5 Z";

const QHash<QString, IconWords> &iconWords()
{
    static const QHash<QString, IconWords> words{
        // line icons
        {QStringLiteral("download"), {"M 12 4 L 12 19 M 6 13 L 12 19 L 18 13"}},
        {QStringLiteral("arrowRight"), {"M 4 12 L 19 12 M 13 6 L 19 12 L 13 18"}},
        {QStringLiteral("link"),
         {"M 10 14 Q 3.4 8.4 6 5.8 L 6.6 5.2 Q 9.4 2.6 13.2 6.4"
          " M 14 10 Q 20.6 15.6 18 18.2 L 17.4 18.8 Q 14.6 21.4 10.8 17.6"}},
        {QStringLiteral("clipboard"), {"R 6 5 12 16 2 R 9 3 6 4 1"}},
        {QStringLiteral("close"), {cross}},
        {QStringLiteral("play"), {"M 8 5 L 19 12 L 8 19 Z"}},
        {QStringLiteral("film"),
         {"R 4 4 16 16 2 M 4 8 L 20 8 M 4 16 L 20 16 M 9 4 L 9 20 M 15 4 L 15 20"}},
        {QStringLiteral("appMark"),
         {"M 12 3 L 12 14.5 M 6.8 9.6 L 12 14.8 L 17.2 9.6 M 5 20.5 L 19 20.5"}},
        // places
        {QStringLiteral("house"),
         {"M 3.2 11.4 L 12 4 L 20.8 11.4 M 5.6 9.6 L 5.6 18.4 Q 5.6 20 7.2 20 L 16.8 20"
          " Q 18.4 20 18.4 18.4 L 18.4 9.6 M 9.8 20 L 9.8 14.6 L 14.2 14.6 L 14.2 20"}},
        {QStringLiteral("arrow.down.circle"),
         {"E 12 12 9 9 M 12 7.4 L 12 16.2 M 8.4 12.7 L 12 16.3 L 15.6 12.7"}},
        {QStringLiteral("arrow.down.circle.fill"),
         {"", "E 12 12 9.8 9.8", "M 12 7.2 L 12 16.2 M 8.3 12.6 L 12 16.3 L 15.7 12.6"}},
        {QStringLiteral("square.stack"),
         {"R 3.8 9.6 16.4 11 2.6 M 6 6.4 L 18 6.4 M 8.2 3.4 L 15.8 3.4"}},
        {QStringLiteral("slider.horizontal.3"),
         {"M 3.5 6 L 13.4 6 E 15.7 6 2.3 2.3 M 18 6 L 20.5 6"
          " M 3.5 12 L 6 12 E 8.3 12 2.3 2.3 M 10.6 12 L 20.5 12"
          " M 3.5 18 L 11.6 18 E 13.9 18 2.3 2.3 M 16.2 18 L 20.5 18"}},
        {QStringLiteral("globe"), {globe}},
        {QStringLiteral("globe.slash"), {globe, "", "M 4 3.6 L 20 20.4", "M 4 3.6 L 20 20.4"}},
        {QStringLiteral("folder"), {tray}},
        {QStringLiteral("folder.fill"), {"", tray}},
        {QStringLiteral("square.grid.2x2.fill"),
         {"", "R 3.6 3.6 7.4 7.4 1.8 R 13 3.6 7.4 7.4 1.8 R 3.6 13 7.4 7.4 1.8"
              " R 13 13 7.4 7.4 1.8"}},
        // actions
        {QStringLiteral("arrow.right"), {"M 4 12 L 20 12 M 13.4 5.4 L 20 12 L 13.4 18.6"}},
        {QStringLiteral("arrow.clockwise"), {"A 12 12.6 7.8 50 -320 M 17.4 2.9 L 17.4 7 L 13.2 7"}},
        {QStringLiteral("checkmark"), {"M 4.5 12.8 L 9.8 18.2 L 19.5 6.2"}},
        {QStringLiteral("xmark"), {cross}},
        {QStringLiteral("xmark.circle.fill"),
         {"", "E 12 12 9.8 9.8", "M 8.4 8.4 L 15.6 15.6 M 15.6 8.4 L 8.4 15.6"}},
        {QStringLiteral("plus"), {"M 12 5 L 12 19 M 5 12 L 19 12"}},
        {QStringLiteral("minus"), {"M 5 12 L 19 12"}},
        {QStringLiteral("ellipsis"), {"", "E 5 12 1.8 1.8 E 12 12 1.8 1.8 E 19 12 1.8 1.8"}},
        {QStringLiteral("magnifyingglass"), {magnifier}},
        {QStringLiteral("trash"),
         {"M 4 6.6 L 20 6.6 M 9 6.4 L 9 4.6 Q 9 3.6 10 3.6 L 14 3.6 Q 15 3.6 15 4.6 L 15 6.4"
          " M 6 6.8 L 6.9 19 Q 7 20.4 8.4 20.4 L 15.6 20.4 Q 17 20.4 17.1 19 L 18 6.8"
          " M 10 10.4 L 10.2 16.8 M 14 10.4 L 13.8 16.8"}},
        {QStringLiteral("doc"),
         {"M 6 4.6 Q 6 3.4 7.2 3.4 L 13.6 3.4 L 18 7.8 L 18 19.4 Q 18 20.6 16.8 20.6 L 7.2 20.6"
          " Q 6 20.6 6 19.4 Z M 13.4 3.6 L 13.4 8 L 17.8 8"}},
        {QStringLiteral("chevron.down"), {"M 5.5 9 L 12 15.5 L 18.5 9"}},
        {QStringLiteral("chevron.up.down"),
         {"M 7.5 9.5 L 12 5 L 16.5 9.5 M 7.5 14.5 L 12 19 L 16.5 14.5"}},
        {QStringLiteral("chevron.right"), {"M 9 5.5 L 15.5 12 L 9 18.5"}},
        {QStringLiteral("exclamationmark.triangle.fill"),
         {triangle, triangle, "M 12 10 L 12 14 M 12 16.8 L 12 16.9"}},
        // playing
        {QStringLiteral("play.fill"),
         {"M 8 5.5 L 18.5 12 L 8 18.5 Z", "M 8 5.5 L 18.5 12 L 8 18.5 Z"}},
        {QStringLiteral("pause.fill"), {"", "R 6.2 5 4 14 1.2 R 13.8 5 4 14 1.2"}},
        {QStringLiteral("speaker.wave.2.fill"),
         {"A 12.4 12 3.6 -42 84 A 12.4 12 7.4 -46 92", speaker}},
        {QStringLiteral("speaker.slash.fill"),
         {"A 12.4 12 3.6 -42 84", speaker, "M 4 3.6 L 20 20.4", "M 4 3.6 L 20 20.4"}},
        {QStringLiteral("arrow.up.left.and.arrow.down.right"),
         {"M 4.5 10 L 4.5 4.5 L 10 4.5 M 4.8 4.8 L 10.6 10.6"
          " M 19.5 14 L 19.5 19.5 L 14 19.5 M 19.2 19.2 L 13.4 13.4"}},
        {QStringLiteral("arrow.down.right.and.arrow.up.left"),
         {"M 10.5 5 L 10.5 10.5 L 5 10.5 M 10.2 10.2 L 4.4 4.4"
          " M 13.5 19 L 13.5 13.5 L 19 13.5 M 13.8 13.8 L 19.6 19.6"}},
        {QStringLiteral("waveform"),
         {"M 4 10.5 L 4 13.5 M 8 7 L 8 17 M 12 4 L 12 20 M 16 8 L 16 16 M 20 10.5 L 20 13.5"}},
    };
    return words;
}

class IconReader {
public:
    explicit IconReader(const char *words)
        : m_words(QString::fromLatin1(words).split(u' ', Qt::SkipEmptyParts))
    {}

    [[nodiscard]] QPainterPath read()
    {
        while (m_next < m_words.size()) {
            step(m_words.at(m_next++).at(0).toLatin1());
        }
        return m_path;
    }

private:
    double number() { return m_words.at(m_next++).toDouble(); }
    QPointF point()
    {
        const double x = number();
        return {x, number()};
    }
    void step(char word);
    void arc();

    const QStringList m_words;
    qsizetype m_next = 0;
    QPainterPath m_path;
};

void IconReader::step(char word)
{
    const auto pair = [this] { return point(); };
    switch (word) {
    case 'M':
        return m_path.moveTo(pair());
    case 'L':
        return m_path.lineTo(pair());
    case 'Q': {
        const QPointF control = pair();
        return m_path.quadTo(control, pair());
    }
    case 'C': {
        const QPointF first = pair();
        const QPointF second = pair();
        return m_path.cubicTo(first, second, pair());
    }
    case 'R': {
        const QPointF corner = pair();
        const QPointF size = pair();
        const double radius = number();
        return m_path.addRoundedRect({corner, QSizeF(size.x(), size.y())}, radius, radius);
    }
    case 'E': {
        const QPointF centre = pair();
        const QPointF radii = pair();
        return m_path.addEllipse(centre, radii.x(), radii.y());
    }
    case 'A':
        return arc();
    case 'Z':
        return m_path.closeSubpath();
    default:
        Q_UNREACHABLE();
    }
}

void IconReader::arc()
{
    const QPointF centre = point();
    const double radius = number();
    const double first = number();
    const double sweep = number();
    const QRectF box(centre - QPointF(radius, radius), QSizeF(2 * radius, 2 * radius));
    m_path.arcMoveTo(box, first);
    m_path.arcTo(box, first, sweep);
}

}

const IconDrawing &iconDrawing(const QString &name)
{
    static QHash<QString, IconDrawing> drawings;
    const auto known = drawings.constFind(name);
    if (known != drawings.cend()) {
        return *known;
    }
    IconDrawing drawing;
    const auto words = iconWords().constFind(name);
    if (words != iconWords().cend()) {
        drawing.outline = IconReader(words->outline).read();
        drawing.solid = IconReader(words->solid).read();
        drawing.solid.setFillRule(Qt::WindingFill);
        drawing.cut = IconReader(words->cut).read();
        drawing.over = IconReader(words->over).read();
    }
    return *drawings.insert(name, drawing);
}

}
