// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "tests/ui/samples/sample_sites.h"

#include <QDateTime>

#include <array>

namespace veltro {
namespace {

struct Site {
    const char *host;
    int days;
};

constexpr std::array<Site, 5> sites{
    {{"a-very-long-name-of-a-host-that-does-not-fit.media.archive.of.the.harbour.example", 0},
     {"films.example", 1},
     {"video.example", 15},
     {"www.video.example", 70},
     {"xn--hafen-3ya.example", 900}}};

enum Role { host = Qt::UserRole, updatedAt };

}

int SampleSites::rowCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : static_cast<int>(sites.size());
}

QVariant SampleSites::data(const QModelIndex &index, int role) const
{
    if (!checkIndex(index, CheckIndexOption::IndexIsValid)) {
        return {};
    }
    const Site &site = sites.at(static_cast<std::size_t>(index.row()));
    if (role == host) {
        return QString::fromLatin1(site.host);
    }
    return role == updatedAt ? QVariant(QDateTime::currentDateTime().addDays(-site.days))
                             : QVariant();
}

QHash<int, QByteArray> SampleSites::roleNames() const
{
    return {{host, "host"}, {updatedAt, "updatedAt"}};
}

}
