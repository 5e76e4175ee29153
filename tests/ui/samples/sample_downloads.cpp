// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "tests/ui/samples/sample_downloads.h"

#include "tests/ui/samples/sample_texts.h"

#include <QJSEngine>

#include <array>
#include <functional>

namespace veltro {
namespace {

using Kind = ItemState::Kind;
using Stage = std::function<void(DownloadProgressState &)>;

void finish(DownloadProgressState &record)
{
    record.apply(DownloadProgressed{84'300'000, 84'300'000, {}, {}, {}, {}});
    record.apply(DownloadFinished{QUrl(QStringLiteral("file:///home-of/Downloads/Video.mp4"))});
}

const std::array<Stage, 8> &stages()
{
    static const std::array<Stage, 8> all{
        [](DownloadProgressState &record) {
            record.setState({Kind::running, {}});
            record.apply(DownloadProgressed{31'400'000, 84'300'000, 2'650'000.0, 19.9, {}, {}});
        },
        [](DownloadProgressState &record) {
            record.setState({Kind::running, {}});
            record.apply(DownloadProgressed{5'000'000, {}, 910'000.0, 42.7, 3, 12});
        },
        [](DownloadProgressState &record) {
            record.setState({Kind::running, {}});
            record.apply(DownloadProgressed{5'000'000, {}, 910'000.0, {}, {}, {}});
        },
        [](DownloadProgressState &record) {
            record.apply(DownloadProgressed{84'300'000, 84'300'000, {}, {}, {}, {}});
            record.setState(ItemState::postProcessing(QStringLiteral("Merger")));
        },
        [](DownloadProgressState &) {},
        finish,
        [](DownloadProgressState &record) {
            record.setState(ItemState::failed(QStringLiteral("HTTP Error 403: Forbidden")));
        },
        [](DownloadProgressState &record) {
            record.setState({Kind::cancelled, {}});
        },
    };
    return all;
}

}

void SampleDownloads::setSize(int size)
{
    while (m_downloads.count() < size) {
        const auto place = static_cast<std::size_t>(m_downloads.count());
        auto record = std::make_shared<DownloadProgressState>(DownloadOrder{
            QUuid::createUuid(),
            QUrl(QStringLiteral("https://video.example/watch?v=%1").arg(m_downloads.count())),
            QStringLiteral("best"), QStringLiteral("1080p")});
        const QStringList &titles = sampleTitles();
        record->setTitle(titles.at(m_downloads.count() % titles.size()));
        stages().at(place % stages().size())(*record);
        // A bare pointer that a page is handed belongs to the queue all the same.
        QJSEngine::setObjectOwnership(record.get(), QJSEngine::CppOwnership);
        m_downloads.append(std::move(record));
    }
    Q_EMIT sizeChanged();
}

}
