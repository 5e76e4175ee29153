// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "tests/site/test_site.h"

#include <QJsonDocument>
#include <QJsonObject>
#include <QTcpSocket>

#include <algorithm>

namespace veltro {
namespace {

// Making the media is in it, also when another test's site makes them and this one waits.
constexpr int kReadyMilliseconds = 110'000;
constexpr int kAnswerMilliseconds = 20'000;

// The tests change their own environment as the engine does, and must not pass that on.
QProcessEnvironment plainEnvironment()
{
    QProcessEnvironment environment;
    environment.insert(QStringLiteral("PATH"), QStringLiteral("/usr/local/bin:/usr/bin:/bin"));
    environment.insert(QStringLiteral("LC_ALL"), QStringLiteral("C.UTF-8"));
    return environment;
}

TestSite::Request requestFrom(const QByteArray &line)
{
    const QJsonObject entry = QJsonDocument::fromJson(line).object();
    return {entry.value(QLatin1String("path")).toString(),
            entry.value(QLatin1String("range")).toString()};
}

}

TestSite::TestSite()
{
    m_process.setProcessEnvironment(plainEnvironment());
    m_process.setProcessChannelMode(QProcess::ForwardedErrorChannel);
    m_process.setProgram(QStringLiteral("/usr/bin/python3"));
    m_process.setArguments({QStringLiteral("-E"), QStringLiteral("-s"),
                            QStringLiteral(VELTRO_TEST_SITE_DIR "/site.py"),
                            QStringLiteral("--media"), QStringLiteral(VELTRO_TEST_MEDIA)});
    m_process.start();
    while (!m_process.canReadLine() && m_process.waitForReadyRead(kReadyMilliseconds)) {}
    const QString ready = QString::fromUtf8(m_process.readLine()).trimmed();
    const QStringList words = ready.split(QLatin1Char(' '));
    if (words.size() != 4 || words.first() != QLatin1String("ready"))
        qFatal("The test site did not come up: %s", qPrintable(m_process.errorString()));
    m_plain = words[1];
    m_dead = words[3];
}

TestSite::~TestSite()
{
    m_process.closeWriteChannel();
    if (!m_process.waitForFinished(kAnswerMilliseconds)) {
        m_process.kill();
        m_process.waitForFinished();
    }
}

QUrl TestSite::url(const QString &path) const
{
    return QUrl(m_plain + path);
}

QUrl TestSite::deadUrl(const QString &path) const
{
    return QUrl(m_dead + path);
}

QList<TestSite::Request> TestSite::log() const
{
    QList<Request> requests;
    for (const QByteArray &line : ask(QStringLiteral("/_log")).split('\n')) {
        if (!line.isEmpty())
            requests.append(requestFrom(line));
    }
    return requests;
}

qsizetype TestSite::requestCount(const QString &path) const
{
    const QList<Request> requests = log();
    return std::count_if(requests.begin(), requests.end(),
                         [&](const Request &request) { return request.path == path; });
}

void TestSite::reset() const
{
    ask(QStringLiteral("/_reset"));
}

void TestSite::release() const
{
    ask(QStringLiteral("/_control?release"));
}

void TestSite::addRule(const QString &rule) const
{
    ask(QStringLiteral("/_control?") + rule);
}

QString TestSite::cookieFile(const QString &name)
{
    return QStringLiteral(VELTRO_TEST_SITE_DIR "/cookies/") + name + QStringLiteral(".txt");
}

// The body of an answer. Plain sockets need no event loop, so that a test may ask while the
// program under test owns it, or from a thread of its own.
QByteArray TestSite::ask(const QString &address) const
{
    const QUrl target = url(address);
    QTcpSocket socket;
    socket.connectToHost(target.host(), static_cast<quint16>(target.port()));
    if (!socket.waitForConnected(kAnswerMilliseconds))
        qFatal("The test site has gone: %s", qPrintable(socket.errorString()));
    socket.write("GET " + target.toEncoded(QUrl::RemoveScheme | QUrl::RemoveAuthority) +
                 " HTTP/1.0\r\n\r\n");
    while (socket.waitForReadyRead(kAnswerMilliseconds)) {}
    const QByteArray answer = socket.readAll();
    if (!answer.startsWith("HTTP/1.1 200"))
        qFatal("The test site refused %s: %s", qPrintable(address), answer.constData());
    return answer.sliced(answer.indexOf("\r\n\r\n") + 4);
}

}
