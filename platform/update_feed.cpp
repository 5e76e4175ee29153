// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/update_feed.h"

#include <QHostAddress>
#include <QJsonDocument>
#include <QJsonObject>
#include <QSysInfo>

#include <memory>
#include <openssl/evp.h>
#include <optional>

namespace veltro {
namespace {

constexpr int keyBytes = 32;
constexpr int signatureBytes = 64;
constexpr int sha256Bytes = 32;
constexpr char signedPurpose[] = "veltro-updates-1\n";

const unsigned char *bytesOf(const QByteArray &array)
{
    return reinterpret_cast<const unsigned char *>(array.constData());
}

bool isSignedWith(const QByteArray &key, const QByteArray &message, const QByteArray &signature)
{
    if (key.size() != keyBytes || signature.size() != signatureBytes) {
        return false;
    }
    const std::unique_ptr<EVP_PKEY, decltype(&EVP_PKEY_free)> publicKey(
        EVP_PKEY_new_raw_public_key(EVP_PKEY_ED25519, nullptr, bytesOf(key), keyBytes),
        EVP_PKEY_free);
    const std::unique_ptr<EVP_MD_CTX, decltype(&EVP_MD_CTX_free)> context(EVP_MD_CTX_new(),
                                                                          EVP_MD_CTX_free);
    return publicKey && context &&
           EVP_DigestVerifyInit(context.get(), nullptr, nullptr, nullptr, publicKey.get()) == 1 &&
           EVP_DigestVerify(context.get(), bytesOf(signature), signatureBytes, bytesOf(message),
                            std::size_t(message.size())) == 1;
}

std::optional<QByteArray> decoded(const QJsonValue &value)
{
    const auto result = QByteArray::fromBase64Encoding(value.toString().toLatin1(),
                                                       QByteArray::AbortOnBase64DecodingErrors);
    return result ? std::optional(*result) : std::nullopt;
}

QByteArray signedPayload(const QByteArray &document, const QByteArray &key)
{
    if (document.size() > longestUpdateFeed) {
        throw UpdateError("The list of updates is too long.");
    }
    const QJsonObject envelope = QJsonDocument::fromJson(document).object();
    const auto payload = decoded(envelope.value(QLatin1String("payload")));
    const auto signature = decoded(envelope.value(QLatin1String("signature")));
    if (envelope.value(QLatin1String("format")).toInt() != 1 || !payload || !signature) {
        throw UpdateError("The list of updates cannot be read.");
    }
    if (!isSignedWith(key, signedPurpose + *payload, *signature)) {
        throw UpdateError("The list of updates is not signed by the makers of this program.");
    }
    return *payload;
}

QVersionNumber versionOf(const QString &text)
{
    qsizetype end = 0;
    const QVersionNumber version = QVersionNumber::fromString(text, &end);
    return end == text.size() ? version : QVersionNumber();
}

void readArchive(const QJsonObject &archive, Update &update)
{
    const QUrl address(archive.value(QLatin1String("url")).toString(), QUrl::StrictMode);
    const qint64 bytes = archive.value(QLatin1String("size")).toInteger();
    const QByteArray digest =
        QByteArray::fromHex(archive.value(QLatin1String("sha256")).toString().toLatin1());
    if (!isUpdateAddress(address) || bytes <= 0 || bytes > largestUpdateArchive ||
        digest.size() != sha256Bytes) {
        throw UpdateError("The list of updates offers nothing that can be fetched.");
    }
    update.archive = address;
    update.archiveBytes = bytes;
    update.archiveSha256 = digest;
}

}

Update readUpdateFeed(const QByteArray &document, const QByteArray &key, const SeenUpdates &seen)
{
    const QJsonObject list = QJsonDocument::fromJson(signedPayload(document, key)).object();
    Update update;
    update.date =
        QDateTime::fromString(list.value(QLatin1String("date")).toString(), Qt::ISODate).toUTC();
    update.version = versionOf(list.value(QLatin1String("version")).toString());
    update.notes = list.value(QLatin1String("notes")).toString();
    if (!update.date.isValid() || update.version.isNull()) {
        throw UpdateError("The list of updates cannot be read.");
    }
    if ((seen.date.isValid() && update.date < seen.date) || update.version < seen.version) {
        throw UpdateError("The list of updates is older than one that was seen before.");
    }
    const QJsonValue archive =
        list.value(QLatin1String("archives")).toObject().value(QSysInfo::currentCpuArchitecture());
    if (archive.isObject()) {
        readArchive(archive.toObject(), update);
    }
    return update;
}

bool isUpdateAddress(const QUrl &address)
{
    const QString host = address.host();
    return address.isValid() && !host.isEmpty() &&
           (address.scheme() == QLatin1String("https") ||
            (address.scheme() == QLatin1String("http") && QHostAddress(host).isLoopback()));
}

}
