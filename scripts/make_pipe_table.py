#!/usr/bin/python3
"""Writes share/pipe.dbf, the diameters of pipe materials, from the tables below.

One row for a nominal diameter of a material: DN, outer diameter, wall and inner diameter in millimetres, with the
standard and its edition that they come from. The nominal diameters of plastic pipes are those by which they stand in the
place of steel pipes: DN 15 is dn 20 for pressure pipes, DN 100 is dn 110 for drain pipes; sizes without such a place (dn
180, 225, 280 and 560 of PE100) are left out. What stands before a diameter in labels is that of the nominal one, DN, for
all of them. Materials whose rows no standard at hand confirms are left out: stainless steel, steel lined with plastic,
HDPE for drainage, concrete.
"""
import pathlib

import dbase

ROOT = pathlib.Path(__file__).resolve().parent.parent

PRESSURE = {20: 15, 25: 20, 32: 25, 40: 32, 50: 40, 63: 50, 75: 65, 90: 80, 110: 100, 140: 125, 160: 150, 200: 200,
            250: 250, 315: 300, 355: 350, 400: 400, 450: 450, 500: 500, 630: 600}
DRAIN = {32: 32, 40: 40, 50: 50, 75: 75, 90: 90, 110: 100, 125: 125, 160: 150, 200: 200, 250: 250, 315: 300}


def plastic(sizes, walls, names):
    """Rows of plastic pipes: by dn and wall, those that have a nominal diameter."""
    return [(names[dn], dn, wall) for dn, wall in zip(sizes, walls) if dn in names and wall is not None]


PPR_SIZES = (20, 25, 32, 40, 50, 63, 75, 90, 110, 125, 140, 160)
PPR = "GB/T 18742.2-2017"
PE_SIZES = (20, 25, 32, 40, 50, 63, 75, 90, 110, 125, 140, 160, 180, 200, 225, 250, 280, 315, 355, 400, 450, 500,
            560, 630)
PE = "GB/T 13663.2-2018"

# Name, grade, use (I indoors, O outdoors, B both), standard, rows of DN, outer diameter and wall.
MATERIALS = [
    ("镀锌钢管", "普通", "B", "GB/T 3091-2015",
     [(15, 21.3, 2.8), (20, 26.9, 2.8), (25, 33.7, 3.2), (32, 42.4, 3.5), (40, 48.3, 3.5), (50, 60.3, 3.8),
      (65, 76.1, 4.0), (80, 88.9, 4.0), (100, 114.3, 4.0), (125, 139.7, 4.0), (150, 165.1, 4.5), (200, 219.1, 6.0)]),
    ("镀锌钢管(加厚)", "加厚", "B", "GB/T 3091-2015",
     [(15, 21.3, 3.5), (20, 26.9, 3.5), (25, 33.7, 4.0), (32, 42.4, 4.0), (40, 48.3, 4.5), (50, 60.3, 4.5),
      (65, 76.1, 4.5), (80, 88.9, 5.0), (100, 114.3, 5.0), (125, 139.7, 5.5), (150, 165.1, 6.0), (200, 219.1, 7.0)]),
    ("无缝钢管", "", "B", "GB/T 8163-2018",
     [(100, 108, 4), (125, 133, 4), (150, 159, 4.5), (200, 219, 6), (250, 273, 7), (300, 325, 8)]),
    ("PP-R", "S5", "I", PPR,
     plastic(PPR_SIZES, (2.0, 2.3, 2.9, 3.7, 4.6, 5.8, 6.8, 8.2, 10.0, 11.4, 12.7, 14.6), PRESSURE)),
    ("PP-R S4", "S4", "I", PPR,
     plastic(PPR_SIZES, (2.3, 2.8, 3.6, 4.5, 5.6, 7.1, 8.4, 10.1, 12.3, 14.0, 15.7, 17.9), PRESSURE)),
    ("PP-R S3.2", "S3.2", "I", PPR,
     plastic(PPR_SIZES, (2.8, 3.5, 4.4, 5.5, 6.9, 8.6, 10.3, 12.3, 15.1, 17.1, 19.2, 21.9), PRESSURE)),
    ("PP-R S2.5", "S2.5", "I", PPR,
     plastic(PPR_SIZES, (3.4, 4.2, 5.4, 6.7, 8.3, 10.5, 12.5, 15.0, 18.3, 20.8, 23.3, 26.6), PRESSURE)),
    ("PP-R S2", "S2", "I", PPR,
     plastic(PPR_SIZES, (4.1, 5.1, 6.5, 8.1, 10.1, 12.7, 15.1, 18.1, 22.1, 25.1, 28.1, 32.1), PRESSURE)),
    ("PE100", "SDR11", "O", PE,
     plastic(PE_SIZES, (2.3, 2.3, 3.0, 3.7, 4.6, 5.8, 6.8, 8.2, 10.0, 11.4, 12.7, 14.6, 16.4, 18.2, 20.5, 22.7, 25.4,
                        28.6, 32.2, 36.3, 40.9, 45.4, 50.8, 57.2), PRESSURE)),
    ("PE100 SDR17", "SDR17", "O", PE,
     plastic(PE_SIZES, (None, None, 2.3, 2.4, 3.0, 3.8, 4.5, 5.4, 6.6, 7.4, 8.3, 9.5, 10.7, 11.9, 13.4, 14.8, 16.6,
                        18.7, 21.1, 23.7, 26.7, 29.7, 33.2, 37.4), PRESSURE)),
    ("PVC-U", "", "B", "GB/T 5836.1-2018",
     plastic((32, 40, 50, 75, 90, 110, 125, 160, 200, 250, 315),
             (2.0, 2.0, 2.0, 2.3, 3.0, 3.2, 3.2, 4.0, 4.9, 6.2, 7.8), DRAIN)),
    ("PVC-U给水", "PN1.0", "O", "GB/T 10002.1-2006",
     plastic((63, 75, 90, 110, 160, 200, 250, 315), (3.0, 3.6, 4.3, 4.2, 6.2, 7.7, 9.6, 12.1), PRESSURE)),
    # The wall is that of the pipe with its cement lining: 4 mm up to DN 300, 5 mm up to DN 600, 6 mm above.
    ("球墨铸铁管", "K9", "O", "GB/T 13295-2019",
     [(dn, de, round(wall + (4 if dn <= 300 else 5 if dn <= 600 else 6), 1)) for dn, de, wall in (
         (80, 98, 6.0), (100, 118, 6.0), (125, 144, 6.0), (150, 170, 6.0), (200, 222, 6.3), (250, 274, 6.8),
         (300, 326, 7.2), (350, 378, 7.7), (400, 429, 8.1), (450, 480, 8.6), (500, 532, 9.0), (600, 635, 9.9),
         (700, 738, 10.8), (800, 842, 11.7))]),
    ("柔性铸铁排水管", "W", "B", "GB/T 12772-2016",
     [(50, 61, 4.3), (75, 86, 4.4), (100, 111, 4.8), (125, 137, 4.8), (150, 162, 4.8), (200, 214, 5.8),
      (250, 268, 6.4), (300, 318, 7.0)]),
]

FIELDS = [("MATERIAL", "C", 24, 0), ("GRADE", "C", 8, 0), ("PREFIX", "C", 4, 0), ("USE", "C", 1, 0),
          ("DN", "N", 6, 1), ("OUTER", "N", 8, 2), ("WALL", "N", 6, 2), ("INNER", "N", 8, 2), ("SOURCE", "C", 24, 0)]


if __name__ == "__main__":
    rows = [(name, grade, "DN", use, dn, outer, wall, round(outer - 2 * wall, 2), source)
            for name, grade, use, source, sizes in MATERIALS for dn, outer, wall in sizes]
    (ROOT / "share" / "pipe.dbf").write_bytes(dbase.table(FIELDS, rows))
