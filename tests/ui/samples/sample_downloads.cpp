// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "tests/ui/samples/sample_downloads.h"

#include "tests/ui/samples/sample_texts.h"

#include <QJSEngine>

#include <array>

using namespace Qt::StringLiterals;

namespace veltro {
namespace {

using Kind = ItemState::Kind;

struct Stage {
    ItemState state;
    DownloadProgressed progress;
};

const std::array<Stage, 8> &stages()
{
    static const std::array<Stage, 8> all{{
        {{Kind::running, {}}, {31'400'000, 84'300'000, 2'650'000.0, 19.9, {}, {}}},
        {{Kind::running, {}}, {5'000'000, {}, 910'000.0, 42.7, 3, 12}},
        {{Kind::running, {}}, {5'000'000, {}, 910'000.0, {}, {}, {}}},
        {ItemState::postProcessing(u"Merger"_s), {84'300'000, 84'300'000, {}, {}, {}, {}}},
        {{Kind::queued, {}}, {}},
        {{Kind::done, {}}, {84'300'000, 84'300'000, {}, {}, {}, {}}},
        {ItemState::failed(u"HTTP Error 403: Forbidden"_s), {}},
        {{Kind::cancelled, {}}, {}},
    }};
    return all;
}

}

void SampleDownloads::setSize(int size)
{
    while (m_downloads.count() < size) {
        const auto place = static_cast<std::size_t>(m_downloads.count());
        auto record = std::make_shared<DownloadProgressState>(
            DownloadOrder{QUuid::createUuid(),
                          QUrl(u"https://video.example/watch?v=%1"_s.arg(m_downloads.count())),
                          u"best"_s, u"1080p"_s});
        const QStringList &titles = sampleTitles();
        record->setTitle(titles.at(m_downloads.count() % titles.size()));
        const Stage &stage = stages().at(place % stages().size());
        record->apply(stage.progress);
        record->setState(stage.state);
        if (stage.state.kind == Kind::done) {
            record->setLocalFileURL(QUrl(u"file:///home-of/Downloads/Video.mp4"_s));
        }
        // A bare pointer that a page is handed belongs to the queue all the same.
        QJSEngine::setObjectOwnership(record.get(), QJSEngine::CppOwnership);
        m_downloads.append(std::move(record));
    }
    Q_EMIT sizeChanged();
}

}
