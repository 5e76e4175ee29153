// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/design/surface_material.h"

#include <QSGMaterial>

#include <array>
#include <cstring>

namespace veltro {
namespace {

struct SurfaceVertex {
    std::array<float, 2> position;
    std::array<float, 2> fromCentre;
    std::array<float, 4> shape;
    std::array<float, 4> shadow;
    std::array<quint8, 4> fill;
    std::array<quint8, 4> stroke;
    std::array<quint8, 4> shade;
};

const QSGGeometry::AttributeSet &surfaceAttributes()
{
    static const std::array attributes{
        QSGGeometry::Attribute::create(0, 2, QSGGeometry::FloatType, true),
        QSGGeometry::Attribute::create(1, 2, QSGGeometry::FloatType),
        QSGGeometry::Attribute::create(2, 4, QSGGeometry::FloatType),
        QSGGeometry::Attribute::create(3, 4, QSGGeometry::FloatType),
        QSGGeometry::Attribute::create(4, 4, QSGGeometry::UnsignedByteType),
        QSGGeometry::Attribute::create(5, 4, QSGGeometry::UnsignedByteType),
        QSGGeometry::Attribute::create(6, 4, QSGGeometry::UnsignedByteType),
    };
    static const QSGGeometry::AttributeSet set{int(attributes.size()), sizeof(SurfaceVertex),
                                               attributes.data()};
    return set;
}

class SurfaceShader : public QSGMaterialShader {
public:
    SurfaceShader()
    {
        setShaderFileName(VertexStage,
                          QStringLiteral(":/qt/qml/Veltro/Design/shaders/surface.vert.qsb"));
        setShaderFileName(FragmentStage,
                          QStringLiteral(":/qt/qml/Veltro/Design/shaders/surface.frag.qsb"));
    }

    bool updateUniformData(RenderState &state, QSGMaterial *, QSGMaterial *) override
    {
        constexpr qsizetype matrixBytes = 64;
        char *block = state.uniformData()->data();
        if (state.isMatrixDirty()) {
            const QMatrix4x4 matrix = state.combinedMatrix();
            std::memcpy(block, matrix.constData(), matrixBytes);
        }
        if (state.isOpacityDirty()) {
            const float opacity = state.opacity();
            std::memcpy(block + matrixBytes, &opacity, sizeof opacity);
        }
        return state.isMatrixDirty() || state.isOpacityDirty();
    }
};

class SurfaceMaterial : public QSGMaterial {
public:
    SurfaceMaterial() { setFlag(Blending); }
    [[nodiscard]] QSGMaterialType *type() const override
    {
        static QSGMaterialType type;
        return &type;
    }
    [[nodiscard]] QSGMaterialShader *createShader(QSGRendererInterface::RenderMode) const override
    {
        return new SurfaceShader;
    }
    [[nodiscard]] int compare(const QSGMaterial *) const override { return 0; }
};

std::array<quint8, 4> premultiplied(const QColor &color)
{
    const QRgb rgba = qPremultiply(color.rgba());
    return {quint8(qRed(rgba)), quint8(qGreen(rgba)), quint8(qBlue(rgba)), quint8(qAlpha(rgba))};
}

}

SurfaceNode::SurfaceNode() : m_quad(surfaceAttributes(), 4)
{
    m_quad.setDrawingMode(QSGGeometry::DrawTriangleStrip);
    setGeometry(&m_quad);
    setMaterial(new SurfaceMaterial);
    setFlag(OwnsMaterial);
}

void SurfaceNode::update(const QSizeF &size, const SurfaceStyle &style)
{
    const auto reach = float(style.reach());
    const auto halfWidth = float(size.width() / 2);
    const auto halfHeight = float(size.height() / 2);
    SurfaceVertex vertex;
    vertex.shape = {halfWidth, halfHeight, qMin(float(style.radius), qMin(halfWidth, halfHeight)),
                    float(style.strokeWidth)};
    vertex.shadow = {float(style.shadowOffset.x()), float(style.shadowOffset.y()),
                     style.hasShadow() ? float(style.shadowBlur) : 0.0F,
                     float(style.cornerExponent)};
    vertex.fill = premultiplied(style.fill);
    vertex.stroke = premultiplied(style.stroke);
    vertex.shade = premultiplied(style.shadow);
    auto *vertices = static_cast<SurfaceVertex *>(m_quad.vertexData());
    for (int corner = 0; corner < 4; ++corner) {
        const float x = (corner % 2 == 0 ? -1.0F : 1.0F) * (halfWidth + reach);
        const float y = (corner < 2 ? -1.0F : 1.0F) * (halfHeight + reach);
        vertex.position = {halfWidth + x, halfHeight + y};
        vertex.fromCentre = {x, y};
        vertices[corner] = vertex;
    }
    markDirty(DirtyGeometry);
}

}
