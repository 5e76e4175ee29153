// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#version 440

layout(location = 0) in vec2 position;
layout(location = 1) in vec2 fromCentre;
layout(location = 2) in vec4 inShape;
layout(location = 3) in vec4 inShadow;
layout(location = 4) in vec4 inFill;
layout(location = 5) in vec4 inStroke;
layout(location = 6) in vec4 inShade;

layout(location = 0) out vec2 point;
layout(location = 1) out vec4 shape;
layout(location = 2) out vec4 shadow;
layout(location = 3) out vec4 fill;
layout(location = 4) out vec4 stroke;
layout(location = 5) out vec4 shade;

layout(std140, binding = 0) uniform Block {
    mat4 matrix;
    float opacity;
};

out gl_PerVertex { vec4 gl_Position; };

void main()
{
    point = fromCentre;
    shape = inShape;
    shadow = inShadow;
    fill = inFill * opacity;
    stroke = inStroke * opacity;
    shade = inShade * opacity;
    gl_Position = matrix * vec4(position, 0.0, 1.0);
}
