// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
// What the desktop waits for, as someone types into its search:
//
//     veltro-bench-search fill INDEX COUNT
//     veltro-bench-search search INDEX TEXT          one JSON object for each letter
#include "benchmarks/sample_titles.h"
#include "platform/search_index.h"

#include <QCoreApplication>
#include <QElapsedTimer>

#include <cstdio>

namespace veltro {
namespace {

SearchableItem videoAt(int number)
{
    SearchableItem item;
    item.uniqueIdentifier = QString::number(number);
    item.domainIdentifier = QStringLiteral("app.veltro.app.library");
    item.contentType = QStringLiteral("video/*");
    item.title = sampleTitle(number);
    item.contentDescription = QStringLiteral("Channel %1").arg(number % 977);
    item.keywords = {QStringLiteral("video"), QStringLiteral("veltro"), *item.contentDescription};
    return item;
}

void fill(SearchIndex &index, int count)
{
    std::vector<SearchableItem> items;
    items.reserve(static_cast<std::size_t>(count));
    for (int number = 0; number < count; ++number) {
        items.push_back(videoAt(number));
    }
    index.indexItems(std::move(items));
    index.finish();
}

void search(const SearchIndex &index, const QString &text)
{
    constexpr int shown = 20;
    for (qsizetype length = 1; length <= text.size(); ++length) {
        QElapsedTimer timer;
        timer.start();
        const auto found = index.search({text.left(length)}, shown);
        std::printf("{\"letters\": %lld, \"found\": %zu, \"answered\": %.6f}\n",
                    static_cast<long long>(length), found.size(),
                    double(timer.nsecsElapsed()) / 1e9);
    }
}

}
}

int main(int argc, char *argv[])
{
    const QCoreApplication application(argc, argv);
    const QStringList arguments = QCoreApplication::arguments();
    veltro::SearchIndex index(arguments.value(2));
    if (arguments.value(1) == QLatin1String("fill")) {
        veltro::fill(index, arguments.value(3).toInt());
    } else {
        veltro::search(index, arguments.value(3));
    }
    return 0;
}
