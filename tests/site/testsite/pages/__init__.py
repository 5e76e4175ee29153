# SPDX-FileCopyrightText: Veltro contributors
# SPDX-License-Identifier: GPL-3.0-or-later
"""The pages, by subject. Each module has a table ROUTES from route to function."""
