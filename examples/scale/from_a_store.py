#!/usr/bin/env python3
"""Names objects of a store that serves ranges over HTTP: from_a_store.py URL...

Fetches the first 50,000 bytes of each. Only where a filter may look further, as into the streams of
a compound document, is the rest fetched too; the line then says so.
"""

import sys
import urllib.parse
import urllib.request

import typescout


def fetch(url, first, last=""):
    """The bytes from `first` to `last`, both included, and the size of the whole object."""
    request = urllib.request.Request(url, headers={"Range": f"bytes={first}-{last}"})
    try:
        with urllib.request.urlopen(request, timeout=60) as response:
            content = response.read()
            whole = response.headers.get("Content-Range", f"/{len(content)}").rpartition("/")[2]
            return content, int(whole)
    except urllib.error.HTTPError as error:
        if error.code == 416:  # an empty object has no first byte
            return b"", 0
        raise


def name_object(url):
    """The answer for one object, and how many of its bytes were fetched."""
    content, size = fetch(url, 0, typescout.HEAD_SIZE - 1)
    if len(content) < size and typescout.reads_beyond_head(content):
        content += fetch(url, len(content))[0]
    name = urllib.parse.unquote(urllib.parse.urlsplit(url).path)
    return typescout.identify_bytes(content, name=name), len(content), size


for address in sys.argv[1:]:
    answer, fetched, total = name_object(address)
    print(f"{address}: {answer or 'unknown'}", f"({fetched} of {total} bytes)", sep=" ")
