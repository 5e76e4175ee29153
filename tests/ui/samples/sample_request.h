// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once
#include "coordination/format_pick_request.h"

#include <QObject>
#include <QVariant>
#include <QtQml/qqmlregistration.h>

namespace veltro {

/// What a probe found, by kind of page.
class SampleRequest : public QObject {
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(Page page MEMBER page NOTIFY changed)
    /// Which of the sample titles; past the last begins again.
    Q_PROPERTY(int title MEMBER title NOTIFY changed)
    Q_PROPERTY(QVariant request READ request NOTIFY changed)
public:
    /// Of many formats; of formats that do not play as they are; without a list of formats; a list
    /// of entries; a list without usable ones.
    enum Page { Mixed, Unplayable, Formatless, Playlist, EmptyPlaylist };
    Q_ENUM(Page)

    using QObject::QObject;

    [[nodiscard]] QVariant request() const;

    Page page = Mixed;
    int title = 0;

Q_SIGNALS:
    void changed();
};

}
