// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/batch/batch_links.h"

#include "coordination/page_links.h"

namespace veltro {

void BatchLinks::setText(const QString &text)
{
    if (m_text != text) {
        m_text = text;
        m_count = int(pageLinks(text).size());
        Q_EMIT textChanged();
    }
}

QString BatchLinks::countText() const
{
    return m_count == 1 ? tr("1 link detected") : tr("%1 links detected").arg(m_count);
}

}
