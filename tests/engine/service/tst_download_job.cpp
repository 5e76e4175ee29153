// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
// The parts of a download run that need an interpreter but no page.
#include "engine/bridge/python.h"
#include "engine/runtime/python_executor.h"
#include "engine/service/download_hooks.h"
#include "engine/service/download_options.h"
#include "engine/service/engine_state.h"

#include <QCoro/QCoroTask>
#include <QTest>

using namespace veltro;

namespace {

template <typename Body>
auto inJob(Body body)
{
    return PythonExecutor::primary().queue().sync(
        [&body] { return PythonExecutor::runThrowing(body); });
}

using Events = EventStream<DownloadEvent>;

QCoro::Task<std::vector<DownloadEvent>> readAll(Events &stream)
{
    std::vector<DownloadEvent> events;
    while (std::optional<DownloadEvent> event = co_await stream.next()) {
        events.push_back(*event);
    }
    co_return events;
}

/// What one call of a hook left.
struct Reported {
    std::vector<DownloadEvent> events;
    std::optional<std::string> path;
    std::string raised; // the exception that came back to the interpreter
};

Reported reported(PythonFunction (*makeHook)(HookContext), const QByteArray &call,
                  bool isCancelled = false)
{
    Events stream;
    const auto state = std::make_shared<EngineState>();
    const HookContext context{QUuid::createUuid(), state, std::make_shared<PathBox>(),
                              stream.producer()};
    state->beginRun(context.id);
    if (isCancelled) {
        state->requestCancellation(context.id);
    }
    Reported result;
    result.raised = inJob([&]() -> std::string {
        const PythonObject scope = Python().attr("dict")();
        scope.setItem("hook", PythonObject(makeHook(context)));
        try {
            return Python().attr("eval")
                           .throwing()
                           .call({call.toStdString(), scope, scope})
                           .isNone()
                       ? ""
                       : "not None";
        } catch (const PythonError &error) {
            return error.message();
        }
    });
    stream.producer().finish();
    result.events = QCoro::waitFor(readAll(stream));
    result.path = context.finalPath->value();
    return result;
}

DownloadRequest someRequest()
{
    DownloadRequest request;
    request.id = QUuid::createUuid();
    request.url = QUrl(QStringLiteral("http://127.0.0.1/"));
    request.formatID = QStringLiteral("best");
    request.outputTemplate = QStringLiteral("%(title)s.%(ext)s");
    request.downloadsDirectory = QUrl::fromLocalFile(QStringLiteral("/a folder/100%/"));
    request.writeSubtitles = true;
    request.subtitleLanguages = {QStringLiteral("en"), QStringLiteral("de")};
    request.audioFormat = QStringLiteral("m4a");
    return request;
}

/// repr() of the options, with the hooks left out.
QString optionsOf(const DownloadRequest &request)
{
    return inJob([&request] {
        const PythonObject options = downloadOptions(request, "progress", "postprocessing");
        return QString::fromStdString(Python().attr("repr")(options).description());
    });
}

}

Q_DECLARE_METATYPE(DownloadEvent)

class TestDownloadJob : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void initTestCase();
    void aReportOfProgressBecomesAnEvent_data();
    void aReportOfProgressBecomesAnEvent();
    void theLastPathReportedIsKept_data();
    void theLastPathReportedIsKept();
    void aStepThatStartsIsReportedByName();
    void aCallWithoutAReportDoesNothing();
    void theOptionsAreThoseOfARunInTheirOrder();
    void optionalOptionsAreSetOnlyWhenAsked();
};

void TestDownloadJob::initTestCase()
{
    PythonExecutor::primary().queue().sync([] {
        PythonExecutor::prepareEnvironment();
        PythonExecutor::releaseStartupThreadState();
    });
}

void TestDownloadJob::aReportOfProgressBecomesAnEvent_data()
{
    QTest::addColumn<QByteArray>("report");
    QTest::addColumn<DownloadEvent>("event");
    const auto row = [](const char *why, const char *report, const DownloadProgressed &event) {
        QTest::newRow(why) << QByteArray("hook({'status': 'downloading', ") + report + "})"
                           << DownloadEvent(event);
    };
    using Event = DownloadProgressed;
    row("a plain file", "'downloaded_bytes': 5, 'total_bytes': 10, 'speed': 2.5, 'eta': 2",
        Event{5, 10, 2.5, 2.0, std::nullopt, std::nullopt});
    row("before anything is known", "'downloaded_bytes': None, 'speed': None, 'eta': None",
        Event{});
    row("an estimate that is whole",
        "'downloaded_bytes': 1, 'total_bytes': None, 'total_bytes_estimate': 7",
        Event{1, 7, std::nullopt, std::nullopt, std::nullopt, std::nullopt});
    row("an estimate with a fraction is none", "'downloaded_bytes': 1, 'total_bytes_estimate': 7.5",
        Event{1, std::nullopt, std::nullopt, std::nullopt, std::nullopt, std::nullopt});
    row("fragments", "'downloaded_bytes': 1, 'fragment_index': 3, 'fragment_count': 2",
        Event{1, std::nullopt, std::nullopt, std::nullopt, 3, 2});
}

void TestDownloadJob::aReportOfProgressBecomesAnEvent()
{
    QFETCH(QByteArray, report);
    QFETCH(DownloadEvent, event);
    const Reported result = reported(makeProgressHook, report);
    QCOMPARE(result.raised, std::string());
    QCOMPARE(result.events.size(), std::size_t(1));
    QVERIFY(result.events.front() == event);

    const Reported cancelled = reported(makeProgressHook, report, true);
    QVERIFY(cancelled.events.front() == event); // told before it stops
    QVERIFY(!cancelled.raised.empty());
}

void TestDownloadJob::theLastPathReportedIsKept_data()
{
    QTest::addColumn<bool>("isPostprocessor");
    QTest::addColumn<QByteArray>("call");
    QTest::addColumn<QString>("path");
    const QByteArray finished = "hook({'status': 'finished', ";
    QTest::newRow("downloaded") << false << finished + "'filename': '/a/b'})"
                                << QStringLiteral("/a/b");
    QTest::newRow("no text") << false << finished + "'filename': 7})" << QString();
    QTest::newRow("processed") << true << finished + "'info_dict': {'filepath': '/c'}})"
                               << QStringLiteral("/c");
    QTest::newRow("processed, no dictionary")
        << true << finished + "'info_dict': None})" << QString();
    QTest::newRow("another status")
        << false << QByteArray("hook({'status': 'error', 'filename': '/a'})") << QString();
}

void TestDownloadJob::theLastPathReportedIsKept()
{
    QFETCH(bool, isPostprocessor);
    QFETCH(QByteArray, call);
    QFETCH(QString, path);
    const Reported result =
        reported(isPostprocessor ? makePostprocessorHook : makeProgressHook, call);
    QCOMPARE(result.raised, std::string());
    QVERIFY(result.events.empty());
    QCOMPARE(QString::fromStdString(result.path.value_or("")), path);
}

void TestDownloadJob::aStepThatStartsIsReportedByName()
{
    const auto stageOf = [](const QByteArray &call) {
        const Reported result = reported(makePostprocessorHook, call, true);
        return result.events.size() == 1 && result.raised.empty()
                   ? std::get<DownloadPostProcessing>(result.events.front()).stage
                   : QStringLiteral("?");
    };
    QCOMPARE(stageOf("hook({'status': 'started', 'postprocessor': 'Merger'})"),
             QStringLiteral("Merger"));
    QCOMPARE(stageOf("hook({'status': 'started'})"), QStringLiteral("processing"));
}

void TestDownloadJob::aCallWithoutAReportDoesNothing()
{
    for (auto *const makeHook : {makeProgressHook, makePostprocessorHook}) {
        const Reported result = reported(makeHook, "hook()", true);
        QCOMPARE(result.raised, std::string());
        QVERIFY(result.events.empty());
    }
}

void TestDownloadJob::theOptionsAreThoseOfARunInTheirOrder()
{
    QCOMPARE(optionsOf(someRequest()),
             QStringLiteral("{'outtmpl': '/a folder/100%/%(title)s.%(ext)s', "
                            "'paths': {'home': '/a folder/100%', 'temp': '/a folder/100%'}, "
                            "'format': \"bestvideo[vcodec~='^(avc1|h264)']+bestaudio[ext=m4a]"
                            "/bestvideo*+bestaudio/best\", "
                            "'merge_output_format': 'mp4', 'progress_hooks': ['progress'], "
                            "'postprocessor_hooks': ['postprocessing'], 'noplaylist': True, "
                            "'writesubtitles': True, 'subtitleslangs': ['en', 'de'], "
                            "'embedsubtitles': True, 'writethumbnail': True, 'quiet': False, "
                            "'no_warnings': False, 'verbose': True, 'overwrites': True, "
                            "'ffmpeg_location': '__veltro_ffmpeg__'}"));
}

void TestDownloadJob::optionalOptionsAreSetOnlyWhenAsked()
{
    DownloadRequest request = someRequest();
    request.writeSubtitles = false;
    request.cookiesFile = QUrl::fromLocalFile(QStringLiteral("/c d"));
    request.extractAudio = true;
    const QString options = optionsOf(request);
    QVERIFY(options.contains(QStringLiteral("'writesubtitles': False")));
    QVERIFY(options.contains(QStringLiteral("'embedsubtitles': False")));
    QVERIFY(options.endsWith(
        QStringLiteral("'cookiefile': '/c d', 'postprocessors': [{'key': 'FFmpegExtractAudio', "
                       "'preferredcodec': 'm4a', 'preferredquality': '192'}]}")));
}

QTEST_GUILESS_MAIN(TestDownloadJob)
#include "tst_download_job.moc"
