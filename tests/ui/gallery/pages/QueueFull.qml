// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
import QtQuick
import Veltro.Downloads
import Veltro.Samples

/// Downloads in every state, with every kind of title.
Queue {
    downloads: samples.downloads

    SampleDownloads {
        id: samples
        size: 9
    }
}
