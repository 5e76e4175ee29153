// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#version 440

layout(location = 0) in vec2 point;       // logical pixels from the centre
layout(location = 1) in vec4 shape;  // half width, half height, corner radius, stroke width
layout(location = 2) in vec4 shadow; // offset x, offset y, blur radius, corner exponent
layout(location = 3) in vec4 fill;   // colours are premultiplied
layout(location = 4) in vec4 stroke;
layout(location = 5) in vec4 shade;

layout(location = 0) out vec4 colour;

// Signed distance to the edge: straight sides, and corners on |x|^n + |y|^n = r^n.
float edge(vec2 p, vec2 halfSize, float radius, float exponent)
{
    vec2 q = abs(p) - (halfSize - vec2(radius));
    if (min(q.x, q.y) <= 0.0 || radius <= 0.0)
        return max(q.x, q.y) - radius;
    float reach = pow(pow(q.x, exponent) + pow(q.y, exponent), 1.0 / exponent);
    vec2 slope = pow(q / reach, vec2(exponent - 1.0));
    return (reach - radius) / length(slope);
}

void main()
{
    float d = edge(point, shape.xy, shape.z, shadow.w);
    float pixel = max(fwidth(point.x), 0.0001);
    float inside = clamp(0.5 - d / pixel, 0.0, 1.0);
    float within = shape.w > 0.0 ? clamp(0.5 - (d + shape.w) / pixel, 0.0, 1.0) : inside;

    colour = vec4(0.0);
    if (shadow.z > 0.0) {
        float sigma = shadow.z * 0.5;
        float radius = min(shape.z + sigma, min(shape.x, shape.y));
        float s = edge(point - shadow.xy, shape.xy, radius, shadow.w);
        colour = shade / (1.0 + exp(1.702 * s / sigma));
    }
    colour = colour * (1.0 - fill.a * inside) + fill * inside;
    float rim = inside - within;
    colour = colour * (1.0 - stroke.a * rim) + stroke * rim;
}
