// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/design/surface_raster.h"

#include <algorithm>
#include <cmath>

namespace veltro {
namespace {

struct Pixel {
    double red = 0, green = 0, blue = 0, alpha = 0; // premultiplied, 0 to 1

    explicit Pixel(const QColor &color)
        : red(color.redF() * color.alphaF())
        , green(color.greenF() * color.alphaF())
        , blue(color.blueF() * color.alphaF())
        , alpha(color.alphaF())
    {}
    Pixel() = default;
    void put(const Pixel &over, double coverage)
    {
        const double rest = 1 - over.alpha * coverage;
        red = red * rest + over.red * coverage;
        green = green * rest + over.green * coverage;
        blue = blue * rest + over.blue * coverage;
        alpha = alpha * rest + over.alpha * coverage;
    }
    [[nodiscard]] QRgb rgba() const
    {
        const auto byte = [](double part) {
            return int(std::lround(std::clamp(part, 0., 1.) * 255));
        };
        return qRgba(byte(red), byte(green), byte(blue), byte(alpha));
    }
};

/// The signed distance to the edge of a shape around the origin.
double edgeDistance(double x, double y, const QSizeF &half, double radius, double exponent)
{
    const double qx = std::abs(x) - (half.width() - radius);
    const double qy = std::abs(y) - (half.height() - radius);
    if (std::min(qx, qy) <= 0 || radius <= 0) {
        return std::max(qx, qy) - radius;
    }
    const double reach = std::pow(std::pow(qx, exponent) + std::pow(qy, exponent), 1 / exponent);
    const double slope =
        std::hypot(std::pow(qx / reach, exponent - 1), std::pow(qy / reach, exponent - 1));
    return (reach - radius) / slope;
}

class SurfacePainter {
public:
    SurfacePainter(const QSizeF &size, const SurfaceStyle &style, double scale)
        : m_half(size / 2)
        , m_style(style)
        , m_scale(scale)
        , m_radius(std::min(style.radius, std::min(m_half.width(), m_half.height())))
        , m_sigma(style.shadowBlur / 2)
        , m_shadowRadius(std::min(m_radius + m_sigma, std::min(m_half.width(), m_half.height())))
        , m_fill(style.fill)
        , m_stroke(style.stroke)
        , m_shadow(style.shadow)
    {}

    [[nodiscard]] QRgb at(double x, double y) const
    {
        Pixel pixel;
        const double d = edgeDistance(x, y, m_half, m_radius, m_style.cornerExponent);
        const double inside = std::clamp(0.5 - d * m_scale, 0., 1.);
        const double within = std::clamp(0.5 - (d + m_style.strokeWidth) * m_scale, 0., 1.);
        const bool covered = inside == 1 && m_fill.alpha == 1;
        if (m_style.hasShadow() && !covered) {
            const double s =
                edgeDistance(x - m_style.shadowOffset.x(), y - m_style.shadowOffset.y(), m_half,
                             m_shadowRadius, m_style.cornerExponent);
            pixel.put(m_shadow, 1 / (1 + std::exp(1.702 * s / m_sigma)));
        }
        pixel.put(m_fill, inside);
        if (m_style.strokeWidth > 0) {
            pixel.put(m_stroke, inside - within);
        }
        return pixel.rgba();
    }

    /// Half the width that is a plain fill in every row between the corners.
    [[nodiscard]] double plainHalf(double y) const
    {
        const double margin = std::max(m_radius, m_style.strokeWidth) + 1;
        const bool opaque = m_fill.alpha == 1 || !m_style.hasShadow();
        return opaque && std::abs(y) < m_half.height() - margin ? m_half.width() - margin : 0;
    }

    [[nodiscard]] QRgb plain() const { return m_fill.rgba(); }

private:
    const QSizeF m_half;
    const SurfaceStyle &m_style;
    const double m_scale;
    const double m_radius;
    const double m_sigma;
    const double m_shadowRadius;
    const Pixel m_fill;
    const Pixel m_stroke;
    const Pixel m_shadow;
};

}

QImage rasterizeSurface(const QSizeF &size, const SurfaceStyle &style, double scale)
{
    const double reach = style.reach();
    const QSizeF whole(size.width() + 2 * reach, size.height() + 2 * reach);
    QImage image((whole * scale).toSize().expandedTo(QSize(1, 1)),
                 QImage::Format_ARGB32_Premultiplied);
    image.setDevicePixelRatio(scale);
    const SurfacePainter painter(size, style, scale);
    for (int row = 0; row < image.height(); ++row) {
        auto *line = reinterpret_cast<QRgb *>(image.scanLine(row));
        const double y = (row + 0.5) / scale - whole.height() / 2;
        const double plain = painter.plainHalf(y);
        for (int column = 0; column < image.width(); ++column) {
            const double x = (column + 0.5) / scale - whole.width() / 2;
            line[column] = std::abs(x) < plain ? painter.plain() : painter.at(x, y);
        }
    }
    return image;
}

}
