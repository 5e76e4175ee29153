// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/design/path_item.h"

#include "ui/design/icon_paths.h"

#include <QPainter>
#include <QQmlInfo>

namespace veltro {
namespace {

constexpr double squareUnits = 24;
constexpr double symbolFrame = 1.24; ///< of the font's size

}

QTransform iconPlacement(const QSizeF &frame)
{
    const double scale = std::min(frame.width(), frame.height()) / squareUnits;
    const double side = scale * squareUnits;
    QTransform placement;
    placement.translate((frame.width() - side) / 2, (frame.height() - side) / 2);
    placement.scale(scale, scale);
    return placement;
}

PathItem::PathItem(QQuickItem *parent) : QQuickPaintedItem(parent)
{
    setAntialiasing(true);
}

void PathItem::setName(const QString &name)
{
    if (m_name != name) {
        m_name = name;
        drawingHasChanged();
    }
}

void PathItem::setColor(const QColor &color)
{
    if (m_color != color) {
        m_color = color;
        drawingHasChanged();
    }
}

void PathItem::componentComplete()
{
    QQuickPaintedItem::componentComplete();
    if (!m_name.isEmpty() && iconDrawing(m_name).isEmpty()) {
        qmlWarning(this) << "there is no drawing named" << m_name;
    }
}

void PathItem::drawingHasChanged()
{
    update();
    Q_EMIT drawingChanged();
}

void PathItem::paint(QPainter *painter)
{
    const IconDrawing &drawing = iconDrawing(m_name);
    if (drawing.isEmpty()) {
        return;
    }
    painter->setTransform(iconPlacement(size()), true);
    if (!drawing.cut.isEmpty()) {
        return paintCut(*painter, drawing);
    }
    if (isFilled()) {
        return painter->fillPath(drawing.outline, m_color);
    }
    painter->fillPath(drawing.solid, m_color);
    paintLines(*painter, drawing.outline);
}

void PathItem::paintLines(QPainter &painter, const QPainterPath &path) const
{
    QPen pen(m_color, lineWidth(), Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin);
    pen.setMiterLimit(10);
    painter.strokePath(path, pen);
}

void PathItem::paintCut(QPainter &painter, const IconDrawing &drawing) const
{
    constexpr double margin = 2.6; // of a line, around a line that lies on top
    QPainterPathStroker stroker;
    stroker.setCapStyle(Qt::RoundCap);
    stroker.setJoinStyle(Qt::RoundJoin);
    stroker.setWidth(lineWidth());
    const QPainterPath below = stroker.createStroke(drawing.outline).united(drawing.solid);
    stroker.setWidth(drawing.over.isEmpty() ? lineWidth() : lineWidth() * margin);
    painter.fillPath(below.subtracted(stroker.createStroke(drawing.cut)), m_color);
    paintLines(painter, drawing.over);
}

void LineIcon::setStroke(double stroke)
{
    if (m_stroke != stroke) {
        m_stroke = stroke;
        drawingHasChanged();
    }
}

void LineIcon::setFill(bool fill)
{
    if (m_fill != fill) {
        m_fill = fill;
        drawingHasChanged();
    }
}

Symbol::Symbol(QQuickItem *parent) : PathItem(parent)
{
    measure();
}

void Symbol::setSize(double size)
{
    if (m_size != size) {
        m_size = size;
        measure();
        drawingHasChanged();
    }
}

void Symbol::setWeight(int weight)
{
    if (m_weight != weight) {
        m_weight = weight;
        drawingHasChanged();
    }
}

void Symbol::measure()
{
    setImplicitSize(qRound(m_size * symbolFrame), qRound(m_size * symbolFrame));
}

double Symbol::lineWidth() const
{
    return 1.7 + std::max(0, m_weight - 400) * 0.004; // 2.5 units when semibold, 2.9 when bold
}

}
