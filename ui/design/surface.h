// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once
#include "ui/design/surface_style.h"

#include <QQuickItem>
#include <QtQml/qqmlregistration.h>

namespace veltro {

/// The ground of cards, fields, buttons and banners: a fill, a hairline inside its edge, corners
/// that run softly into the sides, and a soft shadow. One batchable material and plain colour
/// within where the scene graph has shaders, a picture made by the same formula where it has none.
/// Main thread, but updatePaintNode.
class Surface : public QQuickItem {
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(QColor color READ color WRITE setColor NOTIFY styleChanged)
    Q_PROPERTY(QColor strokeColor READ strokeColor WRITE setStrokeColor NOTIFY styleChanged)
    Q_PROPERTY(double strokeWidth READ strokeWidth WRITE setStrokeWidth NOTIFY styleChanged)
    Q_PROPERTY(double radius READ radius WRITE setRadius NOTIFY styleChanged)
    Q_PROPERTY(
        double cornerExponent READ cornerExponent WRITE setCornerExponent NOTIFY styleChanged)
    Q_PROPERTY(QColor shadowColor READ shadowColor WRITE setShadowColor NOTIFY styleChanged)
    Q_PROPERTY(double shadowBlur READ shadowBlur WRITE setShadowBlur NOTIFY styleChanged)
    Q_PROPERTY(double shadowOffsetX READ shadowOffsetX WRITE setShadowOffsetX NOTIFY styleChanged)
    Q_PROPERTY(double shadowOffsetY READ shadowOffsetY WRITE setShadowOffsetY NOTIFY styleChanged)
public:
    explicit Surface(QQuickItem *parent = nullptr);

    [[nodiscard]] QColor color() const { return m_style.fill; }
    void setColor(const QColor &color) { change(m_style.fill, color); }
    [[nodiscard]] QColor strokeColor() const { return m_style.stroke; }
    void setStrokeColor(const QColor &color) { change(m_style.stroke, color); }
    [[nodiscard]] double strokeWidth() const { return m_style.strokeWidth; }
    void setStrokeWidth(double width) { change(m_style.strokeWidth, width); }
    [[nodiscard]] double radius() const { return m_style.radius; }
    void setRadius(double radius) { change(m_style.radius, radius); }
    [[nodiscard]] double cornerExponent() const { return m_style.cornerExponent; }
    void setCornerExponent(double exponent) { change(m_style.cornerExponent, exponent); }
    [[nodiscard]] QColor shadowColor() const { return m_style.shadow; }
    void setShadowColor(const QColor &color) { change(m_style.shadow, color); }
    [[nodiscard]] double shadowBlur() const { return m_style.shadowBlur; }
    void setShadowBlur(double blur) { change(m_style.shadowBlur, blur); }
    [[nodiscard]] double shadowOffsetX() const { return m_style.shadowOffset.x(); }
    void setShadowOffsetX(double x) { change(m_style.shadowOffset.rx(), x); }
    [[nodiscard]] double shadowOffsetY() const { return m_style.shadowOffset.y(); }
    void setShadowOffsetY(double y) { change(m_style.shadowOffset.ry(), y); }

Q_SIGNALS:
    void styleChanged();

protected:
    void geometryChange(const QRectF &newGeometry, const QRectF &oldGeometry) override;
    QSGNode *updatePaintNode(QSGNode *old, UpdatePaintNodeData *data) override;

private:
    template <typename Value>
    void change(Value &member, const Value &value)
    {
        if (member != value) {
            member = value;
            update();
            Q_EMIT styleChanged();
        }
    }
    QSGNode *updateQuad(QSGNode *old) const;
    QSGNode *updatePicture(QSGNode *old) const;

    SurfaceStyle m_style;
};

}
