// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/picker/remote_thumbnail.h"
#include "ui/picker/thumbnail_fetcher.h"

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

using namespace veltro;

namespace {

const ThumbnailShape small{{96, 64}, 0};

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
QImage fetch(const QUrl &address, ThumbnailLimits limits = {})
{
    ThumbnailFetcher fetcher(address, small, limits);
    QSignalSpy finished(&fetcher, &ThumbnailFetcher::finished);
    fetcher.start();
    if (finished.isEmpty() && !finished.wait(30'000)) {
        qWarning("a fetch was never announced");
    }
    return finished.isEmpty() ? QImage() : finished[0][0].value<QImage>();
}

}

class TestRemoteThumbnail : public QObject {
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
    void theItemShowsWhatItFetched();
    void aNewSourceOrTheEndDropsWhatIsUnderWay();
};

void TestRemoteThumbnail::aPictureFillsItsFrameAndIsCutAlikeOnBothSides()
{
    for (const QSize size : {QSize(960, 64), QSize(96, 640), QSize(9, 6), QSize(4000, 3000)}) {
        const QImage picture = thumbnailPicture(encoded(halves(size), "PNG"), small);
        QCOMPARE(picture.size(), small.pixels);
        QVERIFY2(looksLike(picture.pixelColor(20, 32), Qt::red),
                 qPrintable(QDebug::toString(size)));
        QVERIFY2(looksLike(picture.pixelColor(76, 32), Qt::blue),
                 qPrintable(QDebug::toString(size)));
        QCOMPARE(picture.pixelColor(0, 0).alpha(), 255);
        QCOMPARE(picture.pixelColor(95, 63).alpha(), 255);
    }
}

void TestRemoteThumbnail::cornersAreRound()
{
    const QImage picture = thumbnailPicture(encoded(halves({300, 200}), "PNG"), {{96, 64}, 10});
    QCOMPARE(picture.pixelColor(0, 0).alpha(), 0);
    QCOMPARE(picture.pixelColor(95, 63).alpha(), 0);
    QCOMPARE(picture.pixelColor(48, 0).alpha(), 255);
    QCOMPARE(picture.pixelColor(0, 32).alpha(), 255);
}

void TestRemoteThumbnail::picturesOfPagesAreRead_data()
{
    QTest::addColumn<QByteArray>("kind");
    for (const char *kind : {"JPEG", "PNG", "WEBP", "BMP"}) {
        QTest::newRow(kind) << QByteArray(kind);
    }
}

void TestRemoteThumbnail::picturesOfPagesAreRead()
{
    QFETCH(QByteArray, kind);
    if (!QImageWriter::supportedImageFormats().contains(kind.toLower())) {
        QSKIP("this machine cannot write one");
    }
    const QImage picture = thumbnailPicture(encoded(halves({320, 180}), kind.constData()), small);
    QVERIFY(looksLike(picture.pixelColor(20, 32), Qt::red));
    QVERIFY(looksLike(picture.pixelColor(76, 32), Qt::blue));
}

void TestRemoteThumbnail::whatIsNoPictureGivesNothing_data()
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

void TestRemoteThumbnail::whatIsNoPictureGivesNothing()
{
    QFETCH(QByteArray, data);
    QVERIFY(thumbnailPicture(data, small).isNull());
}

void TestRemoteThumbnail::aPictureComesFromTheWebWithoutCookies()
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

void TestRemoteThumbnail::redirectionsStayOnTheWeb()
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

void TestRemoteThumbnail::redirectionsEnd()
{
    Site *self = nullptr;
    Site site([&](QTcpSocket &socket) { redirect(socket, self->address().toEncoded()); });
    self = &site;
    QVERIFY(fetch(site.address()).isNull());
    QCOMPARE(site.requests, 1 + ThumbnailLimits().redirects);
}

void TestRemoteThumbnail::aTransferIsBoundInBytesAndTime()
{
    const QByteArray png = encoded(halves({96, 64}), "PNG");
    const QByteArray padded = png + QByteArray(200'000, '\0');
    Site site([&](QTcpSocket &socket) { answer(socket, padded); });
    ThumbnailLimits limits;
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

void TestRemoteThumbnail::nothingButTheWebIsAsked()
{
    for (const char *address :
         {"", "file:///etc/hostname", "qrc:/a.png", "ftp://127.0.0.1/a",
          "data:image/png;base64,AAAA", "picture.png", "http:", "http:///a"}) {
        QVERIFY2(!isWebAddress(QUrl(QString::fromLatin1(address))), address);
        QVERIFY2(fetch(QUrl(QString::fromLatin1(address))).isNull(), address);
    }
}

void TestRemoteThumbnail::theItemShowsWhatItFetched()
{
    const QByteArray png = encoded(halves({300, 200}), "PNG");
    Site site([&](QTcpSocket &socket) { answer(socket, png); });
    QQuickWindow window;
    window.resize(96, 64);
    window.setColor(Qt::white);
    auto *item = new RemoteThumbnail(window.contentItem());
    item->setSize({96, 64});
    item->setRadius(12);
    QSignalSpy changed(item, &RemoteThumbnail::statusChanged);
    item->setSource(site.address());
    window.show();
    QVERIFY(QTest::qWaitForWindowExposed(&window));
    QTRY_COMPARE(item->status(), RemoteThumbnail::Ready);
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
    QCOMPARE(item->status(), RemoteThumbnail::Failed);
    QTRY_VERIFY(looksLike(window.grabWindow().pixelColor(20, 32), Qt::white));
    item->setSource({});
    QCOMPARE(item->status(), RemoteThumbnail::Nothing);
}

void TestRemoteThumbnail::aNewSourceOrTheEndDropsWhatIsUnderWay()
{
    Site silent([](QTcpSocket &) {});
    const QByteArray png = encoded(halves({300, 200}), "PNG");
    Site site([&](QTcpSocket &socket) { answer(socket, png); });
    QQuickWindow window;
    auto *item = new RemoteThumbnail(window.contentItem());
    item->setSize({96, 64});
    item->setSource(silent.address());
    QTRY_COMPARE(silent.requests, 1);
    QCOMPARE(item->status(), RemoteThumbnail::Loading);
    item->setSource(site.address());
    QTRY_COMPARE(silent.partings, 1);
    QTRY_COMPARE(item->status(), RemoteThumbnail::Ready);
    item->setSource(silent.address());
    QTRY_COMPARE(silent.requests, 2);
    delete item;
    QTRY_COMPARE(silent.partings, 2);
}

QTEST_MAIN(TestRemoteThumbnail)
#include "tst_remote_thumbnail.moc"
