// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "engine/service/cookie_reader.h"

#include "engine/bridge/python.h"
#include "engine/runtime/python_executor.h"
#include "engine/service/yt_dlp_service.h"

#include <QCoro/QCoroFuture>
#include <QFuture>
#include <QPromise>

#include <exception>
#include <string>
#include <vector>

namespace veltro {
namespace {

std::vector<std::string> utf8(const QStringList &texts)
{
    std::vector<std::string> result;
    for (const QString &text : texts) {
        result.push_back(text.toStdString());
    }
    return result;
}

/// What a function of the module answers to a few texts, and a list of texts behind them.
QByteArray answerOf(const std::string &function, const QStringList &texts,
                    const std::optional<QStringList> &list)
{
    PythonArguments arguments;
    for (const std::string &text : utf8(texts)) {
        arguments.emplace_back(text);
    }
    if (list) {
        arguments.emplace_back(utf8(*list));
    }
    const PythonObject answer = Python()
                                    .attemptImport("veltro_ytdlp.cookie_import")
                                    .throwing()
                                    .attr(function)
                                    .throwing()
                                    .call(arguments);
    return QByteArray::fromStdString(answer.to<std::string>().value_or(std::string()));
}

QFuture<QByteArray> ask(std::string function, QStringList texts, std::optional<QStringList> list)
{
    auto promise = std::make_shared<QPromise<QByteArray>>();
    QFuture<QByteArray> answer = promise->future();
    PythonExecutor::probe().queue().async([=] {
        promise->start();
        try {
            promise->addResult(
                PythonExecutor::runThrowing([&] { return answerOf(function, texts, list); }));
        } catch (...) {
            promise->setException(std::current_exception());
        }
        promise->finish();
    });
    return answer;
}

}

QCoro::Task<QByteArray> CookieReader::browsers() const
{
    co_await m_engine->ensureBootstrapped();
    QFuture<QByteArray> answer = ask("browsers", {}, std::nullopt);
    co_return co_await answer;
}

QCoro::Task<QByteArray> CookieReader::fromBrowser(QString reader, QString folder,
                                                  QStringList hosts) const
{
    co_await m_engine->ensureBootstrapped();
    const QStringList place{reader, folder};
    QFuture<QByteArray> answer = ask("from_browser", place, hosts);
    co_return co_await answer;
}

QCoro::Task<QByteArray> CookieReader::fromFile(QString file, QStringList hosts) const
{
    co_await m_engine->ensureBootstrapped();
    const QStringList place{file};
    QFuture<QByteArray> answer = ask("from_file", place, hosts);
    co_return co_await answer;
}

}
