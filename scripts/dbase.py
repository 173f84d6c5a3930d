"""Writes dBASE III tables whose texts are in GBK."""
import struct

GBK_DRIVER = 0x4D
LAST_CHANGE = (126, 11, 21)  # years since 1900, month, day


def cell(kind, length, decimals, value):
    if kind == "N":
        return f"{value:{length}.{decimals}f}".encode("ascii")
    text = value.encode("gbk")
    if len(text) > length:
        raise ValueError(f"{value} does not fit")
    return text.ljust(length)


def table(fields, rows):
    """The bytes of a table: fields are (name, "C" or "N", length, decimals), rows tuples of their values."""
    header = 32 + 32 * len(fields) + 1
    width = 1 + sum(field[2] for field in fields)
    out = struct.pack("<4BIHH17xB2x", 3, *LAST_CHANGE, len(rows), header, width, GBK_DRIVER)
    for name, kind, length, decimals in fields:
        out += struct.pack("<11sc4xBB14x", name.encode("ascii"), kind.encode("ascii"), length, decimals)
    out += b"\r"
    for row in rows:
        out += b" " + b"".join(cell(*field[1:], value) for field, value in zip(fields, row))
    return out + b"\x1a"
