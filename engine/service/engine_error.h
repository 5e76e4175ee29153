// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once
#include <QString>

#include <exception>
#include <string>

namespace veltro {

/// Why the engine could not do what it was asked. Thrown by value; the description is fit to show.
class EngineError : public std::exception {
public:
    enum class Kind { bootstrapFailed, probeFailed, downloadFailed, noFormats, drmProtected };

    static EngineError bootstrapFailed(QString message);
    static EngineError probeFailed(QString message);
    static EngineError downloadFailed(QString message);
    static EngineError noFormats();
    static EngineError drmProtected();

    [[nodiscard]] Kind kind() const { return m_kind; }
    /// The kind's name, as in "probeFailed".
    [[nodiscard]] QString kindName() const;
    /// What went wrong, without the kind's own words; empty for the kinds that have none.
    [[nodiscard]] const QString &message() const { return m_message; }
    [[nodiscard]] QString description() const;
    /// The description in UTF-8.
    [[nodiscard]] const char *what() const noexcept override { return m_what.c_str(); }

    bool operator==(const EngineError &other) const
    {
        return m_kind == other.m_kind && m_message == other.m_message;
    }

private:
    EngineError(Kind kind, QString message);

    Kind m_kind;
    QString m_message;
    std::string m_what;
};

}
