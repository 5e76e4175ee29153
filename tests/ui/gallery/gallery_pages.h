// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once
#include <QQmlEngine>
#include <QQuickWindow>

#include <memory>

namespace veltro {

/// The pages of the gallery, by name: one for each component and each state of a screen. A file is
/// a page, or has one for each of its scenes.
[[nodiscard]] QStringList galleryPages();

/// Sets what the program sets before its first window, fonts and light colours, and gives the pages
/// a home and a library of their own.
void prepareGallery();

/// A page in a window of its own; a page that is a window is its own.
class GalleryPage {
public:
    explicit GalleryPage(const QString &page, QSize size = {980, 680});

    /// Not shown yet. Null when the page has an error.
    [[nodiscard]] QQuickWindow *window() const { return m_window.get(); }

private:
    QQmlEngine m_engine;
    std::unique_ptr<QQuickWindow> m_window;
};

}
