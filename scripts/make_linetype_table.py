#!/usr/bin/python3
"""Writes share/linetype.dbf, the linetypes that the module can load into a drawing.

A pattern is written as in files of linetypes: lengths of dashes (above nought), gaps (below) and dots (nought) in
millimetres on paper, and what stands in the line: ["TEXT",STYLE,S=size,R=rotation,X=offset,Y=offset], R against the line,
A against the drawing, in degrees.

The first ones are the metric linetypes that every editor has. Pipe lines carry the letters of their system between
long dashes (GB/T 50106-2010, pipes told apart by letters); the gap leaves half the size of the letters on both sides.
"""
import pathlib

import dbase

ROOT = pathlib.Path(__file__).resolve().parent.parent

PLAIN = [
    ("CENTER", "点划线 ____ _ ____ _ ____", "A,31.75,-6.35,6.35,-6.35"),
    ("CENTER2", "点划线(.5x) ___ _ ___ _ ___", "A,19.05,-3.175,3.175,-3.175"),
    ("DASHED", "虚线 __ __ __ __ __", "A,12.7,-6.35"),
    ("DASHED2", "虚线(.5x) _ _ _ _ _ _", "A,6.35,-3.175"),
    ("DASHDOT", "单点划线 __ . __ . __ .", "A,12.7,-6.35,0,-6.35"),
    ("DIVIDE", "双点划线 __ . . __ . . __", "A,12.7,-6.35,0,-6.35,0,-6.35"),
    ("DOT", "点线 . . . . . . . .", "A,0,-6.35"),
    ("HIDDEN", "隐藏线 _ _ _ _ _ _ _", "A,6.35,-3.175"),
    ("PHANTOM", "假想线 ____ _ _ ____ _ _", "A,31.75,-6.35,6.35,-6.35,6.35,-6.35"),
    ("BORDER", "边界线 __ __ . __ __ .", "A,12.7,-6.35,12.7,-6.35,0,-6.35"),
]

# The letters of a system, and whether the line between them is dashed. Zones of one system have a number behind them.
PIPES = [("J", "给水", False), ("RJ", "热水给水", False), ("RH", "热水回水", True), ("ZJ", "中水给水", False),
         ("XJ", "循环给水", False), ("XH", "循环回水", False), ("X", "消火栓给水", False), ("ZP", "自动喷水灭火给水", False),
         ("W", "污水", True), ("YW", "压力污水", True), ("F", "废水", True), ("YF", "压力废水", True), ("Y", "雨水", False),
         ("YY", "压力雨水", False), ("HY", "虹吸雨水", False), ("T", "通气", True), ("KN", "空调凝结水", False),
         ("J0", "屋顶水箱给水", False), ("ZY", "直饮水", False), ("RM", "热媒给水", False), ("RMH", "热媒回水", False),
         ("YL", "雨淋灭火给水", False), ("SM", "水幕灭火给水", False), ("SP", "水炮灭火给水", False),
         ("ZW", "水喷雾灭火给水", False), ("ZXW", "细水雾灭火给水", False), ("Q", "气体灭火", False),
         ("P", "排水", True), ("Z", "蒸汽", False), ("N", "蒸汽凝结水", False), ("PZ", "膨胀", False), ("QT", "其它", False)]
PIPES += [(f"{letters}{zone}", f"{name}{zone}区", dashed)
          for letters, name, dashed in PIPES if letters in ("J", "RJ", "RH", "ZJ", "X", "ZP") for zone in (2, 3)]

SIZE = 2.5  # of the letters, which are about four fifths as wide as high
DASH = 20.0


def pipe(letters, dashed):
    gap = SIZE / 2
    width = 0.8 * SIZE * len(letters)
    dashes = "6,-2,6" if dashed else f"{DASH:g}"
    return f'A,{dashes},{-gap:g},["{letters}",STANDARD,S={SIZE:g},R=0,X=0,Y={-SIZE / 2:g}],{-(width + gap):g}'


FIELDS = [("NAME", "C", 32, 0), ("DESCR", "C", 60, 0), ("PATTERN", "C", 200, 0)]

if __name__ == "__main__":
    rows = PLAIN + [(f"VR-{letters}", f"{name}管 {'_ _' if dashed else '____'} {letters} {'_ _' if dashed else '____'}",
                     pipe(letters, dashed)) for letters, name, dashed in PIPES]
    (ROOT / "share" / "linetype.dbf").write_bytes(dbase.table(FIELDS, rows))
