# SPDX-FileCopyrightText: Veltro contributors
# SPDX-License-Identifier: GPL-3.0-or-later
"""The table of all pages. A route that ends in "*" stands for every path that begins so."""

from testsite import media_files
from testsite.pages import bench, codecs, failing, hostile, plain, streams, supplements, titles
from testsite.pages import transfer

ROUTES = {}
for module in (plain, streams, codecs, supplements, transfer, failing, titles, hostile, bench,
               media_files):
    ROUTES.update(module.ROUTES)


def find(path):
    """The function of the page, or None."""
    if path in ROUTES:
        return ROUTES[path]
    for route, page in ROUTES.items():
        if route.endswith("*") and path.startswith(route[:-1]):
            return page
    return None
