// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once
#include <QString>

namespace veltro {

// Letters as people type them who leave the accents out. Any thread.

/// Accents and the like, which stand apart from their letters in the decomposed form. Vowel signs
/// of other scripts, and the marks that tell kana apart, are not among them.
[[nodiscard]] bool isAccent(char32_t c);

/// What is typed for a small letter that no accent tells apart from others; itself for most.
[[nodiscard]] QString typedAs(char32_t c);

}
