// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/picker/format_rows_model.h"

#include "ui/picker/format_sections.h"

#include <utility>

namespace veltro {

void FormatRowsModel::setFormats(std::vector<Format> formats)
{
    beginResetModel();
    m_formats = std::move(formats);
    endResetModel();
    Q_EMIT countChanged();
}

int FormatRowsModel::rowCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : count();
}

QVariant FormatRowsModel::data(const QModelIndex &index, int role) const
{
    if (!checkIndex(index, CheckIndexOption::IndexIsValid)) {
        return {};
    }
    const Format &format = m_formats[static_cast<std::size_t>(index.row())];
    switch (role) {
    case label:
    case Qt::DisplayRole:
        return format.label();
    case extension:
        return extensionText(format);
    case size:
        return sizeText(format);
    default:
        return {};
    }
}

QHash<int, QByteArray> FormatRowsModel::roleNames() const
{
    return {{label, "label"}, {extension, "extension"}, {size, "size"}};
}

}
