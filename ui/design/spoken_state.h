// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

namespace veltro {

/// Has screen readers told which items cannot be used, which Qt Quick keeps to itself. Once, after
/// the application object is made. Main thread.
void tellWhatIsDisabled();

}
