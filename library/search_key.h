// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once
#include <QByteArray>
#include <QLocale>
#include <QString>

#include <string_view>

namespace veltro {

/// How texts become keys such that an item is found by looking for the key of what was typed in
/// the key of the item, byte by byte.
/// Case counts for nothing, as the language has it: an I of a Turkish user is the capital of a
/// dotless one. A letter that is typed without its accent is found with every accent and without
/// one; a letter that is typed with its accent, which is a letter of its own to many, is found
/// with that accent alone. Composed and decomposed letters are the same, wide and narrow ones too.
/// A plain value; any thread.
class SearchFolding {
public:
    /// Of the user's language.
    static SearchFolding ofUser() { return SearchFolding(QLocale()); }
    explicit SearchFolding(const QLocale &locale);

    /// Keys made under the same name are the same.
    [[nodiscard]] QString name() const;

    /// The key of a text that is looked for.
    [[nodiscard]] QByteArray needle(const QString &text) const;
    /// The key of an item. Nothing is found across the border of the two.
    [[nodiscard]] QByteArray key(const QString &title, const QString &uploader) const;

private:
    /// Of whose letters the case is their own; in all other languages a letter folds alike.
    enum class Alphabet { turkish, lithuanian, other };

    [[nodiscard]] QString folded(const QString &text) const;
    [[nodiscard]] QString plain(const QString &folded) const;

    QLocale m_locale;
    Alphabet m_alphabet = Alphabet::other;
};

/// Whether an item with this key is found.
[[nodiscard]] bool keyContains(std::string_view key, std::string_view needle);

}
