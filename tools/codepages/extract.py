#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
# Copyright (c) 2026 The Shared authors
"""Writes single-byte-pages.tsv: pages that the library serves by tables of its own and has no list of Windows for.

The tables are read once from ICU and, for the national and telex sets that ICU lacks, from the C library's
iconv; both are called through ctypes. Needed again only when a page joins the list.

    tools/codepages/extract.py >tools/codepages/single-byte-pages.tsv
"""

import ctypes
import ctypes.util
import errno
import re
import sys

ICU_PAGES = {
    819: "ISO-8859-1", 870: "ibm-870_P100-1995", 20273: "ibm-273_P100-1995",
    20277: "ibm-277_P100-1995", 20278: "ibm-278_P100-1995", 20280: "ibm-280_P100-1995",
    20284: "ibm-284_P100-1995", 20285: "ibm-285_P100-1995", 20290: "ibm-290_P100-1995",
    20297: "ibm-297_P100-1995", 20424: "ibm-424_P100-1995", 20838: "ibm-838_P100-1995",
    20871: "ibm-871_P100-1995", 21025: "ibm-1025_P100-1995", 28600: "iso-8859_10-1998",
}
ICONV_PAGES = {
    20106: "DIN_66003", 20107: "SEN_850200_B", 20108: "NS_4551-1", 20261: "T.61-8BIT",
    20269: "ISO_6937",
}


class Icu:
    """One ICU converter that refuses what its table lacks."""

    def __init__(self, name):
        path = ctypes.util.find_library("icuuc")
        self.library = ctypes.CDLL(path)
        self.suffix = "_" + re.search(r"\.so\.(\d+)", path).group(1)
        opener = self.call("ucnv_open")
        opener.restype = ctypes.c_void_p
        status = ctypes.c_int(0)
        self.converter = ctypes.c_void_p(opener(name.encode(), ctypes.byref(status)))
        if status.value > 0:
            raise SystemExit(f"no ICU converter {name}")
        stop_to = ctypes.cast(self.call("UCNV_TO_U_CALLBACK_STOP"), ctypes.c_void_p)
        stop_from = ctypes.cast(self.call("UCNV_FROM_U_CALLBACK_STOP"), ctypes.c_void_p)
        self.call("ucnv_setToUCallBack")(self.converter, stop_to, None, None, None,
                                         ctypes.byref(status))
        self.call("ucnv_setFromUCallBack")(self.converter, stop_from, None, None, None,
                                           ctypes.byref(status))
        self.call("ucnv_setFallback")(self.converter, ctypes.c_int8(1))

    def call(self, name):
        return getattr(self.library, name + self.suffix)

    def decode(self, data):
        units = (ctypes.c_uint16 * 8)()
        status = ctypes.c_int(0)
        count = self.call("ucnv_toUChars")(self.converter, units, 8, data, len(data),
                                           ctypes.byref(status))
        return units[0] if status.value <= 0 and count == 1 else None

    def is_lead(self, byte):
        return False

    def encode(self, unit):
        data = ctypes.create_string_buffer(8)
        status = ctypes.c_int(0)
        source = (ctypes.c_uint16 * 1)(unit)
        count = self.call("ucnv_fromUChars")(self.converter, data, 8, source, 1,
                                             ctypes.byref(status))
        return data.raw[:count] if status.value <= 0 and count > 0 else None


class Iconv:
    """One iconv charset, both ways."""

    def __init__(self, name):
        self.library = ctypes.CDLL(None, use_errno=True)
        self.library.iconv_open.restype = ctypes.c_void_p
        self.library.iconv.restype = ctypes.c_size_t
        self.to_wide = ctypes.c_void_p(self.library.iconv_open(b"UTF-16LE", name.encode()))
        self.to_bytes = ctypes.c_void_p(self.library.iconv_open(name.encode(), b"UTF-16LE"))
        if self.to_wide.value in (None, 2**64 - 1):
            raise SystemExit(f"no iconv charset {name}")

    def run(self, handle, data):
        self.library.iconv(handle, None, None, None, None)
        source = ctypes.create_string_buffer(data, len(data))
        target = ctypes.create_string_buffer(16)
        source_at = ctypes.c_char_p(ctypes.addressof(source))
        target_at = ctypes.c_char_p(ctypes.addressof(target))
        source_left, target_left = ctypes.c_size_t(len(data)), ctypes.c_size_t(16)
        result = self.library.iconv(handle, ctypes.byref(source_at), ctypes.byref(source_left),
                                    ctypes.byref(target_at), ctypes.byref(target_left))
        if result != 2**64 - 1:
            result = self.library.iconv(handle, None, None, ctypes.byref(target_at),
                                        ctypes.byref(target_left))
        if result == 2**64 - 1:
            return None
        return target.raw[:16 - target_left.value]

    def decode(self, data):
        units = self.run(self.to_wide, data)
        return int.from_bytes(units, "little") if units and len(units) == 2 else None

    def is_lead(self, byte):
        return self.run(self.to_wide, bytes([byte])) is None and ctypes.get_errno() == errno.EINVAL

    def encode(self, unit):
        data = self.run(self.to_bytes, unit.to_bytes(2, "little"))
        return data if data else None


def rows_of(page, name, codec):
    decoded, rows = {}, []
    for byte in range(256):
        if codec.is_lead(byte):
            rows.append(("lead", f"{byte:02X}", ""))
            for trail in range(1, 256):
                unit = codec.decode(bytes([byte, trail]))
                if unit is not None:
                    decoded[f"{byte:02X}{trail:02X}"] = unit
            continue
        unit = codec.decode(bytes([byte]))
        if unit is not None:
            decoded[f"{byte:02X}"] = unit
    implied = {}
    for key, unit in sorted(decoded.items(), key=lambda item: int(item[0], 16)):
        rows.append(("b2w", key, f"{unit:04X}"))
        implied.setdefault(unit, key)
    for unit in list(range(0xD800)) + list(range(0xE000, 0xFFFE)):
        data = codec.encode(unit)
        key = data.hex().upper() if data and len(data) <= 2 else None
        if key is not None and key != implied.get(unit):
            rows.append(("w2b", f"{unit:04X}", key))
    return [f"{page}\t{name}\t{kind}\t{key}\t{value}" for kind, key, value in rows]


def main():
    print("# page\tsource\tkind\tkey\tvalue")
    print("# lead: first byte of a pair. b2w: byte or pair to unit, which also encodes to it.")
    print("# w2b: unit to bytes where that differs from the reverse of b2w (fallbacks included).")
    print("# Read from ICU (unicode.org/license) and glibc's iconv by extract.py.")
    pages = [(page, name, Icu) for page, name in ICU_PAGES.items()]
    pages += [(page, name, Iconv) for page, name in ICONV_PAGES.items()]
    for page, name, kind in sorted(pages, key=lambda row: row[0]):
        print("\n".join(rows_of(page, name, kind(name))))
    return 0


if __name__ == "__main__":
    sys.exit(main())
