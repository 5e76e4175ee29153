// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/design/surface_material.h"

#include <QSGMaterial>

#include <array>
#include <cstring>
#include <vector>

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

constexpr int cornersOfTriangles = 6;

/// Two triangles.
std::array<QPointF, cornersOfTriangles> trianglesOf(const QRectF &piece)
{
    return {piece.topLeft(),    piece.topRight(), piece.bottomLeft(),
            piece.bottomLeft(), piece.topRight(), piece.bottomRight()};
}

/// A surface cut along lines where its look changes; no two pieces overlap.
struct SurfacePieces {
    std::vector<QRectF> rim;
    std::vector<QRectF> plain; ///< the fill and nothing else
};

// Five columns and five rows: what reaches beyond the sides with the hairline, the corners' width,
// and the middle.
SurfacePieces piecesOf(const QSizeF &size, const SurfaceStyle &style)
{
    const double reach = style.reach();
    const double width = size.width();
    const double height = size.height();
    const QRectF whole(-reach, -reach, width + 2 * reach, height + 2 * reach);
    // A shadow shows through what is not opaque.
    if (style.hasShadow() && style.fill.alpha() < 255) {
        return {{whole}, {}};
    }
    const double half = qMin(width, height) / 2;
    const double edge = qMin(style.strokeWidth + 1, half);
    const double corner = qBound(edge, style.radius + 1, half);
    const auto piece = [](double left, double top, double right, double bottom) {
        return QRectF(QPointF(left, top), QPointF(right, bottom));
    };
    SurfacePieces pieces;
    pieces.rim = {
        piece(-reach, -reach, width + reach, edge),
        piece(-reach, edge, corner, corner),
        piece(width - corner, edge, width + reach, corner),
        piece(-reach, corner, edge, height - corner),
        piece(width - edge, corner, width + reach, height - corner),
        piece(-reach, height - corner, corner, height - edge),
        piece(width - corner, height - corner, width + reach, height - edge),
        piece(-reach, height - edge, width + reach, height + reach),
    };
    pieces.plain = {
        piece(corner, edge, width - corner, height - edge),
        piece(edge, corner, corner, height - corner),
        piece(width - corner, corner, width - edge, height - corner),
    };
    return pieces;
}

std::array<quint8, 4> premultiplied(const QColor &color)
{
    const QRgb rgba = qPremultiply(color.rgba());
    return {quint8(qRed(rgba)), quint8(qGreen(rgba)), quint8(qBlue(rgba)), quint8(qAlpha(rgba))};
}

}

SurfaceNode::SurfaceNode()
    : m_rim(surfaceAttributes(), 0), m_plain(QSGGeometry::defaultAttributes_ColoredPoint2D(), 0)
{
    m_rim.setDrawingMode(QSGGeometry::DrawTriangles);
    setGeometry(&m_rim);
    setMaterial(new SurfaceMaterial);
    setFlag(OwnsMaterial);
    m_plain.setDrawingMode(QSGGeometry::DrawTriangles);
    m_plainNode.setGeometry(&m_plain);
    m_plainNode.setMaterial(&m_plainMaterial);
    m_plainNode.setFlag(OwnedByParent, false);
}

void SurfaceNode::update(const QSizeF &size, const SurfaceStyle &style)
{
    const SurfacePieces pieces = piecesOf(size, style);
    updateRim(size, style, pieces.rim);
    updatePlain(style.fill, pieces.plain);
}

void SurfaceNode::updateRim(const QSizeF &size, const SurfaceStyle &style,
                            std::span<const QRectF> pieces)
{
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
    m_rim.allocate(cornersOfTriangles * int(pieces.size()));
    auto *vertices = static_cast<SurfaceVertex *>(m_rim.vertexData());
    for (const QRectF &piece : pieces) {
        for (const QPointF &corner : trianglesOf(piece)) {
            vertex.position = {float(corner.x()), float(corner.y())};
            vertex.fromCentre = {vertex.position[0] - halfWidth, vertex.position[1] - halfHeight};
            *vertices++ = vertex;
        }
    }
    markDirty(DirtyGeometry);
}

void SurfaceNode::updatePlain(const QColor &fill, std::span<const QRectF> pieces)
{
    const bool isSeen = fill.alpha() > 0 && !pieces.empty();
    if (isSeen != (m_plainNode.parent() != nullptr)) {
        isSeen ? appendChildNode(&m_plainNode) : removeChildNode(&m_plainNode);
    }
    if (!isSeen) {
        return;
    }
    const std::array<quint8, 4> color = premultiplied(fill);
    m_plainMaterial.setFlag(QSGMaterial::Blending, fill.alpha() < 255);
    m_plain.allocate(cornersOfTriangles * int(pieces.size()));
    QSGGeometry::ColoredPoint2D *point = m_plain.vertexDataAsColoredPoint2D();
    for (const QRectF &piece : pieces) {
        for (const QPointF &corner : trianglesOf(piece)) {
            point->set(float(corner.x()), float(corner.y()), color[0], color[1], color[2],
                       color[3]);
            ++point;
        }
    }
    m_plainNode.markDirty(DirtyGeometry | DirtyMaterial);
}

}
