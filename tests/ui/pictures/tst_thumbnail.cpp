// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "tests/platform/ffmpeg/stock_tool.h"
#include "ui/pictures/thumbnail.h"
#include "ui/pictures/web_picture.h"

#include <QBuffer>
#include <QFile>
#include <QPainter>
#include <QQuickWindow>
#include <QSignalSpy>
#include <QTcpServer>
#include <QTcpSocket>
#include <QTemporaryDir>
#include <QTest>
#include <QtEndian>

#include <functional>
#include <sys/stat.h>

using namespace Qt::StringLiterals;
using namespace veltro;
using Status = Thumbnail::Status;

namespace {

const PictureFrame small{{96, 64}, 0};

QImage framed(QByteArray data, const PictureFrame &frame = small)
{
    QBuffer encoded(&data);
    encoded.open(QIODevice::ReadOnly);
    return framedPicture(encoded, frame);
}

QByteArray encoded(const QImage &image, const char *kind)
{
    QByteArray data;
    QBuffer buffer(&data);
    buffer.open(QIODevice::WriteOnly);
    image.save(&buffer, kind);
    return data;
}

/// Red on the left half, blue on the right one.
QImage halves(QSize size)
{
    QImage image(size, QImage::Format_RGB32);
    image.fill(Qt::blue);
    QPainter painter(&image);
    painter.fillRect(QRect(0, 0, size.width() / 2, size.height()), Qt::red);
    return image;
}

bool looksLike(QColor color, QColor expected)
{
    return qAbs(color.red() - expected.red()) < 30 && qAbs(color.green() - expected.green()) < 30 &&
           qAbs(color.blue() - expected.blue()) < 30;
}

/// The checksum of a PNG's chunk.
quint32 checksum(const QByteArray &chunk)
{
    quint32 sum = 0xFFFFFFFF;
    for (const char byte : chunk) {
        sum ^= static_cast<uchar>(byte);
        for (int bit = 0; bit < 8; ++bit) {
            sum = (sum >> 1) ^ ((sum & 1) != 0 ? 0xEDB88320 : 0);
        }
    }
    return ~sum;
}

/// A PNG whose header promises this size, and that has no pixels to show for it.
QByteArray pngHeader(quint32 width, quint32 height)
{
    QByteArray png = encoded(halves({4, 4}), "PNG");
    qToBigEndian(width, png.data() + 16);
    qToBigEndian(height, png.data() + 20);
    qToBigEndian(checksum(png.mid(12, 17)), png.data() + 29);
    return png;
}

/// A site of one answer; `reply` gets the socket of each request and writes to it.
class Site : public QTcpServer {
public:
    explicit Site(std::function<void(QTcpSocket &)> reply)
    {
        listen(QHostAddress::LocalHost);
        connect(this, &QTcpServer::newConnection, this, [this, reply] {
            QTcpSocket *socket = nextPendingConnection();
            connect(socket, &QTcpSocket::readyRead, this, [this, socket, reply] {
                // A request may come in pieces.
                if (socket->peek(64 * 1024).endsWith("\r\n\r\n")) {
                    ++requests;
                    lastRequest = socket->readAll();
                    reply(*socket);
                }
            });
            connect(socket, &QTcpSocket::disconnected, this, [this] { ++partings; });
        });
    }
    [[nodiscard]] QUrl address() const
    {
        return QUrl(u"http://127.0.0.1:%1/picture"_s.arg(serverPort()));
    }

    int requests = 0;
    int partings = 0;
    QByteArray lastRequest;
};

void answer(QTcpSocket &socket, const QByteArray &body)
{
    socket.write("HTTP/1.1 200 OK\r\nConnection: close\r\nContent-Length: " +
                 QByteArray::number(body.size()) + "\r\nSet-Cookie: a=b\r\n\r\n" + body);
}

void redirect(QTcpSocket &socket, const QByteArray &target)
{
    socket.write("HTTP/1.1 302 Found\r\nConnection: close\r\nContent-Length: 0\r\nLocation: " +
                 target + "\r\n\r\n");
}

/// A thumbnail that fills a window, with round corners.
struct ShownThumbnail {
    explicit ShownThumbnail(Thumbnail::Origin origin)
    {
        window.resize(96, 64);
        window.setColor(Qt::white);
        item->setOrigin(origin);
        item->setSize({96, 64});
        item->setRadius(12);
        window.show();
        if (!QTest::qWaitForWindowExposed(&window)) {
            qFatal("the window is not shown");
        }
    }

    QQuickWindow window;
    Thumbnail *item = new Thumbnail(window.contentItem());
};

/// What a fetch announces; null also when it announced nothing in time.
QImage fetch(const QUrl &address, WebPictureLimits limits = {})
{
    WebPicture fetcher(address, small, limits);
    QSignalSpy finished(&fetcher, &WebPicture::finished);
    fetcher.start();
    if (finished.isEmpty() && !finished.wait(30'000)) {
        qWarning("a fetch was never announced");
    }
    return finished.isEmpty() ? QImage() : finished[0][0].value<QImage>();
}

}

class TestThumbnail : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void aPictureFillsItsFrameAndIsCutAlikeOnBothSides();
    void picturesOfPagesAreRead();
    void whatIsNoPictureGivesNothing();
    void aPictureComesFromTheWebWithoutCookies();
    void redirectionsStayOnTheWeb();
    void redirectionsEnd();
    void aTransferIsBoundInBytesAndTime();
    void nothingButTheWebIsAsked();
    void ofAPictureThatMovesTheFirstIsShown();
    void theItemShowsWhatItFetched();
    void anItemForFilesShowsThemAndAsksNobody();
    void aNewSourceOrTheEndDropsWhatIsUnderWay();
};

void TestThumbnail::aPictureFillsItsFrameAndIsCutAlikeOnBothSides()
{
    for (const QSize size : {QSize(960, 64), QSize(96, 640), QSize(9, 6), QSize(4000, 3000)}) {
        const QImage picture = framed(encoded(halves(size), "PNG"));
        QCOMPARE(picture.size(), small.pixels);
        const QString what = QDebug::toString(size);
        QVERIFY2(looksLike(picture.pixelColor(20, 32), Qt::red), qPrintable(what));
        QVERIFY2(looksLike(picture.pixelColor(76, 32), Qt::blue), qPrintable(what));
        QCOMPARE(picture.pixelColor(0, 0).alpha(), 255);
        QCOMPARE(picture.pixelColor(95, 63).alpha(), 255);
    }
}

void TestThumbnail::picturesOfPagesAreRead()
{
    for (const char *kind : {"JPEG", "PNG", "WEBP", "BMP"}) {
        const QImage picture = framed(encoded(halves({320, 180}), kind));
        QVERIFY2(looksLike(picture.pixelColor(20, 32), Qt::red), kind);
        QVERIFY2(looksLike(picture.pixelColor(76, 32), Qt::blue), kind);
    }
}

void TestThumbnail::whatIsNoPictureGivesNothing()
{
    const QByteArray svg = "<svg xmlns='http://www.w3.org/2000/svg' width='9' height='9'>"
                           "<rect width='9' height='9'/></svg>";
    const std::vector<std::pair<const char *, QByteArray>> none{
        {"nothing", {}},
        {"a page", "<!doctype html><title>no</title>"},
        {"a vector picture", svg},
        {"a header alone", encoded(halves({32, 32}), "PNG").left(33)},
        {"too wide", pngHeader(20'000, 10)},
        {"too high", pngHeader(10, 20'000)},
        {"too many pixels", pngHeader(15'000, 15'000)},
        {"no pixels", pngHeader(0, 0)},
    };
    const QTemporaryDir folder;
    const QString path = folder.filePath(u"picture.png"_s);
    for (const auto &[why, data] : none) {
        QVERIFY2(framed(data).isNull(), why);
        QVERIFY(ffmpeg::writeFile(path, data));
        QVERIFY2(framedFile(path, small).isNull(), why);
    }
}

void TestThumbnail::aPictureComesFromTheWebWithoutCookies()
{
    const QByteArray png = encoded(halves({96, 64}), "PNG");
    Site site([&](QTcpSocket &socket) { answer(socket, png); });
    QCOMPARE(fetch(site.address()).size(), small.pixels);
    QCOMPARE(fetch(site.address()).size(), small.pixels);
    QCOMPARE(site.requests, 2);
    QVERIFY(!site.lastRequest.toLower().contains("cookie"));
    Site missing([](QTcpSocket &socket) {
        socket.write("HTTP/1.1 404 Not Found\r\nConnection: close\r\nContent-Length: 0\r\n\r\n");
    });
    QVERIFY(fetch(missing.address()).isNull());
}

void TestThumbnail::redirectionsStayOnTheWeb()
{
    const QByteArray png = encoded(halves({96, 64}), "PNG");
    Site target([&](QTcpSocket &socket) { answer(socket, png); });
    Site web([&](QTcpSocket &socket) { redirect(socket, target.address().toEncoded()); });
    QVERIFY(!fetch(web.address()).isNull());

    QTemporaryDir folder;
    QFile file(folder.filePath(u"secret.png"_s));
    QVERIFY(file.open(QIODevice::WriteOnly) && file.write(png) == png.size());
    file.close();
    const QByteArray local = QUrl::fromLocalFile(file.fileName()).toEncoded();
    for (const QByteArray &elsewhere :
         {local, QByteArray("data:image/png;base64,") + png.toBase64(),
          QByteArray("qrc:/picture.png"), QByteArray("ftp://127.0.0.1/picture.png")}) {
        Site site([&](QTcpSocket &socket) { redirect(socket, elsewhere); });
        QVERIFY2(fetch(site.address()).isNull(), elsewhere.left(40).constData());
        QCOMPARE(site.requests, 1);
    }
}

void TestThumbnail::redirectionsEnd()
{
    Site *self = nullptr;
    Site site([&](QTcpSocket &socket) { redirect(socket, self->address().toEncoded()); });
    self = &site;
    QVERIFY(fetch(site.address()).isNull());
    QCOMPARE(site.requests, 1 + WebPictureLimits().redirects);
}

void TestThumbnail::aTransferIsBoundInBytesAndTime()
{
    const QByteArray png = encoded(halves({96, 64}), "PNG");
    const QByteArray padded = png + QByteArray(200'000, '\0');
    Site site([&](QTcpSocket &socket) { answer(socket, padded); });
    WebPictureLimits limits;
    limits.bytes = padded.size();
    QVERIFY(!fetch(site.address(), limits).isNull());
    limits.bytes = padded.size() - 1;
    QVERIFY(fetch(site.address(), limits).isNull());

    Site endless([](QTcpSocket &socket) {
        socket.write("HTTP/1.1 200 OK\r\nConnection: close\r\n\r\n");
        const auto more = [&socket] { socket.write(QByteArray(64 * 1024, 'x')); };
        connect(&socket, &QTcpSocket::bytesWritten, &socket, more);
        more();
    });
    limits.bytes = 1'000'000;
    QVERIFY(fetch(endless.address(), limits).isNull());
    QTRY_COMPARE(endless.partings, 1);

    Site silent([](QTcpSocket &) {});
    limits.milliseconds = 50;
    QVERIFY(fetch(silent.address(), limits).isNull());
}

void TestThumbnail::nothingButTheWebIsAsked()
{
    for (const char *address :
         {"", "file:///etc/hostname", "qrc:/a.png", "ftp://127.0.0.1/a",
          "data:image/png;base64,AAAA", "picture.png", "http:", "http:///a"}) {
        QVERIFY2(!isWebAddress(QUrl(QString::fromLatin1(address))), address);
        QVERIFY2(fetch(QUrl(QString::fromLatin1(address))).isNull(), address);
    }
}

void TestThumbnail::ofAPictureThatMovesTheFirstIsShown()
{
    QTemporaryDir folder;
    for (const char *file : {"moving.gif", "moving.webp"}) {
        const QString name = QString::fromLatin1(file);
        // Red for half a second, then blue.
        QVERIFY(ffmpeg::makeMedia(
            u"-f lavfi -i color=red:size=320x180:rate=10:duration=0.5 -f lavfi -i "
            "color=blue:size=320x180:rate=10:duration=0.5 -filter_complex concat "
            "-loop 0 "_s +
                name,
            folder.path()));
        const QImage picture = framedFile(folder.filePath(name), small);
        QVERIFY2(looksLike(picture.pixelColor(48, 32), Qt::red), file);
    }
    // A pipe that nobody writes is no picture, and nobody waits for it.
    const QString pipe = folder.filePath(u"pipe.png"_s);
    QCOMPARE(::mkfifo(QFile::encodeName(pipe).constData(), 0600), 0);
    QVERIFY(framedFile(pipe, small).isNull());
}

void TestThumbnail::anItemForFilesShowsThemAndAsksNobody()
{
    Site site([](QTcpSocket &socket) { answer(socket, encoded(halves({96, 64}), "PNG")); });
    QTemporaryDir folder;
    const QString path = folder.filePath(u"picture.png"_s);
    QVERIFY(halves({300, 200}).save(path));
    ShownThumbnail shown(Thumbnail::Origin::File);
    shown.item->setSource(QUrl::fromLocalFile(path));
    QTRY_COMPARE(shown.item->status(), Status::Ready);
    QTRY_VERIFY(looksLike(shown.window.grabWindow().pixelColor(20, 32), Qt::red));
    shown.item->setSource(site.address());
    QTRY_COMPARE(shown.item->status(), Status::Failed);
    shown.item->setSource(QUrl::fromLocalFile(folder.filePath(u"gone.png"_s)));
    QTRY_COMPARE(shown.item->status(), Status::Failed);
    QCOMPARE(site.requests, 0);
}

void TestThumbnail::theItemShowsWhatItFetched()
{
    const QByteArray png = encoded(halves({300, 200}), "PNG");
    Site site([&](QTcpSocket &socket) { answer(socket, png); });
    ShownThumbnail shown(Thumbnail::Origin::Web);
    const QSignalSpy changed(shown.item, &Thumbnail::statusChanged);
    shown.item->setSource(site.address());
    QTRY_COMPARE(shown.item->status(), Status::Ready);
    QCOMPARE(changed.size(), 2);
    QTRY_VERIFY(looksLike(shown.window.grabWindow().pixelColor(20, 32), Qt::red));
    const QImage drawn = shown.window.grabWindow();
    QVERIFY(looksLike(drawn.pixelColor(76, 32), Qt::blue));
    QVERIFY(looksLike(drawn.pixelColor(0, 0), Qt::white)); // round
    QVERIFY(looksLike(drawn.pixelColor(95, 63), Qt::white));
    QCOMPARE(site.requests, 1);

    shown.item->setSource(QUrl(u"file:///etc/hostname"_s));
    QTRY_COMPARE(shown.item->status(), Status::Failed);
    QTRY_VERIFY(looksLike(shown.window.grabWindow().pixelColor(20, 32), Qt::white));
    shown.item->setSource({});
    QTRY_COMPARE(shown.item->status(), Status::Nothing);
}

void TestThumbnail::aNewSourceOrTheEndDropsWhatIsUnderWay()
{
    Site silent([](QTcpSocket &) {});
    const QByteArray png = encoded(halves({300, 200}), "PNG");
    Site site([&](QTcpSocket &socket) { answer(socket, png); });
    const ShownThumbnail shown(Thumbnail::Origin::Web);
    shown.item->setSource(silent.address());
    QTRY_COMPARE(silent.requests, 1);
    QCOMPARE(shown.item->status(), Status::Loading);
    shown.item->setSource(site.address());
    QTRY_COMPARE(silent.partings, 1);
    QTRY_COMPARE(shown.item->status(), Status::Ready);
    shown.item->setSource(silent.address());
    QTRY_COMPARE(silent.requests, 2);
    delete shown.item;
    QTRY_COMPARE(silent.partings, 2);
}

QTEST_MAIN(TestThumbnail)
#include "tst_thumbnail.moc"
