// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "tools/veltro-engine/library_commands.h"

#include "library/library_items_model.h"
#include "library/model_container.h"
#include "tools/veltro-engine/json_lines.h"

#include <QCommandLineParser>
#include <QCoro/QCoroSignal>
#include <QJsonObject>

#include <cstdio>

namespace veltro {
namespace {

QJsonObject toJson(const DownloadItem &item)
{
    QJsonObject object{{QStringLiteral("id"), item.id.toString(QUuid::WithoutBraces)},
                       {QStringLiteral("sourceURL"), item.sourceURL.toString(QUrl::FullyEncoded)},
                       {QStringLiteral("title"), item.title},
                       {QStringLiteral("formatLabel"), item.formatLabel},
                       {QStringLiteral("fileSizeBytes"), item.fileSizeBytes},
                       {QStringLiteral("state"), item.stateRaw}};
    if (item.uploader) {
        object.insert(QStringLiteral("uploader"), *item.uploader);
    }
    if (item.durationSeconds) {
        object.insert(QStringLiteral("durationSeconds"), *item.durationSeconds);
    }
    if (item.localFileURL) {
        object.insert(QStringLiteral("file"), item.localFileURL->toLocalFile());
    }
    if (item.thumbnailFileURL) {
        object.insert(QStringLiteral("thumbnail"), item.thumbnailFileURL->toLocalFile());
    }
    if (item.completedAt) {
        object.insert(QStringLiteral("completedAt"), item.completedAt->toString(Qt::ISODateWithMs));
    }
    return object;
}

/// Whether the command is one, and the model does what it says.
bool configure(LibraryItemsModel &model, const QStringList &arguments)
{
    QCommandLineParser parser;
    parser.addOption({QStringLiteral("limit"), QString(), QStringLiteral("count")});
    const bool understood = parser.parse(QStringList(QStringLiteral("library")) + arguments);
    const QStringList words = parser.positionalArguments();
    const bool isList = words == QStringList(QStringLiteral("list"));
    const bool isSearch = words.size() == 2 && words.front() == QLatin1String("search");
    model.setLimit(parser.value(QStringLiteral("limit")).toInt());
    model.setSearch(isSearch ? words.back() : QString());
    return understood && (isList || isSearch);
}

}

QCoro::Task<int> libraryCommand(QStringList arguments)
{
    LibraryItemsModel model;
    if (!configure(model, arguments)) {
        std::fputs("usage: veltro-engine library list [--limit COUNT] | search TEXT\n", stderr);
        co_return 2;
    }
    const std::shared_ptr<ModelContainer> container = co_await makeContainerInBackground();
    if (!container) {
        co_return 1; // the log has why
    }
    model.setContainer(container);
    if (!model.isLoaded()) {
        co_await qCoro(&model, &LibraryItemsModel::isLoadedChanged);
    }
    for (int row = 0; row < model.count(); ++row) {
        printJsonLine(toJson(model.itemAt(row)));
    }
    co_return 0;
}

}
