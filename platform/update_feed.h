// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once
#include <QByteArray>
#include <QDateTime>
#include <QString>
#include <QUrl>
#include <QVersionNumber>

#include <stdexcept>

namespace veltro {

// The list of updates that a feed serves: one JSON document, at most 1 MiB,
//
//   { "format": 1, "payload": BASE64, "signature": BASE64 }
//
// The payload is a JSON document of its own; the signature (Ed25519, 64 bytes) is over its bytes,
// led by the line "veltro-updates-1\n", so that it is good for nothing else. It says
//
//   { "date": "2026-11-23T12:00:00Z",
//     "version": "0.2.0",
//     "notes": "what is new, as plain text",
//     "archives": { "x86_64": { "url": "https://…/veltro.tar.xz", "size": 1234, "sha256": HEX } } }
//
// An archive is a tar file (compressed as tar knows by itself) of one folder, the whole bundle.
// The date is that of the list, so that an old list that is served again can be told.

/// The newest version that the feed offers.
struct Update {
    QDateTime date;
    QVersionNumber version;
    QString notes; ///< plain text
    QUrl archive;  ///< empty where none is offered for this kind of machine
    qint64 archiveBytes = 0;
    QByteArray archiveSha256;

    bool operator==(const Update &) const = default;
};

/// What of this feed was seen before.
struct SeenUpdates {
    QDateTime date;         ///< of the newest list
    QVersionNumber version; ///< the highest
};

/// Why a list or an archive is not taken. The text is fit to show.
class UpdateError : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

constexpr qint64 longestUpdateFeed = 1 << 20;
constexpr qint64 largestUpdateArchive = qint64(1) << 30;

/// Reads a list that was signed with the key, and is none of an earlier day or with a lower
/// version than seen before. Any thread. @throws UpdateError
[[nodiscard]] Update readUpdateFeed(const QByteArray &document, const QByteArray &key,
                                    const SeenUpdates &seen);

/// Whether an address may be asked for updates: https, or this machine itself.
[[nodiscard]] bool isUpdateAddress(const QUrl &address);

}
