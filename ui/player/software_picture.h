// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once
#include "ui/player/player_core.h"

#include <QImage>
#include <QSize>

#include <memory>

namespace veltro::player {

/// Draws a player's pictures with the processor, on the core's queue, for windows that have no
/// OpenGL. Made and used where the scene graph synchronises, with the main thread held.
class SoftwarePicture {
public:
    explicit SoftwarePicture(std::shared_ptr<PlayerCore> core);
    ~SoftwarePicture();
    SoftwarePicture(const SoftwarePicture &) = delete;
    SoftwarePicture &operator=(const SoftwarePicture &) = delete;

    /// In pixels of the screen. A picture of that size follows.
    void setSize(QSize pixels);
    /// The newest picture; null before the first.
    [[nodiscard]] QImage image() const;

    class Drawing;

private:
    const std::shared_ptr<PlayerCore> m_core;
    const std::shared_ptr<Drawing> m_drawing;
};

}
