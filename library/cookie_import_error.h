// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once
#include <QCoreApplication>
#include <QString>

#include <exception>
#include <string>

namespace veltro {

/// Why cookies could not be imported. Thrown by value; the description is fit to show.
class CookieImportError : public std::exception {
    Q_DECLARE_TR_FUNCTIONS(CookieImportError)
public:
    enum class Kind {
        notASite,   ///< what was typed has no host
        missing,    ///< the browser's cookies, or the file, are not there
        unreadable, ///< they are, and cannot be read
        locked,     ///< the desktop's keyring keeps their key
        tooLarge,
        notCookies,
        none,    ///< for this host
        unsaved, ///< they were read and could not be written
    };

    /// @param host whose cookies were wanted
    /// @param source the browser's or the file's name, or why they could not be written
    CookieImportError(Kind kind, const QString &host, const QString &source)
        : m_kind(kind)
        , m_description(describe(kind, host, source))
        , m_what(m_description.toStdString())
    {}

    [[nodiscard]] Kind kind() const { return m_kind; }
    [[nodiscard]] const QString &description() const { return m_description; }
    [[nodiscard]] const char *what() const noexcept override { return m_what.c_str(); }

private:
    static QString describe(Kind kind, const QString &host, const QString &source);

    Kind m_kind;
    QString m_description;
    std::string m_what;
};

}
