#!/usr/bin/python3
"""Writes share/userlayer.dbf: which layers belong to the architecture drawing (1), which to water supply and drainage (8).

The fields before the first hyphen are the disciplines of GB/T 50001-2017, "A" architecture and "P" plumbing; the names
without one are what architects' programs call their layers, and the plumbing ones what the standard here does.
"""
import pathlib

import dbase

ROOT = pathlib.Path(__file__).resolve().parent.parent

ARCHITECTURE = ["A-*", "建筑*", "AXIS*", "DOTE", "WALL", "WALL-*", "WINDOW", "WINDOW_TEXT", "DOOR*", "COLUMN", "STAIR",
                "BALCONY", "ROOF", "SPACE", "墙体", "墙", "柱", "柱子", "梁", "剪力墙", "门窗", "楼梯*", "轴线*", "轴网", "轴号", "阳台", "电梯",
                "家具", "房间名称"]
PLUMBING = ["P-*", "水-*", "给排水*"]

FIELDS = [("PRODUCT", "N", 4, 0), ("NAME", "C", 254, 0), ("SYSTEM", "C", 64, 0)]

if __name__ == "__main__":
    rows = [(1, name, "") for name in ARCHITECTURE] + [(8, name, "") for name in PLUMBING]
    (ROOT / "share" / "userlayer.dbf").write_bytes(dbase.table(FIELDS, rows))
