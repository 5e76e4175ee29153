// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once
#include <QString>

namespace veltro {

/// A size in bytes as a file browser writes it: decimal units, no fraction for bytes and KB, one
/// digit for MB, two for GB and above, trailing zeros dropped. "Zero KB" for 0, "1 byte" for 1.
/// The decimal sign is a point. Any thread.
[[nodiscard]] QString fileByteCount(qint64 bytes);

}
