// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once
#include <QProcessEnvironment>

namespace veltro {

/// What a program that we start for the user should see: the environment that this process was
/// started with. What was set since, for the interpreter above all, is not in it, nor the token
/// that named our own start to the window system. Any thread.
[[nodiscard]] QProcessEnvironment childEnvironment();

}
