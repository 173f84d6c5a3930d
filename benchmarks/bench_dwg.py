"""Opening a DWG drawing of 20 MB, and the same drawing as DXF.

The richest drawing of 2000 in the folder $ZEF_DWG is grown: its entities of model space that stand for themselves
are there again and again, each with a handle of its own. The DXF file is what zefhost saves of it.
"""
import os
import pathlib
import subprocess

from bench import PLACE, size_of

MEGABYTES = 20
CRC = []
for value in range(256):
    for _ in range(8):
        value = value >> 1 ^ (0xA001 if value & 1 else 0)
    CRC.append(value)


def crc16(data, start):
    for byte in data:
        start = start >> 8 ^ CRC[(start ^ byte) & 0xFF]
    return start


class Bits:
    """The bits of an object, the first one highest."""

    def __init__(self, data):
        self.number, self.count, self.at = int.from_bytes(data, "big"), 8 * len(data), 0

    def take(self, count):
        self.at += count
        return self.number >> (self.count - self.at) & ((1 << count) - 1)

    def rest(self):
        return self.number & ((1 << (self.count - self.at)) - 1), self.count - self.at


def map_of(data, begin):
    """Handles and addresses; the file's map of its objects."""
    def number(page, at, signed):
        value = shift = 0
        while True:
            byte, at = page[at], at + 1
            if byte & 0x80:
                value |= (byte & 0x7F) << shift
                shift += 7
            elif signed:
                value |= (byte & 0x3F) << shift
                return (-value if byte & 0x40 else value), at
            else:
                return value | byte << shift, at

    found = {}
    while (size := int.from_bytes(data[begin:begin + 2], "big")) > 2:
        page, at, handle, address = data[begin:begin + size], 2, 0, 0
        while at < size:
            step, at = number(page, at, False)
            handle += step
            step, at = number(page, at, True)
            address += step
            found[handle] = address
        begin += size + 2
    return found


def number_of(value):
    out = bytearray()
    while value > 0x3F:
        out.append(value & 0x7F | 0x80)
        value >>= 7
    return bytes(out) + bytes([value])


def pages_of(places):
    """A map of handles in rising order, in pages of at most 2032 bytes."""
    out, page, handle, address = bytearray(), bytearray(), 0, 0
    for one, place in places:
        if place < address or len(page) > 2000:
            out += closed(page)
            page, handle, address = bytearray(), 0, 0
        page += number_of_unsigned(one - handle) + number_of(place - address)
        handle, address = one, place
    return bytes(out + closed(page) + closed(b""))


def number_of_unsigned(value):
    out = bytearray()
    while value > 0x7F:
        out.append(value & 0x7F | 0x80)
        value >>= 7
    return bytes(out) + bytes([value])


def closed(page):
    page = (len(page) + 2).to_bytes(2, "big") + bytes(page)
    return page + crc16(page, 0xC0C1).to_bytes(2, "big")


SIMPLE = {1, 17, 18, 19, 27, 31, 35, 36, 44, 77}  # text, curves, points, solids: what has no other objects


def template_of(data, address):
    """What an entity of model space is made of but its handle; nothing for other objects."""
    size = int.from_bytes(data[address:address + 2], "little")
    bits = Bits(data[address + 2:address + 2 + size])
    code = bits.take(2)
    kind = bits.take(8) if code == 1 else 0
    if size & 0x8000 or code != 1 or kind not in SIMPLE:
        return None
    limit = int.from_bytes(bits.take(32).to_bytes(4, "big"), "little")
    before = bits.at
    bits.take(4)
    bits.take(8 * bits.take(4))
    handle_bits = bits.at - before
    rest, count = bits.rest()
    look = Bits(data[address + 2:address + 2 + size])
    look.at = bits.at
    if look.take(2) != 2 or look.take(1) or look.take(2) != 2:  # application data, graphics, another space
        return None
    return kind, limit - handle_bits, rest, count


def grow(source, target):
    data = source.read_bytes()
    records = {data[at]: at for at in range(0x19, 0x19 + 9 * int.from_bytes(data[0x15:0x19], "little"), 9)}
    places = map_of(data, int.from_bytes(data[records[2] + 1:records[2] + 5], "little"))
    templates = [one for one in (template_of(data, address) for address in places.values()) if one]
    out, handle = bytearray(data), 0x100000
    places = sorted(places.items())
    while len(out) < MEGABYTES * 1000000:
        for kind, limit, rest, count in templates:
            head = (1 << 8 | kind) << 32 | int.from_bytes((limit + 32).to_bytes(4, "little"), "big")
            value, used = (head << 32 | 3 << 24 | handle) << count | rest, 42 + 32 + count
            size = (used + 7) // 8
            record = size.to_bytes(2, "little") + (value << (8 * size - used)).to_bytes(size, "big")
            places.append((handle, len(out)))
            out += record + crc16(record, 0xC0C1).to_bytes(2, "little")
            handle += 1
    pages = pages_of(places)
    at = records[2] + 1
    out[at:at + 8] = len(out).to_bytes(4, "little") + len(pages).to_bytes(4, "little")
    count = int.from_bytes(data[0x15:0x19], "little")
    end = 0x19 + 9 * count
    mask = (0xA598, 0x8101, 0x3CC4, 0x8461)[count - 3]
    out[end:end + 2] = (crc16(out[:end], 0) ^ mask).to_bytes(2, "little")
    target.write_bytes(out + pages)


def run(bench):
    folder = pathlib.Path(os.environ.get("ZEF_DWG") or "/nowhere")
    flat = [one for one in folder.glob("*.dwg") if one.read_bytes()[:6] == b"AC1015"]
    if not flat:
        print("no folder with DWG drawings of 2000 (ZEF_DWG): nothing is measured")
        return
    grown, twin = PLACE / "grown.dwg", PLACE / "grown.dxf"
    if not grown.exists():
        grow(max(flat, key=lambda one: one.stat().st_size), grown)
    subprocess.run(bench.zefhost(grown, "--no-module", "-c", "QUIT", "-o", twin), check=True,
                   stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
    programs = {"DWG": bench.zefhost(grown, "--no-module", "-c", "QUIT"),
                "its DXF": bench.zefhost(twin, "--no-module", "-c", "QUIT")}
    print(f"    the DXF file has {size_of(twin):.0f} MB")
    samples = bench.compare(programs)
    bench.table(samples, size_of(grown))
    bench.goal("the DWG's time, of its DXF's", samples["DWG"].time / samples["its DXF"].time, most=4)
