// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/design/appearance.h"

#include "ui/design/last_input.h"
#include "ui/design/spoken_state.h"
#include "ui/design/text_drawing.h"

#include <QFontDatabase>
#include <QGuiApplication>
#include <QPalette>

namespace veltro {
namespace {

constexpr QRgb inkColor = qRgb(0x10, 0x14, 0x1C);
constexpr QRgb pageColor = qRgb(0xF6, 0xF3, 0xEF);
constexpr QRgb accentColor = qRgb(0x6F, 0x64, 0xE5);

}

void applyAppearance()
{
    QFont font = QGuiApplication::font();
    if (QFontDatabase::hasFamily(QStringLiteral("Inter"))) {
        font.setFamily(QStringLiteral("Inter"));
    }
    font.setPixelSize(13);
    QGuiApplication::setFont(font);

    QPalette palette(QColor::fromRgb(inkColor), QColor::fromRgb(pageColor));
    palette.setColor(QPalette::Base, Qt::white);
    palette.setColor(QPalette::Highlight, QColor::fromRgb(accentColor));
    palette.setColor(QPalette::HighlightedText, Qt::white);
    QGuiApplication::setPalette(palette);
    drawTextsAsScreensAllow();
    LastInput::instance();
    tellWhatIsDisabled();
}

}
