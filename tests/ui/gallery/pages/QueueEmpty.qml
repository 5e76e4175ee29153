// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
import QtQuick
import Veltro.Downloads
import Veltro.Samples

/// Nothing in the queue.
Queue {
    downloads: samples.downloads

    SampleDownloads {
        id: samples
    }
}
