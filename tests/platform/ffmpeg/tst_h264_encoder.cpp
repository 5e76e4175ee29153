// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/ffmpeg/command_run.h"
#include "platform/ffmpeg/h264_encoder.h"
#include "platform/ffmpeg/library_options.h"
#include "platform/ffmpeg/locale_scope.h"
#include "tests/platform/ffmpeg/runner_support.h"

#include <QFile>
#include <QTemporaryDir>
#include <QTest>

using namespace Qt::StringLiterals;
using namespace veltro::ffmpeg;

// Which encoder a playback transcode takes, and what happens when it does not keep its word. The
// fake hardware is a software encoder behind a device that fails when it is told to.
class TestH264Encoder : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void theMachineHasAnEncoderThatOpens();
    void hardwareThatWorksIsTaken();
    void hardwareThatDoesNotOpenIsPassedOver();
    void hardwareThatFailsLaterGivesWayToSoftware_data();
    void hardwareThatFailsLaterGivesWayToSoftware();
    void softwareThatFailsIsNotTriedAgain();

private:
    struct Answer {
        int code = 0;
        QByteArray log;
    };
    [[nodiscard]] Answer transcode(const H264EncoderList &encoders) const;
    [[nodiscard]] QByteArray written() const { return contentOf(path(u"out.mp4"_s)); }
    [[nodiscard]] QString path(const QString &name) const { return m_folder.filePath(name); }

    QTemporaryDir m_folder;
};

namespace {

constexpr int frameCount = 30;

/// What the fake hardware does, and what was asked of it.
struct FakeHardware {
    int failsAtAttach = -1; ///< counted from zero; the first is the trial
    int failsAtFrame = -1;
    int attached = 0;
    int uploaded = 0;
};

class FakeDevice : public EncoderDevice {
public:
    explicit FakeDevice(FakeHardware &hardware) : m_hardware(hardware) {}
    int attach(AVCodecContext &codec) override
    {
        codec.pix_fmt = AV_PIX_FMT_NV12;
        return m_hardware.attached++ == m_hardware.failsAtAttach ? AVERROR(ENOSYS) : 0;
    }
    int upload(AVFrame &frame) override
    {
        const bool isFit = frame.format == AV_PIX_FMT_NV12;
        return !isFit || m_hardware.uploaded++ == m_hardware.failsAtFrame ? AVERROR(EIO) : 0;
    }

private:
    FakeHardware &m_hardware;
};

H264Encoder software()
{
    return {avcodec_find_encoder_by_name("libx264"),
            {{"preset", "ultrafast"}},
            false,
            {},
            AV_PIX_FMT_NONE};
}

H264EncoderList withHardware(FakeHardware &hardware)
{
    return [&hardware](int, int) {
        H264Encoder fake = software();
        fake.isHardware = true;
        fake.makeDevice = [&hardware] { return std::make_unique<FakeDevice>(hardware); };
        fake.frameFormat = AV_PIX_FMT_NV12;
        return std::vector<H264Encoder>{fake, software()};
    };
}

std::vector<H264Encoder> onlySoftware(int, int)
{
    return {software()};
}

}

void TestH264Encoder::initTestCase()
{
    QVERIFY(m_folder.isValid());
    QVERIFY(makeMedia(u"-f lavfi -i testsrc2=d=1.2:s=160x90:r=25 -c:v libvpx-vp9 -deadline "
                      "realtime -cpu-used 8 in.webm"_s,
                      m_folder.path()));
}

TestH264Encoder::Answer TestH264Encoder::transcode(const H264EncoderList &encoders) const
{
    QFile::remove(path(u"out.mp4"_s));
    const std::vector<std::string> arguments =
        argumentsOf(playbackCommand(path(u"in.webm"_s), path(u"out.mp4"_s)));
    SessionLog log;
    RunControl control;
    const LocaleScope locale;
    const SessionLog::Scope scope(log);
    Answer answer;
    try {
        runCommand(parseCommandLine(arguments, isLibraryOption), log, control, encoders);
    } catch (const CommandFailed &failure) {
        answer.code = failure.code();
        log.append(std::string(failure.what()) + '\n');
    }
    answer.log = QByteArray::fromStdString(log.text());
    return answer;
}

void TestH264Encoder::theMachineHasAnEncoderThatOpens()
{
    const H264Encoder chosen = chooseH264Encoder(knownH264Encoders(1280, 720), 1280, 720);
    QVERIFY(chosen.encoder);
    QCOMPARE(chosen.encoder->id, AV_CODEC_ID_H264);
    const Answer answer = transcode(knownH264Encoders);
    QVERIFY2(answer.code == 0, answer.log.constData());
    QVERIFY(!written().isEmpty());
}

void TestH264Encoder::hardwareThatWorksIsTaken()
{
    FakeHardware hardware;
    const Answer answer = transcode(withHardware(hardware));
    QVERIFY2(answer.code == 0, answer.log.constData());
    QCOMPARE(hardware.attached, 2); // to see whether it opens, and to work
    QCOMPARE(hardware.uploaded, frameCount);
    QVERIFY(!written().isEmpty());
}

void TestH264Encoder::hardwareThatDoesNotOpenIsPassedOver()
{
    QCOMPARE(transcode(onlySoftware).code, 0);
    const QByteArray expected = written();
    FakeHardware hardware{.failsAtAttach = 0};
    const Answer answer = transcode(withHardware(hardware));
    QVERIFY2(answer.code == 0, answer.log.constData());
    QCOMPARE(hardware.attached, 1);
    QCOMPARE(hardware.uploaded, 0);
    QVERIFY(written() == expected);
    QVERIFY(!answer.log.contains("hardware"));
}

void TestH264Encoder::hardwareThatFailsLaterGivesWayToSoftware_data()
{
    QTest::addColumn<int>("attach");
    QTest::addColumn<int>("frame");
    QTest::newRow("when it is to work") << 1 << -1;
    QTest::newRow("at the first frame") << -1 << 0;
    QTest::newRow("after some frames") << -1 << 20;
    QTest::newRow("at the last frame") << -1 << frameCount - 1;
}

void TestH264Encoder::hardwareThatFailsLaterGivesWayToSoftware()
{
    QFETCH(const int, attach);
    QFETCH(const int, frame);
    QCOMPARE(transcode(onlySoftware).code, 0);
    const QByteArray expected = written();
    FakeHardware hardware{.failsAtAttach = attach, .failsAtFrame = frame};
    const Answer answer = transcode(withHardware(hardware));
    QVERIFY2(answer.code == 0, answer.log.constData());
    QCOMPARE(hardware.attached, 2);
    QCOMPARE(hardware.uploaded, frame + 1);
    QVERIFY(written() == expected);
    QVERIFY2(answer.log.contains("once more in software"), answer.log.constData());
}

void TestH264Encoder::softwareThatFailsIsNotTriedAgain()
{
    int asked = 0;
    const Answer answer = transcode([&asked](int, int) {
        ++asked;
        H264Encoder broken = software();
        broken.options = {{"profile", "nonsense"}};
        return std::vector<H264Encoder>{broken};
    });
    QCOMPARE(answer.code, 1);
    QCOMPARE(asked, 1);
    QVERIFY(!QFile::exists(path(u"out.mp4"_s)));
    QVERIFY2(answer.log.contains("Error while opening encoder"), answer.log.constData());
}

QTEST_GUILESS_MAIN(TestH264Encoder)
#include "tst_h264_encoder.moc"
