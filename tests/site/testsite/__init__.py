# SPDX-FileCopyrightText: Veltro contributors
# SPDX-License-Identifier: GPL-3.0-or-later
"""The test site: pages that yield every kind of media and every kind of trouble."""
