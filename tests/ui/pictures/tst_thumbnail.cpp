// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "tests/platform/ffmpeg/stock_tool.h"
#include "ui/pictures/thumbnail.h"
#include "ui/pictures/web_picture.h"

#include <QBuffer>
#include <QFile>
#include <QImageWriter>
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
        return QUrl(QStringLiteral("http://127.0.0.1:%1/picture").arg(serverPort()));
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
    void cornersAreRound();
    void picturesOfPagesAreRead_data();
    void picturesOfPagesAreRead();
    void whatIsNoPictureGivesNothing_data();
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
        QVERIFY2(looksLike(picture.pixelColor(20, 32), Qt::red),
                 qPrintable(QDebug::toString(size)));
        QVERIFY2(looksLike(picture.pixelColor(76, 32), Qt::blue),
                 qPrintable(QDebug::toString(size)));
        QCOMPARE(picture.pixelColor(0, 0).alpha(), 255);
        QCOMPARE(picture.pixelColor(95, 63).alpha(), 255);
    }
}

void TestThumbnail::cornersAreRound()
{
    const QImage picture = framed(encoded(halves({300, 200}), "PNG"), {{96, 64}, 10});
    QCOMPARE(picture.pixelColor(0, 0).alpha(), 0);
    QCOMPARE(picture.pixelColor(95, 63).alpha(), 0);
    QCOMPARE(picture.pixelColor(48, 0).alpha(), 255);
    QCOMPARE(picture.pixelColor(0, 32).alpha(), 255);
}

void TestThumbnail::picturesOfPagesAreRead_data()
{
    QTest::addColumn<QByteArray>("kind");
    for (const char *kind : {"JPEG", "PNG", "WEBP", "BMP"}) {
        QTest::newRow(kind) << QByteArray(kind);
    }
}

void TestThumbnail::picturesOfPagesAreRead()
{
    QFETCH(QByteArray, kind);
    if (!QImageWriter::supportedImageFormats().contains(kind.toLower())) {
        QSKIP("this machine cannot write one");
    }
    const QImage picture = framed(encoded(halves({320, 180}), kind.constData()));
    QVERIFY(looksLike(picture.pixelColor(20, 32), Qt::red));
    QVERIFY(looksLike(picture.pixelColor(76, 32), Qt::blue));
}

void TestThumbnail::whatIsNoPictureGivesNothing_data()
{
    QTest::addColumn<QByteArray>("data");
    const QByteArray png = encoded(halves({32, 32}), "PNG");
    QTest::newRow("nothing") << QByteArray();
    QTest::newRow("a page") << QByteArray("<!doctype html><title>no</title>");
    QTest::newRow("a vector picture")
        << QByteArray("<svg xmlns='http://www.w3.org/2000/svg' width='9' height='9'>"
                      "<rect width='9' height='9'/></svg>");
    QTest::newRow("a header alone") << png.left(33);
    QTest::newRow("too wide") << pngHeader(20'000, 10);
    QTest::newRow("too high") << pngHeader(10, 20'000);
    QTest::newRow("too many pixels") << pngHeader(15'000, 15'000);
    QTest::newRow("no pixels") << pngHeader(0, 0);
}

void TestThumbnail::whatIsNoPictureGivesNothing()
{
    QFETCH(QByteArray, data);
    QVERIFY(framed(data).isNull());
    QTemporaryDir folder;
    const QString path = folder.filePath(QStringLiteral("picture.png"));
    QVERIFY(ffmpeg::writeFile(path, data));
    QVERIFY(framedFile(path, small).isNull());
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
    QFile file(folder.filePath(QStringLiteral("secret.png")));
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
            QStringLiteral("-f lavfi -i color=red:size=320x180:rate=10:duration=0.5 -f lavfi -i "
                           "color=blue:size=320x180:rate=10:duration=0.5 -filter_complex concat "
                           "-loop 0 ") +
                name,
            folder.path()));
        const QImage picture = framedFile(folder.filePath(name), small);
        QVERIFY2(looksLike(picture.pixelColor(48, 32), Qt::red), file);
    }
    // A pipe that nobody writes is no picture, and nobody waits for it.
    const QString pipe = folder.filePath(QStringLiteral("pipe.png"));
    QCOMPARE(::mkfifo(QFile::encodeName(pipe).constData(), 0600), 0);
    QVERIFY(framedFile(pipe, small).isNull());
}

void TestThumbnail::anItemForFilesShowsThemAndAsksNobody()
{
    Site site([](QTcpSocket &socket) { answer(socket, encoded(halves({96, 64}), "PNG")); });
    QTemporaryDir folder;
    const QString path = folder.filePath(QStringLiteral("picture.png"));
    QVERIFY(halves({300, 200}).save(path));
    QQuickWindow window;
    window.resize(96, 64);
    auto *item = new Thumbnail(window.contentItem());
    item->setSize({96, 64});
    window.show();
    QVERIFY(QTest::qWaitForWindowExposed(&window));
    item->setSource(QUrl::fromLocalFile(path));
    QTRY_COMPARE(item->status(), Status::Ready);
    QTRY_VERIFY(looksLike(window.grabWindow().pixelColor(20, 32), Qt::red));
    item->setSource(site.address());
    QTRY_COMPARE(item->status(), Status::Failed);
    item->setSource(QUrl::fromLocalFile(folder.filePath(QStringLiteral("gone.png"))));
    QTRY_COMPARE(item->status(), Status::Failed);
    QCOMPARE(site.requests, 0);
}

void TestThumbnail::theItemShowsWhatItFetched()
{
    const QByteArray png = encoded(halves({300, 200}), "PNG");
    Site site([&](QTcpSocket &socket) { answer(socket, png); });
    QQuickWindow window;
    window.resize(96, 64);
    window.setColor(Qt::white);
    auto *item = new Thumbnail(window.contentItem());
    item->setOrigin(Thumbnail::Origin::Web);
    item->setSize({96, 64});
    item->setRadius(12);
    QSignalSpy changed(item, &Thumbnail::statusChanged);
    item->setSource(site.address());
    window.show();
    QVERIFY(QTest::qWaitForWindowExposed(&window));
    QTRY_COMPARE(item->status(), Status::Ready);
    QCOMPARE(changed.size(), 2);
    QImage shown;
    const auto isDrawn = [&] {
        shown = window.grabWindow();
        return looksLike(shown.pixelColor(20, 32), Qt::red);
    };
    QTRY_VERIFY(isDrawn());
    QVERIFY(looksLike(shown.pixelColor(76, 32), Qt::blue));
    QVERIFY(looksLike(shown.pixelColor(0, 0), Qt::white));
    QCOMPARE(site.requests, 1);

    item->setSource(QUrl(QStringLiteral("file:///etc/hostname")));
    QTRY_COMPARE(item->status(), Status::Failed);
    QTRY_VERIFY(looksLike(window.grabWindow().pixelColor(20, 32), Qt::white));
    item->setSource({});
    QTRY_COMPARE(item->status(), Status::Nothing);
}

void TestThumbnail::aNewSourceOrTheEndDropsWhatIsUnderWay()
{
    Site silent([](QTcpSocket &) {});
    const QByteArray png = encoded(halves({300, 200}), "PNG");
    Site site([&](QTcpSocket &socket) { answer(socket, png); });
    QQuickWindow window;
    auto *item = new Thumbnail(window.contentItem());
    item->setOrigin(Thumbnail::Origin::Web);
    item->setSize({96, 64});
    window.show();
    QVERIFY(QTest::qWaitForWindowExposed(&window));
    item->setSource(silent.address());
    QTRY_COMPARE(silent.requests, 1);
    QCOMPARE(item->status(), Status::Loading);
    item->setSource(site.address());
    QTRY_COMPARE(silent.partings, 1);
    QTRY_COMPARE(item->status(), Status::Ready);
    item->setSource(silent.address());
    QTRY_COMPARE(silent.requests, 2);
    delete item;
    QTRY_COMPARE(silent.partings, 2);
}

QTEST_MAIN(TestThumbnail)
#include "tst_thumbnail.moc"
