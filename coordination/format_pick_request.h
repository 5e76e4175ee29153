// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once
#include "engine/media/media_info.h"

#include <QMetaType>
#include <QUrl>
#include <QUuid>

namespace veltro {

/// Asks the user to pick one of the formats of a page. A plain value.
struct FormatPickRequest {
    QUuid id;
    QUrl url; ///< the page
    MediaInfo info;

    bool operator==(const FormatPickRequest &) const = default;
};

}

Q_DECLARE_METATYPE(veltro::FormatPickRequest)
