#!/usr/bin/env python3
"""make_storey.py: writes storey.dxf and storey_base.dxf beside itself, the same bytes each time.

storey.dxf is the water supply and drainage plan of one storey of a residential building: two flats around a
core of stair, lift and shafts; the right flat is the left one mirrored. storey_base.dxf is the structure, an
external reference of it. The class Drawing writes DXF (R2018, UTF-8, CRLF); geometry stands in tables, in mm.
"""

import pathlib

MIRROR_X = 21400  # x of a point plus x of its mirror image
RESERVED = range(0xA00, 0x1000)  # handles that people and scripts name; ordinary ones go round them


def number(value):
    text = f"{value:.6f}".rstrip("0")
    return text + "0" if text.endswith(".") else text


def points(code, *pts):
    """The groups of points: 10, 20, 30 for code 10."""
    return [(code + 10 * i, float(v)) for p in pts for i, v in enumerate((*p, 0.0)[:3])]


def tags(text):
    """The groups of `code=value code=value ...`, values written as they stand."""
    return [(int(code), value) for code, _, value in (group.partition("=") for group in text.split())]


class Block:
    def __init__(self, drawing, name, flags=0, path=""):
        self.name, self.flags, self.path, self.tags = name, flags, path, []
        self.record, self.begin, self.end = drawing.handle(), drawing.handle(), drawing.handle()
        self.layout = "0"
        self.paper = name == "*Paper_Space"


class Drawing:
    """A drawing in the making: tables, blocks, entities and objects as groups, written whole by write()."""
    TABLES = ("VPORT", "LTYPE", "LAYER", "STYLE", "VIEW", "UCS", "APPID", "DIMSTYLE", "BLOCK_RECORD")

    def __init__(self, layout_name):
        self.last, self.used, self.mirrored = 0, set(), False
        self.root = self.handle()
        self.table = {name: self.handle() for name in self.TABLES}
        self.records = {name: [] for name in self.TABLES}
        self.ids, self.blocks, self.objects, self.dictionaries = {}, {}, [], {}
        self.plot_style = self.handle()
        self.model, self.paper = self.block("*Model_Space"), self.block("*Paper_Space")
        self.space, self.layout_name, self.dimensions = self.model, layout_name, 0
        for name in ("ByBlock", "ByLayer"):
            self.linetype(name, "", [])
        self.linetype("Continuous", "Solid line", [])
        self.record("APPID", "ACAD", "AcDbRegAppTableRecord", [(70, 0)])

    def handle(self, wanted=None):
        if wanted is None:
            self.last = RESERVED.stop if self.last + 1 in RESERVED else self.last + 1
            return f"{self.last:X}"
        assert int(wanted, 16) in RESERVED and wanted not in self.used, wanted
        self.used.add(wanted)
        return wanted

    # ---- tables

    def record(self, table, name, subclass, groups):
        handle, code = self.handle(), 105 if table == "DIMSTYLE" else 5
        self.ids[table, name] = handle
        self.records[table] += [*tags(f"0={table} {code}={handle} 330={self.table[table]}"
                                      " 100=AcDbSymbolTableRecord"),
                                (100, subclass), (2, name), *groups]

    def linetype(self, name, description, dashes, flags=0):
        total = sum(map(abs, dashes))
        head = [(70, flags), (3, description), *tags(f"72=65 73={len(dashes)} 40={number(total)}")]
        self.record("LTYPE", name, "AcDbLinetypeTableRecord",
                    head + [group for dash in dashes for group in tags(f"49={dash} 74=0")])

    def layer(self, name, colour, linetype="Continuous", weight=18, state="", flags=0):
        """state: o off, f frozen, l locked, n not plotted."""
        flags |= ("f" in state) + 4 * ("l" in state)
        colour, plot = -colour if "o" in state else colour, "290=0" if "n" in state else ""
        self.record("LAYER", name, "AcDbLayerTableRecord",
                    tags(f"70={flags} 62={colour} 6={linetype} {plot} 370={weight} 390={self.plot_style}"))

    def style(self, name, font, big_font="", width=1.0):
        self.record("STYLE", name, "AcDbTextStyleTableRecord",
                    tags(f"70=0 40=0.0 41={width} 50=0.0 71=0 42=2.5 3={font} 4={big_font}"))

    def block(self, name, flags=0, path=""):
        self.blocks[name] = Block(self, name, flags, path)
        return self.blocks[name]

    # ---- entities, into self.space

    def at(self, *pts):
        return [(MIRROR_X - p[0], p[1]) if self.mirrored else p for p in pts]

    def add(self, kind, layer, body, handle=None, more=(), xdata=(), owner=None):
        """Adds an entity and gives its handle; more: groups that follow the layer."""
        assert ("LAYER", layer) in self.ids, layer
        handle, paper = self.handle(handle), "67=1" if self.space.paper else ""
        self.space.tags += [*tags(f"0={kind} 5={handle} 330={owner or self.space.record} 100=AcDbEntity"
                                  f" {paper}"),
                            (8, layer), *more, *body, *xdata]
        return handle

    def line(self, layer, a, b, **more):
        a, b = self.at(a, b)
        return self.add("LINE", layer, [(100, "AcDbLine")] + points(10, a) + points(11, b), **more)

    def polyline(self, layer, pts, closed=False, width=0.0, **more):
        body = tags(f"100=AcDbPolyline 90={len(pts)} 70={int(closed)} 43={float(width)}")
        for point in self.at(*pts):
            body += points(10, point)[:2]
        return self.add("LWPOLYLINE", layer, body, **more)

    def box(self, layer, x0, y0, x1, y1, **more):
        return self.polyline(layer, [(x0, y0), (x1, y0), (x1, y1), (x0, y1)], True, **more)

    def circle(self, layer, centre, radius, **more):
        body = [(100, "AcDbCircle")] + points(10, *self.at(centre)) + [(40, float(radius))]
        return self.add("CIRCLE", layer, body, **more)

    def arc(self, layer, centre, radius, low, high):
        body = tags("100=AcDbCircle") + points(10, centre)
        return self.add("ARC", layer, body + tags(f"40={radius:.1f} 100=AcDbArc 50={low:.1f} 51={high:.1f}"))

    def ellipse(self, layer, centre, major, ratio):
        body = tags("100=AcDbEllipse") + points(10, centre) + points(11, major)
        return self.add("ELLIPSE", layer, body + tags(f"210=0.0 220=0.0 230=1.0 40={ratio} 41=0.0"
                                                      " 42=6.283185"))

    def solid(self, layer, *corners):
        """Corners in reading order: a SOLID crosses its third and fourth."""
        corners = self.at(*corners)
        body = [(100, "AcDbTrace")]
        for i, corner in enumerate(corners if len(corners) == 4 else corners + corners[-1:]):
            body += points(10 + i, corner)
        return self.add("SOLID", layer, body)

    @staticmethod
    def writing(at, height, string, angle=0.0, centred=True):
        """What TEXT, ATTRIB and ATTDEF share."""
        body = [(100, "AcDbText"), *points(10, at), (40, float(height)), (1, string), (50, float(angle))]
        return body + tags("41=0.7 7=HZTXT") + ([(72, 1)] + points(11, at) if centred else [])

    def text(self, layer, at, height, string, angle=0.0, centred=True, **more):
        """Centred texts stand with their middle on the point, the others begin at it."""
        body = self.writing(*self.at(at), height, string, angle, centred) + tags("100=AcDbText")
        return self.add("TEXT", layer, body + tags("73=2" if centred else ""), **more)

    def mtext(self, layer, at, height, width, string, spacing=1.0, **more):
        pieces = [string[i:i + 250] for i in range(0, len(string), 250)]
        body = tags("100=AcDbMText") + points(10, at) + tags(f"40={height:.1f} 41={width:.1f} 46=0.0 71=1"
                                                             " 72=5")
        body += [(3, piece) for piece in pieces[:-1]] + [(1, pieces[-1])]
        return self.add("MTEXT", layer, body + tags(f"7=HZTXT 73=1 44={spacing}"), **more)

    def insert(self, name, layer, at, angle=0.0, sx=1.0, sy=1.0, attributes=(), **more):
        """attributes: (tag, point, height, text), centred on their points."""
        if self.mirrored:
            angle, sx = -angle % 360, -sx
        scale = "" if (sx, sy) == (1.0, 1.0) else f"41={float(sx)} 42={float(sy)} 43=1.0"
        body = tags("100=AcDbBlockReference" + (" 66=1" if attributes else "")) + [(2, name)]
        body += points(10, *self.at(at)) + tags(f"{scale} 50={float(angle)}")
        handle = self.add("INSERT", layer, body, **more)
        for tag, place, height, string in attributes:
            body = self.writing(place, height, string) + tags(f"100=AcDbAttribute 280=0 2={tag} 70=0 74=2")
            self.add("ATTRIB", layer, body, owner=handle)
        if attributes:
            self.add("SEQEND", layer, [], owner=handle)
        return handle

    def attribute(self, tag, at, height, default):
        body = tags(f"100=AcDbAttributeDefinition 280=0 3={tag} 2={tag} 70=0 74=2")
        self.add("ATTDEF", "0", self.writing(at, height, default) + body)

    def dimension(self, layer, a, b, at, vertical=False, scale=1.0):
        """A rotated dimension from a to b, its line at x or y `at`, with the picture that goes with it."""
        self.dimensions += 1
        name, around = f"*D{self.dimensions}", self.space
        (a, b), mirrored, self.mirrored = self.at(a, b), self.mirrored, False
        i = 1 if vertical else 0
        a, b = sorted((a, b), key=lambda p: p[i])
        angle, away = 90.0 * i, scale if at > a[1 - i] else -scale

        def beside(along, across):
            return (at + across, along) if vertical else (along, at + across)
        on = [beside(p[i], 0) for p in (a, b)]
        middle = beside((a[i] + b[i]) / 2, 190 * scale * (-1 if vertical else 1))
        self.space = self.block(name, 1)
        self.line("0", *on)
        for p in (a, b):
            self.line("0", beside(p[i], -250 * away), beside(p[i], 100 * away))
            self.insert("_ArchTick", "0", beside(p[i], 0), 0, 140 * scale, 140 * scale)
        self.text("0", middle, 250 * scale, f"{b[i] - a[i]:.0f}", angle)
        self.space = around
        self.add("DIMENSION", layer, [(100, "AcDbDimension"), (280, 0), (2, name)] + points(10, on[1]) +
                 points(11, middle) + [(70, 32), (71, 5), (42, float(b[i] - a[i])), (3, "GB-100"),
                                       (100, "AcDbAlignedDimension")] + points(13, a) + points(14, b) +
                 [(50, angle), (100, "AcDbRotatedDimension")])
        self.mirrored = mirrored

    def viewport(self, order, layer, centre, width, height, view, view_height, frozen=(), **more):
        """Order 1 is the sheet itself; the others are locked at their scale. frozen: names of layers."""
        status = 32768 if order == 1 else 32768 + 16384 + 96
        body = tags("100=AcDbViewport") + points(10, centre)
        body += tags(f"40={width:.1f} 41={height:.1f} 68={order} 69={order} 12={view[0]:.1f}"
                     f" 22={view[1]:.1f} 13=0.0 23=0.0 14=10.0 24=10.0 15=10.0 25=10.0 16=0.0 26=0.0 36=1.0"
                     f" 17=0.0 27=0.0 37=0.0 42=50.0 43=0.0 44=0.0 45={view_height:.1f} 50=0.0 51=0.0"
                     " 72=1000")
        body += [(331, self.ids["LAYER", name]) for name in frozen]
        body += tags(f"90={status} 1= 281=0 71=1 74=0 110=0.0 120=0.0 130=0.0 111=1.0 121=0.0 131=0.0"
                     " 112=0.0 122=1.0 132=0.0 79=0 146=0.0 170=0 61=5 292=1 282=1 141=0.0 142=0.0 63=250")
        return self.add("VIEWPORT", layer, body, **more)

    # ---- the rest of the file

    def object(self, kind, owner, body, handle=None):
        handle = self.handle(handle)
        self.objects.append([(0, kind), (5, handle), (330, owner), *body])
        return handle

    def dictionary(self, name, owner, handle=None):
        """A new dictionary, entered in the dictionary `owner`."""
        handle = self.handle(handle)
        self.enter(owner, name, handle)
        self.objects.append([(0, "DICTIONARY"), (5, handle), (330, owner), (100, "AcDbDictionary"), (281, 1)])
        self.dictionaries[handle] = self.objects[-1]
        return handle

    def enter(self, dictionary, name, handle):
        self.dictionaries[dictionary] += [(3, name), (350, handle)]

    def layouts(self, owner, corner):
        """The model and the sheet; corner is the sheet's upper right corner."""
        for order, (name, block) in enumerate((("Model", self.model), (self.layout_name, self.paper))):
            w, h = corner if order else (0.0, 0.0)
            paper, scale, flags, area = (("ISO_full_bleed_A3_(420.00_x_297.00_MM)", 1.0, 688, 5) if order else
                                         ("", 100.0, 1712, 0))
            block.layout = self.object("LAYOUT", owner, tags(
                f"100=AcDbPlotSettings 1= 2=none_device 4={paper} 6= 40=0.0 41=0.0 42=0.0 43=0.0 44={w}"
                f" 45={h} 46=0.0 47=0.0 48=0.0 49=0.0 140=0.0 141=0.0 142=1.0 143={scale} 70={flags} 72=1"
                f" 73=0 74={area} 7= 75=16 76=0 77=2 78=300 147=1.0 148=0.0 149=0.0 100=AcDbLayout 1={name}"
                f" 70=1 71={order} 10=0.0 20=0.0 11={w} 21={h} 12=0.0 22=0.0 32=0.0 14=0.0 24=0.0 34=0.0"
                f" 15={w} 25={h} 35=0.0 146=0.0 13=0.0 23=0.0 33=0.0 16=1.0 26=0.0 36=0.0 17=0.0 27=1.0"
                f" 37=0.0 76=0 330={block.record}"))
            self.enter(owner, name, block.layout)

    def standard_objects(self, corner):
        self.objects.append([(0, "DICTIONARY"), *tags(f"5={self.root} 330=0 100=AcDbDictionary 281=1")])
        self.dictionaries[self.root] = self.objects[0]
        for name in ("ACAD_GROUP", "ACAD_PLOTSETTINGS"):
            self.dictionary(name, self.root)
        self.layouts(self.dictionary("ACAD_LAYOUT", self.root), corner)
        lines = self.dictionary("ACAD_MLINESTYLE", self.root)
        self.enter(lines, "Standard", self.object("MLINESTYLE", lines, tags(
            "100=AcDbMlineStyle 2=Standard 70=0 3= 62=256 51=90.0 52=90.0 71=2 49=0.5 62=256 6=ByLayer"
            " 49=-0.5 62=256 6=ByLayer")))
        plots = self.object("ACDBDICTIONARYWDFLT", self.root, tags(
            f"100=AcDbDictionary 281=1 3=Normal 350={self.plot_style} 100=AcDbDictionaryWithDefault"
            f" 340={self.plot_style}"))
        self.enter(self.root, "ACAD_PLOTSTYLENAME", plots)
        self.objects.append(tags(f"0=ACDBPLACEHOLDER 5={self.plot_style} 330={plots}"))

    def view(self, x, y, height):
        """The saved view of the model, 16:9: what is on the screen when the drawing opens."""
        self.record("VPORT", "*Active", "AcDbViewportTableRecord", tags(
            f"70=0 10=0.0 20=0.0 11=1.0 21=1.0 12={x} 22={y} 13=0.0 23=0.0 14=10.0 24=10.0 15=10.0 25=10.0"
            f" 16=0.0 26=0.0 36=1.0 17=0.0 27=0.0 37=0.0 40={height} 41=1.777778 42=50.0 43=0.0 44=0.0"
            " 50=0.0 51=0.0 71=0 72=1000 73=1 74=3 75=0 76=0 77=0 78=0 281=0 65=1"))

    def dimension_style(self, tick):
        self.record("DIMSTYLE", "GB-100", "AcDbDimStyleTableRecord", tags(
            "70=0 40=100.0 41=1.4 42=2.0 44=1.0 140=2.5 147=0.7 73=0 74=0 77=1 271=0"
            f" 340={self.ids['STYLE', 'HZTXT']} 342={tick.record}"))

    def groups(self, low, high, linetype_scale):
        """The whole file as groups; low and high are the corners of what is drawn."""
        seed = f"{max(self.last + 1, RESERVED.stop):X}"
        out = tags(
            "0=SECTION 2=HEADER 9=$ACADVER 1=AC1032 9=$ACADMAINTVER 90=4 9=$DWGCODEPAGE 3=ANSI_936"
            f" 9=$INSBASE 10=0.0 20=0.0 30=0.0 9=$EXTMIN 10={low[0]} 20={low[1]} 30=0.0 9=$EXTMAX"
            f" 10={high[0]} 20={high[1]} 30=0.0 9=$LIMMIN 10=0.0 20=0.0 9=$LIMMAX 10=42000.0 20=29700.0"
            f" 9=$LTSCALE 40={linetype_scale} 9=$TEXTSIZE 40=250.0 9=$TEXTSTYLE 7=HZTXT 9=$CLAYER 8=0"
            " 9=$CELTYPE 6=ByLayer 9=$CECOLOR 62=256 9=$CELTSCALE 40=1.0 9=$DIMSCALE 40=100.0 9=$DIMSTYLE"
            f" 2=GB-100 9=$LUNITS 70=2 9=$LUPREC 70=4 9=$HANDSEED 5={seed} 9=$TILEMODE 70=1 9=$MEASUREMENT"
            " 70=1 9=$PSLTSCALE 70=0 9=$CELWEIGHT 370=-1 9=$LWDISPLAY 290=1 9=$INSUNITS 70=4 0=ENDSEC"
            " 0=SECTION 2=CLASSES")
        for kind, cpp, count in (("ACDBDICTIONARYWDFLT", "AcDbDictionaryWithDefault", 1),
                                 ("ACDBPLACEHOLDER", "AcDbPlaceHolder", 1), ("LAYOUT", "AcDbLayout", 2)):
            out += [*tags(f"0=CLASS 1={kind} 2={cpp}"), (3, "ObjectDBX Classes"),
                    *tags(f"90=0 91={count} 280=0 281=0")]
        out += [(0, "ENDSEC"), (0, "SECTION"), (2, "TABLES")]
        for block in self.blocks.values():
            self.records["BLOCK_RECORD"] += [
                (0, "BLOCK_RECORD"), (5, block.record), (330, self.table["BLOCK_RECORD"]),
                (100, "AcDbSymbolTableRecord"), (100, "AcDbBlockTableRecord"), (2, block.name),
                (340, block.layout),
                (70, 4), (280, 1), (281, 0)]
        for name in self.TABLES:
            records = self.records[name]
            count = sum(group == (0, name) for group in records)
            out += [(0, "TABLE"), (2, name), (5, self.table[name]), (330, "0"), (100, "AcDbSymbolTable"),
                    (70, count)]
            out += [(100, "AcDbDimStyleTable"), (71, 0)] if name == "DIMSTYLE" else []
            out += records + [(0, "ENDTAB")]
        out += [(0, "ENDSEC"), (0, "SECTION"), (2, "BLOCKS")]
        for block in self.blocks.values():
            space = [(67, 1)] if block.paper else []
            entity = [(330, block.record), (100, "AcDbEntity"), *space, (8, "0")]
            out += [(0, "BLOCK"), (5, block.begin), *entity, (100, "AcDbBlockBegin"), (2, block.name),
                    (70, block.flags), *points(10, (0, 0)), (3, block.name), (1, block.path)]
            out += [] if block in (self.model, self.paper) else block.tags
            out += [(0, "ENDBLK"), (5, block.end), *entity, (100, "AcDbBlockEnd")]
        out += [(0, "ENDSEC"), (0, "SECTION"), (2, "ENTITIES"), *self.model.tags, *self.paper.tags]
        out += [(0, "ENDSEC"), (0, "SECTION"), (2, "OBJECTS")]
        out += [group for thing in self.objects for group in thing]
        return out + [(0, "ENDSEC"), (0, "EOF")]

    def write(self, path, **header):
        lines = [f"{code:3d}\r\n{number(value) if isinstance(value, float) else value}\r\n"
                 for code, value in self.groups(**header)]
        path.write_bytes("".join(lines).encode())


# ---- the building: tables

LINETYPES = (("CENTER", "Center ____ _ ____ _", [31.75, -6.35, 6.35, -6.35]),
             ("DASHED", "Dashed __ __ __", [12.7, -6.35]))
AXES_X = (("1", 0), ("2", 3600), ("3", 8100), ("4", 10700), ("5", 13300), ("6", 17800), ("7", 21400))
AXES_Y = (("A", 0), ("B", 4500), ("C", 7200), ("D", 11400))

# Systems: word in the layer names, colour, linetype, lineweight (thick for gravity, medium for pressure).
SYSTEMS = (("给水", 3, "Continuous", 50), ("热给水", 6, "Continuous", 50), ("消防", 1, "Continuous", 50),
           ("污水", 2, "DASHED", 70), ("废水", 42, "DASHED", 70), ("雨水", 4, "DASHED", 70),
           ("凝结", 140, "DASHED", 35))
# Other layers: name, colour, linetype, lineweight, state (o off, f frozen, l locked, n not plotted).
LAYERS = (("给水管线-旧", 11, "Continuous", 25, ""), ("VALVE_给水", 3, "Continuous", 35, ""),
          ("VALVE_热给水", 6, "Continuous", 35, ""), ("VALVE_消防", 1, "Continuous", 35, ""),
          ("EQUIP_给水", 3, "Continuous", 35, ""), ("EQUIP_热给水", 6, "Continuous", 35, ""),
          ("EQUIP_消防", 1, "Continuous", 35, ""), ("EQUIP_排水", 42, "Continuous", 35, ""),
          ("墙体", 8, "Continuous", 18, ""), ("门窗", 134, "Continuous", 18, ""), ("洁具", 9, "Continuous", 18, ""),
          ("轴线", 8, "CENTER", 18, ""), ("轴线标注", 8, "Continuous", 18, ""), ("房间名称", 7, "Continuous", 18, ""),
          ("楼梯电梯", 8, "Continuous", 18, ""), ("家具", 9, "Continuous", 18, "o"),
          ("空调", 9, "Continuous", 18, "o"), ("地面铺装", 253, "Continuous", 9, "f"),
          ("大样标注", 7, "Continuous", 18, ""), ("说明文字", 7, "Continuous", 18, ""),
          ("外部参照", 7, "Continuous", 18, ""), ("图框", 7, "Continuous", 35, "l"),
          ("视口", 8, "Continuous", 9, "n"), ("Defpoints", 7, "Continuous", 9, "n"))
BASE_LAYERS = (("柱", 8, "Continuous", 35), ("剪力墙", 8, "Continuous", 35), ("梁", 252, "DASHED", 18),
               ("轴线", 8, "CENTER", 18))

# Walls run on their middle lines: x0, y0, x1, y1, thickness. The first table stands in both flats.
FLAT_WALLS = ((0, 0, 8100, 0, 200), (0, 0, 0, 11400, 200), (0, 11400, 8100, 11400, 200),
              (8100, 0, 8100, 11400, 200), (3600, 0, 3600, 4500, 200), (0, 4500, 3600, 4500, 200),
              (0, 7200, 8100, 7200, 200), (3600, 7200, 3600, 11400, 200), (2400, 4500, 2400, 7200, 100),
              (5700, 7200, 5700, 11400, 100), (3600, -1500, 3600, 0, 200), (3600, -1500, 8100, -1500, 100),
              (8100, -1500, 8100, 0, 200))
CORE_WALLS = ((8100, 3300, 13300, 3300, 200), (8100, 4500, 13300, 4500, 200), (10700, 3300, 10700, 4500, 100),
              (8100, 7200, 13300, 7200, 200), (8100, 11400, 13300, 11400, 200),
              (10700, 7200, 10700, 11400, 200), (10700, 9600, 13300, 9600, 200))

# Openings: block (its digits are the width), h or v wall, its middle, start, hinge and swing side, handle.
FLAT_OPENINGS = (("C1800", "h", 0, 900, 1, 1, "A04"), ("TLM2700", "h", 0, 4500, 1, 1),
                 ("C0600", "v", 0, 5200, 1, 1), ("C1800", "h", 11400, 900, 1, 1),
                 ("C0600", "h", 11400, 4050, 1, 1), ("C1500", "h", 11400, 6150, 1, 1),
                 ("M0900", "h", 4500, 2500, -1, -1), ("M0700", "h", 4500, 1550, -1, 1),
                 ("M0900", "h", 7200, 2500, -1, 1), ("M0800", "h", 7200, 3800, 1, 1, "A03"),
                 ("TLM1200", "h", 7200, 6150, 1, 1), ("M1000", "v", 8100, 5300, -1, 1))
CORE_OPENINGS = (("M1000", "h", 7200, 8500, 1, 1), ("M0800", "h", 4500, 9400, 1, 1),
                 ("M0800", "h", 4500, 11600, 1, 1), ("C1200", "h", 11400, 8800, 1, 1),
                 ("DT1100", "h", 7200, 11450, 1, 1))

# Rooms: name, middle, height of the text, handle.
FLAT_ROOMS = (("主卧室", 1500, 2000, 350), ("客厅", 5850, 2000, 350, "A02"), ("餐厅", 5850, 5500, 350),
              ("次卧室", 1400, 9600, 350), ("厨房", 6750, 9300, 350), ("卫生间", 4090, 8900, 250),
              ("主卫", 1080, 6000, 250), ("过道", 3000, 5600, 350), ("阳台", 5200, -800, 350))
CORE_ROOMS = (("前室", 11900, 6000, 250), ("楼梯间", 9400, 7750, 250), ("电梯", 12000, 8150, 250),
              ("水管井", 9860, 4260, 200), ("电井", 12900, 3900, 250), ("加压送风井", 12000, 10500, 250))
FIXTURES = (("洗脸盆", 2030, 7100, 0), ("坐便器", 1450, 7100, 0), ("淋浴", 550, 7100, 0), ("洗衣机", 5650, 7900, 270),
            ("洗脸盆", 5650, 8900, 270), ("坐便器", 5650, 9900, 270, "A05"), ("淋浴", 5650, 10850, 270),
            ("洗涤盆", 6900, 11300, 0), ("地漏", 700, 6350, 0), ("地漏", 1750, 5250, 0), ("地漏", 4860, 7900, 0),
            ("地漏", 4950, 10600, 0), ("地漏", 7300, -1250, 0))
DUCTS = ((100, 4600, 400, 4900), (3700, 10990, 4010, 11300), (5750, 10990, 6060, 11300))

# Risers: names left and right, system, x, y, where the label begins relative to the riser, handle.
FLAT_RISERS = (("WL-1", "WL-3", "污水", 3850, 11150, 250, 950, "C13"),
               ("WL-2", "WL-4", "污水", 250, 4750, 450, -700),
               ("FL-1", "FL-2", "废水", 5900, 11150, 250, 950, "C16"),
               ("YL-1", "YL-2", "雨水", 7930, -1330, 600, 500, "C14"),
               ("NL-1", "NL-2", "凝结", 3400, -250, -1000, -700))
CORE_RISERS = (("JL-1", "", "给水", 8350, 3550, -550, -900, "C11"),
               ("RL-1", "", "热给水", 9250, 3550, -500, -900, "C12"), ("FL-3", "", "废水", 9800, 3550, -150, -900),
               ("XL-1", "", "消防", 10400, 3600, 250, -950, "C15"))

# Pipes: system, size, points, label (segment, side: 1 above or right, -1 below or left; or None), handle.
# 旧 is cold water that someone drew on a layer of his own.
FLAT_PIPES = (
    ("给水", "De32", [(8100, 4900), (7650, 4900), (7650, 6600)], None),
    ("给水", "De32", [(7650, 6600), (5060, 6600)], (0, 1), "C01"),
    ("给水", "De25", [(5060, 6600), (2105, 6600)], (0, 1)),
    ("给水", "De20", [(2105, 6600), (625, 6600), (625, 7040)], None),
    ("给水", "De20", [(2105, 6600), (2105, 7040)], None), ("给水", "De20", [(1250, 6600), (1250, 7040)], None),
    ("给水", "De25", [(5060, 6600), (5060, 8825)], None),
    ("给水", "De20", [(5060, 8825), (5060, 10775), (5590, 10775)], None),
    ("旧", "De20", [(5060, 7900), (5590, 7900)], None), ("给水", "De20", [(5060, 8825), (5590, 8825)], None),
    ("给水", "De20", [(5060, 10120), (5590, 10120)], None),
    ("旧", "De25", [(7650, 6600), (7650, 9200)], None, "C06"),
    ("旧", "De20", [(7650, 9200), (7650, 11240), (6980, 11240)], (0, 1)),
    ("热给水", "De32", [(8100, 5020), (7530, 5020), (7530, 6480)], None),
    ("热给水", "De32", [(7530, 6480), (4940, 6480)], (0, -1), "C02"),
    ("热给水", "De25", [(4940, 6480), (1955, 6480)], (0, -1)),
    ("热给水", "De20", [(1955, 6480), (475, 6480), (475, 7040)], None),
    ("热给水", "De20", [(1955, 6480), (1955, 7040)], None), ("热给水", "De25", [(4940, 6480), (4940, 8975)], None),
    ("热给水", "De20", [(4940, 8975), (4940, 10925), (5590, 10925)], None),
    ("热给水", "De20", [(4940, 8975), (5590, 8975)], None),
    ("热给水", "De20", [(7530, 6480), (7530, 11120), (6820, 11120), (6820, 11240)], (0, -1)),
    ("污水", "De50", [(4860, 7900), (4500, 8260), (4500, 9120)], None),
    ("污水", "De75", [(4500, 9120), (4500, 10120)], None),
    ("污水", "De50", [(5400, 8900), (4720, 8900), (4500, 9120)], None),
    ("污水", "De110", [(4500, 10120), (4500, 10500), (3850, 11150)], None, "C03"),
    ("污水", "De110", [(5345, 9900), (4720, 9900), (4500, 10120)], None),
    ("污水", "De50", [(4950, 10600), (4400, 10600)], None),
    ("污水", "De50", [(2030, 6850), (2030, 5720), (1810, 5500), (1230, 5500)], None),
    ("污水", "De110", [(1450, 6795), (1450, 5720), (1230, 5500)], None),
    ("污水", "De110", [(1230, 5500), (1000, 5500), (250, 4750)], None),
    ("污水", "De50", [(1750, 5250), (1500, 5500)], None), ("污水", "De50", [(700, 6350), (700, 5200)], None),
    ("废水", "De50", [(6900, 11000), (6050, 11000), (5900, 11150)], None, "C08"),
    ("雨水", "De50", [(7300, -1250), (7850, -1250), (7930, -1330)], None, "C04"),
    ("凝结", "De32", [(3400, 700), (3400, -250)], None, "C07"),
    ("凝结", "De32", [(3850, 350), (3850, -250), (3400, -250)], None))
CORE_PIPES = (
    ("给水", "DN32", [(8350, 3550), (8350, 3720), (8650, 3720)], None),
    ("给水", "DN25", [(8350, 3720), (8350, 4900), (8100, 4900)], None),
    ("给水", "DN25", [(8650, 3720), (8650, 4900), (13300, 4900)], (1, -1)),
    ("热给水", "DN32", [(9250, 3550), (9250, 3720), (8950, 3720)], None),
    ("热给水", "DN25", [(8950, 3720), (8950, 5020), (8100, 5020)], None),
    ("热给水", "DN25", [(9250, 3720), (9250, 5020), (13300, 5020)], (1, 1)),
    ("废水", "De50", [(9800, 4000), (9800, 3550)], None),
    ("消防", "DN65", [(10400, 3600), (10400, 7000)], (0, -1), "C05"))

# Further sizes and slopes: system, middle of the text, angle, text. Then where which system's arrows point.
FLAT_LABELS = (("给水", (5190, 8410), 90, "De25"), ("热给水", (4810, 8410), 90, "De25"),
               ("给水", (5190, 9430), 90, "De20"), ("热给水", (4810, 9430), 90, "De20"),
               ("污水", (4370, 9640), 90, "De75 i=0.026"), ("污水", (4030, 10780), 315, "De110"),
               ("污水", (950, 5080), 45, "De110 i=0.026"), ("废水", (6560, 10690), 0, "De50 i=0.026"),
               ("雨水", (7450, -1050), 0, "De50 i=0.01"), ("凝结", (2980, 350), 0, "De32 i=0.01"))
ARROWS = (("污水", 4500, 10330, 90), ("污水", 5150, 9900, 180), ("污水", 1450, 6150, 270), ("污水", 1750, 5500, 180),
          ("废水", 6350, 11000, 180))
# Fittings: block, layer, x, y, angle, handle.
FITTINGS = tuple((block, f"{kind}_{system}", x, y, 90)
                 for system, x in (("给水", 8350), ("给水", 8650), ("热给水", 8950), ("热给水", 9250))
                 for block, kind, y in (("截止阀", "VALVE", 3860), ("水表", "EQUIP", 4060),
                                        ("止回阀", "VALVE", 4270)))
FITTINGS += (("蝶阀", "VALVE_消防", 10400, 4050, 90, "E02"), ("消火栓箱", "EQUIP_消防", 10400, 7100, 0, "E03"),
             ("灭火器", "EQUIP_消防", 11000, 6900, 0), ("地漏", "EQUIP_排水", 9800, 4000, 0))
FURNITURE = (("床", "家具", 200, 1500, 90), ("床", "家具", 200, 9800, 90), ("沙发", "家具", 7900, 2200, 270),
             ("空调室内机", "空调", 3500, 900, 270), ("空调室内机", "空调", 3700, 600, 90))
TILED = ((3700, 7300, 5650, 11300), (100, 4600, 2350, 7100), (5750, 7300, 8000, 11300),
         (3700, -1450, 8000, -100))
CORE_LINES = tuple(((8200, y), (9350, y)) for y in range(8500, 10600, 260)) + tuple(
    ((9450, y), (10600, y)) for y in range(8500, 10600, 260)) + (
    ((9350, 8500), (9350, 10580)), ((9450, 8500), (9450, 10580)), ((11100, 7500), (12900, 9300)),
    ((11100, 9300), (12900, 7500)),
    ((10800, 9700), (13200, 11300)), ((8775, 8600), (8775, 10300)), ((10025, 8600), (10025, 10300)))

# Blocks: back on the x axis; those in a pipe lie along it. The strokes are the drawing's methods.
SYMBOLS = (
    ("_ArchTick", [("polyline", [(-0.5, -0.5), (0.5, 0.5)], False, 0.15)]),
    ("坐便器", [("box", -210, -190, 210, 0), ("ellipse", (0, -440), (0, -260), 0.72),
             ("ellipse", (0, -430), (0, -180), 0.66)]),
    ("洗脸盆", [("box", -275, -460, 275, 0), ("ellipse", (0, -250), (210, 0), 0.7), ("circle", (0, -250), 22)]),
    ("洗涤盆", [("box", -420, -480, 420, 0), ("box", -370, -430, -30, -120), ("box", 30, -430, 370, -120),
             ("circle", (0, -300), 22)]),
    ("淋浴", [("box", -450, -900, 450, 0), ("line", (-450, -900), (450, 0)), ("line", (-450, 0), (450, -900)),
            ("circle", (0, -150), 70)]),
    ("洗衣机", [("box", -300, -600, 300, 0), ("line", (-300, -120), (300, -120)), ("circle", (0, -350), 200)]),
    ("地漏", [("circle", (0, 0), 70), ("line", (-49, -49), (49, 49)), ("line", (-66, 0), (0, 66)),
            ("line", (0, -66), (66, 0))]),
    ("截止阀", [("polyline", [(-80, -50), (80, 50), (80, -50), (-80, 50)], True), ("circle", (0, 0), 22)]),
    ("止回阀", [("polyline", [(-80, -50), (-80, 50), (80, -50), (80, 50)], True)]),
    ("蝶阀", [("polyline", [(-80, -50), (80, -50), (80, 50), (-80, 50)], True), ("line", (-80, -50), (80, 50)),
            ("circle", (0, 0), 18)]),
    ("水表", [("box", -90, -60, 90, 60), ("solid", (-90, 60), (90, 0), (-90, -60))]),
    ("接口", [("circle", (0, 0), 28), ("line", (0, 28), (0, 60)), ("line", (-40, 60), (40, 60))]),
    ("流向", [("solid", (-110, 45), (110, 0), (-110, -45))]),
    ("消火栓箱", [("box", -350, -200, 350, 0), ("solid", (-350, 0), (350, 0), (-350, -200))]),
    ("灭火器", [("polyline", [(-110, -80), (110, -80), (0, 120)], True), ("line", (-55, 20), (55, 20))]),
    ("空调室内机", [("box", -450, -220, 450, 0), ("line", (-400, -170), (400, -170))]),
    ("床", [("box", -900, -2000, 900, 0), ("box", -800, -450, -100, -100), ("box", 100, -450, 800, -100)]),
    ("沙发", [("box", -1100, -850, 1100, 0), ("box", -950, -850, 950, -250)]))

SHEAR_WALLS = ((10600, 7300, 10800, 11300), (13200, 7300, 13400, 11300), (10800, 9500, 13200, 9700))
BEAMS = ((-150, -125, 8225, -125), (13175, -125, 21550, -125),
         *((-150, y, 21550, y) for y in (4375, 7075, 11300)),
         *((x, -100, x, 11500) for x in (-150, 3475, 7975, 13175, 17675, 21300)))
DETAIL_X, DETAIL_Y = (3600, 5700, 6900, 8100), (7200, 7900, 8900, 9900, 10850, 11400)
MODEL_NOTE = r"注：\P1.未注明的支管管径均为De20。\P2.水表设于公共水管井内，一户一表。\P3.图中管道错开绘制，仅为示意。"

DETAIL_FROZEN = ["轴线", "轴线标注", "PIPE-消防", "PIPE-雨水", "PIPE-凝结", "DIM_凝结", "说明文字"]
# The sheet: legend (block or kind of pipe, layer or system, words), title block, notes.
LEGEND = (("", "给水", "给水管  J"), ("", "热给水", "热水管  R"), ("", "污水", "污水管  W"), ("", "废水", "废水管  F"),
          ("", "雨水", "雨水管  Y"), ("", "消防", "消火栓管  X"), ("", "凝结", "凝结水管  N"), ("立管", "给水", "立管"),
          ("截止阀", "VALVE_给水", "截止阀"), ("止回阀", "VALVE_给水", "止回阀"), ("蝶阀", "VALVE_消防", "蝶阀"),
          ("水表", "EQUIP_给水", "水表"), ("地漏", "EQUIP_排水", "地漏"), ("接口", "VALVE_给水", "用水点接口"),
          ("消火栓箱", "EQUIP_消防", "单栓消火栓箱"), ("灭火器", "EQUIP_消防", "手提式灭火器"))
TITLE_LINES = (((0, 42), (180, 42)), ((0, 28), (180, 28)), ((0, 14), (120, 14)), ((60, 0), (60, 28)),
               ((120, 0), (120, 42)), ((20, 0), (20, 42)), ((80, 0), (80, 28)), ((140, 0), (140, 28)),
               ((120, 14), (180, 14)), ((140, 28), (140, 42)))
TITLE_WORDS = (("工程名称", 10, 35), ("设  计", 10, 21), ("校  对", 70, 21), ("审  核", 10, 7), ("专业负责", 70, 7),
               ("图  号", 130, 35), ("比  例", 130, 21), ("日  期", 130, 7))
TITLE_VALUES = (("单位", 90, 49, 5, "某某建筑设计研究院"), ("工程", 70, 35, 4, "阳光花园1号楼  标准层"), ("设计", 40, 21, 3, "张"),
                ("校对", 100, 21, 3, "李"), ("审核", 40, 7, 3, "王"), ("专业", 100, 7, 3, "赵"),
                ("图号", 160, 35, 3.5, "水施-05"), ("比例", 160, 21, 3, "1:100"), ("日期", 160, 7, 3, "2024.05"))
SHEET_NOTE = (r"{\H1.3x;设计说明}\P1.本图尺寸以毫米计，标高以米计；给水管标高指管中心，排水管标高指管内底。"
              r"\P2.公共水管井内给水、热水立管采用衬塑钢管(DN)，户内给水管采用PP-R管(De)：冷水S4系列，热水S2.5系列。"
              r"\P3.排水管采用PVC-U管(De)，未注明的横支管坡度为0.026；地漏水封深度不小于50mm。"
              r"\P4.给水管沿吊顶内敷设，冷、热水管平行敷设，间距120；支管沿墙嵌装至用水点。"
              r"\P5.管径对照：DN15-De20，DN20-De25，DN25-De32；排水DN50-De50，DN75-De75，DN100-De110。"
              r"\P6.消火栓栓口距地1.10m，箱内配DN65消火栓一个、25m衬胶水带一条、水枪一支。"
              r"\P7.JL给水立管，RL热水立管，WL污水立管，FL废水立管，YL雨水立管，XL消火栓立管，NL凝结水立管。")


def wall_outlines(walls, openings):
    """The lines round everything that is wall: the walls laid together, the openings cut out."""
    solid = [(min(x0, x1) - t / 2, min(y0, y1) - t / 2, max(x0, x1) + t / 2, max(y0, y1) + t / 2)
             for x0, y0, x1, y1, t in walls]
    xs, ys = (sorted({v for r in solid + openings for v in (r[i], r[i + 2])}) for i in (0, 1))

    def inside(x, y, rectangles):
        return any(r[0] < x < r[2] and r[1] < y < r[3] for r in rectangles)
    grid = [[inside((x + x2) / 2, (y + y2) / 2, solid) and not inside((x + x2) / 2, (y + y2) / 2, openings)
             for y, y2 in zip(ys, ys[1:])] for x, x2 in zip(xs, xs[1:])]

    def cell(i, j):
        return 0 <= i < len(xs) - 1 and 0 <= j < len(ys) - 1 and grid[i][j]
    for across, along, at in ((xs, ys, lambda i, j: (i, j)), (ys, xs, lambda i, j: (j, i))):
        for i, v in enumerate(across):
            begun = None
            for j, w in enumerate(along):
                # The side on which the wall stands; a line ends where that changes.
                side = (cell(*at(i, j)), cell(*at(i - 1, j)))
                if begun and side != begun[1]:
                    line = (v, begun[0]), (v, w)
                    yield line if across is xs else tuple(p[::-1] for p in line)
                    begun = None
                if not begun and side[0] != side[1]:
                    begun = w, side


def width_of(block):
    """The width of a door or window, from its name."""
    return int(block.lstrip("CMDTL"))


def reserved(d, names):
    """The reserved handle at the end of a table's row; the mirrored flat has none."""
    return names[0] if names and not d.mirrored else None


def define_blocks(d):
    """The doors and windows by their widths, then the symbols."""
    widths = {name: width_of(name) for name in sorted({row[0] for row in FLAT_OPENINGS + CORE_OPENINGS})}
    for name, w in widths.items():
        d.space = d.block(name)
        if name[0] == "C":
            for y in (-100, -33, 33, 100):
                d.line("0", (0, y), (w, y))
        elif name[0] == "M":
            d.box("0", 0, 0, 40, w)
            d.arc("0", (0, 0), w, 0, 90)
        else:
            d.box("0", 0, -45, w / 2 + 50, -5)
            d.box("0", w / 2 - 50, 5, w, 45)
    for name, strokes in SYMBOLS:
        d.space = d.block(name)
        for kind, *where in strokes:
            getattr(d, kind)("0", *where)
    d.space = d.block("图签", 2)
    d.box("0", 0, 0, 180, 56, width=0.7)
    for line in TITLE_LINES:
        d.line("0", *line)
    for string, x, y in TITLE_WORDS:
        d.text("0", (x, y), 2.5, string)
    for tag, x, y, height, string in TITLE_VALUES:
        d.attribute(tag, (x, y), height, string)
    d.space = d.block("轴线编号", 2)
    d.circle("0", (0, 0), 400)
    d.attribute("编号", (0, 0), 400, "1")


def draw_openings(d, openings):
    for block, way, wall, start, hinge, swing, *handle in openings:
        begin = start if hinge > 0 else start + width_of(block)
        place, angle = ((begin, wall), 0) if way == "h" else ((wall, begin), 90)
        d.insert(block, "门窗", place, angle, hinge, swing, handle=reserved(d, handle))


def draw_pipes(d, pipes):
    """Pipes with their data (system and size), sizes beside them, and connections at the fixtures' walls."""
    for system, size, pts, label, *handle in pipes:
        layer = "给水管线-旧" if system == "旧" else f"PIPE-{system}"
        system = "给水" if system == "旧" else system
        width = int("".join(c for c in size if c.isdigit()))
        data = [(1001, "PIPE_DATA"), (1000, system), (1000, size), (1070, width)]
        if len(pts) == 2:
            d.line(layer, *pts, handle=reserved(d, handle), xdata=data)
        else:
            d.polyline(layer, pts, handle=reserved(d, handle), xdata=data)
        if label:
            (x0, y0), (x1, y1) = pts[label[0]:label[0] + 2]
            x, y, side = (x0 + x1) / 2, (y0 + y1) / 2, 155 * label[1]
            place, angle = ((x + side, y), 90) if x0 == x1 else ((x, y + side), 0)
            d.text(f"DIM_{system}", place, 200, size, angle)
        x, y = pts[-1]
        if system in ("给水", "热给水") and (x == 5590 or y in (7040, 11240)):
            d.insert("接口", f"VALVE_{system}", (x, y), 270 if x == 5590 else 0)


def draw_risers(d, risers):
    for left, right, system, x, y, dx, dy, *handle in risers:
        d.circle(f"VPIPE-{system}", (x, y), 55, handle=reserved(d, handle))
        d.line(f"DIM_{system}", (x, y), (x + dx, y + dy))
        out = 620 if dx > 0 else -620
        d.line(f"DIM_{system}", (x + dx, y + dy), (x + dx + out, y + dy))
        d.text(f"DIM_{system}", (x + dx + out / 2, y + dy + 160), 250, right if d.mirrored else left)


def start(layout_name):
    """A drawing with what both files have."""
    d = Drawing(layout_name)
    for row in LINETYPES:
        d.linetype(*row)
    d.layer("0", 7)
    d.style("Standard", "txt.shx")
    d.style("HZTXT", "gbenor.shx", "gbcbig.shx", 0.7)
    d.style("宋体", "simsun.ttf")
    d.record("DIMSTYLE", "Standard", "AcDbDimStyleTableRecord", [(70, 0)])
    return d


def draw_plan(d):
    """Both flats, then the core."""
    walls = [*FLAT_WALLS, *CORE_WALLS]
    walls += [(MIRROR_X - x0, y0, MIRROR_X - x1, y1, thickness) for x0, y0, x1, y1, thickness in FLAT_WALLS]
    cuts = []
    for rows, mirrors in ((FLAT_OPENINGS, (False, True)), (CORE_OPENINGS, (False,))):
        for d.mirrored in mirrors:
            for block, way, wall, begin, *rest in rows:
                end = begin + width_of(block)
                (x0, y0), (x1, y1) = d.at(*(((begin, wall - 101), (end, wall + 101)) if way == "h" else
                                            ((wall - 101, begin), (wall + 101, end))))
                cuts.append((min(x0, x1), y0, max(x0, x1), y1))
    d.mirrored = False
    for i, line in enumerate(wall_outlines(walls, cuts)):
        d.line("墙体", *line, handle=None if i else "A01")
    for d.mirrored in (False, True):
        draw_openings(d, FLAT_OPENINGS)
        for name, x, y, height, *handle in FLAT_ROOMS:
            d.text("房间名称", (x, y), height, name, handle=reserved(d, handle))
        for name, x, y, angle, *handle in FIXTURES:
            d.insert(name, "EQUIP_排水" if name == "地漏" else "洁具", (x, y), angle, handle=reserved(d, handle))
        for duct in DUCTS:
            d.box("墙体", *duct)
        for name, layer, x, y, angle in FURNITURE:
            d.insert(name, layer, (x, y), angle)
        for x0, y0, x1, y1 in TILED:
            for x in range(x0 + 300, x1, 300):
                d.line("地面铺装", (x, y0), (x, y1))
            for y in range(y0 + 300, y1, 300):
                d.line("地面铺装", (x0, y), (x1, y))
        draw_pipes(d, FLAT_PIPES)
        draw_risers(d, FLAT_RISERS)
        for system, place, angle, string in FLAT_LABELS:
            angle = -angle % 360 if d.mirrored and angle != 90 else angle
            d.text(f"DIM_{system}", place, 160, string, angle)
        for system, x, y, angle in ARROWS:
            d.insert("流向", f"DIM_{system}", (x, y), angle)
    d.mirrored = False
    draw_openings(d, CORE_OPENINGS)
    for name, x, y, height in CORE_ROOMS:
        d.text("房间名称", (x, y), height, name)
    draw_pipes(d, CORE_PIPES)
    draw_risers(d, CORE_RISERS)
    for name, layer, x, y, angle, *handle in FITTINGS:
        d.insert(name, layer, (x, y), angle, handle=reserved(d, handle))
    for line in CORE_LINES:
        d.line("楼梯电梯", *line)
    d.box("楼梯电梯", 11100, 7500, 12900, 9300)
    for string, x in (("上", 8775), ("下", 10025)):
        d.text("楼梯电梯", (x, 8250), 200, string)


def draw_axes(d):
    """Axes with their bubbles on both ends and two rows of dimensions."""
    for i, (axes, other) in enumerate(((AXES_X, AXES_Y), (AXES_Y, AXES_X))):
        low, high = other[0][1] - 3300 + 1200 * i, other[-1][1] + (1300 if i == 0 else 2100)
        for n, (name, at) in enumerate(axes):
            ends = [(at, low), (at, high)] if i == 0 else [(low, at), (high, at)]
            inner = [(at, low + 400), (at, high - 400)]
            d.line("轴线", *[p[::-1] if i else p for p in inner], handle=None if i or n else "A06")
            for place in ends:
                d.insert("轴线编号", "轴线标注", place, attributes=[("编号", place, 400, name)])
        for (_, a), (_, b), row in [(*pair, 0) for pair in zip(axes, axes[1:])] + [(axes[0], axes[-1], 500)]:
            p, q = ((0, a), (0, b)) if i else ((a, 0), (b, 0))
            d.dimension("轴线标注", p, q, low + 1300 - row - 350 * i, vertical=bool(i))


def draw_detail(d):
    """What only the larger scale has room for: where the fixtures stand."""
    for a, b in zip(DETAIL_Y, DETAIL_Y[1:]):
        d.dimension("大样标注", (3600, a), (3600, b), 3350, vertical=True, scale=0.5)
    for a, b in zip(DETAIL_X, DETAIL_X[1:]):
        d.dimension("大样标注", (a, 11400), (b, 11400), 11750, scale=0.5)


def draw_sheet(d):
    """An A3 sheet: the plan at 1:100, wet rooms at 1:50, legend, notes and title block."""
    d.space = d.paper
    d.viewport(1, "视口", (210, 148.5), 440, 310, (210, 148.5), 310)
    d.viewport(2, "视口", (163, 195), 272, 190, (10700, 4750), 19000, ["大样标注"], handle="B01")
    d.viewport(3, "视口", (358, 228.5), 110, 125, (5750, 9350), 6250, DETAIL_FROZEN, handle="B02")
    d.box("图框", 0, 0, 420, 297)
    d.box("图框", 25, 5, 415, 292, width=1.0)
    for string, x, y, width in (("标准层给排水平面图  1:100", 163, 93, 75), ("卫生间、厨房给排水大样图  1:50", 358, 161, 80),
                                ("图  例", 358, 151, 20)):
        d.text("图框", (x, y), 5 if width == 75 else 4, string)
        d.line("图框", (x - width / 2, y - 4), (x + width / 2, y - 4))
    for i, (kind, system, string) in enumerate(LEGEND):
        x, y = 306 + 55 * (i % 2), 141 - 7 * (i // 2)
        if kind == "":
            d.line(f"PIPE-{system}", (x, y), (x + 14, y), more=[(48, 0.02)])
        elif kind == "立管":
            d.circle(f"VPIPE-{system}", (x + 7, y), 1)
        else:
            d.insert(kind, system, (x + 7, y), 0, 0.02, 0.02)
        d.text("图框", (x + 18, y - 1.25), 2.5, string, centred=False)
    d.mtext("图框", (30, 84), 3, 195, SHEET_NOTE, 1.15)
    d.insert("图签", "图框", (235, 5), attributes=[(tag, (235 + x, 5 + y), h, string)
                                               for tag, x, y, h, string in TITLE_VALUES])
    d.space = d.model


def storey():
    """The plan with its sheet."""
    d = start("给排水平面图")
    d.linetype("storey_base|CENTER", LINETYPES[0][1], LINETYPES[0][2], 48)
    d.linetype("storey_base|DASHED", LINETYPES[1][1], LINETYPES[1][2], 48)
    for name, colour, linetype, weight in SYSTEMS:
        d.layer(f"PIPE-{name}", colour, linetype, weight)
        d.layer(f"VPIPE-{name}", colour, "Continuous", 35)
        d.layer(f"DIM_{name}", colour)
    for row in LAYERS:
        d.layer(*row)
    for name, colour, linetype, weight in BASE_LAYERS:
        dependent = "" if linetype == "Continuous" else "storey_base|"
        d.layer(f"storey_base|{name}", colour, dependent + linetype, weight, "o" if name == "梁" else "", 48)
    d.record("APPID", "PIPE_DATA", "AcDbRegAppTableRecord", [(70, 0)])
    define_blocks(d)
    d.block("storey_base", 4, "storey_base.dxf")
    d.dimension_style(d.blocks["_ArchTick"])
    d.space = d.model
    d.insert("storey_base", "外部参照", (0, 0), handle="A07")
    draw_axes(d)
    draw_plan(d)
    draw_detail(d)
    d.text("DIM_给水", (6400, 6900), 200, "旧管径 DN32", handle="A08", more=[(60, 1)])
    d.mtext("说明文字", (8500, 1900), 200, 4400, MODEL_NOTE, handle="A09")
    draw_sheet(d)
    d.view(10700.0, 4800.0, 18000.0)
    d.standard_objects((420.0, 297.0))
    folder = d.dictionary("STOREY_DATA", d.root, "D01")
    data = tags("100=AcDbXrecord 280=1 1=标准层 1=3F~18F 40=2900.0 70=2 330=A07")
    d.enter(folder, "本层", d.object("XRECORD", folder, data, "D02"))
    return d


def base():
    """The structure: columns, the core's shear walls, beams, and its own axes."""
    d = start("布局1")
    for row in BASE_LAYERS:
        d.layer(*row)
    d.dimension_style(d.block("_ArchTick"))
    d.space = d.model
    xs, ys = [x for _, x in AXES_X], [y for _, y in AXES_Y]
    for x in xs:
        for y in ys:
            d.line("轴线", (x - 600, y), (x + 600, y))
            d.line("轴线", (x, y - 600), (x, y + 600))
    columns = [("柱", x - 150, y - 150, x + 150, y + 150) for x in xs if x != 10700 for y in ys]
    for layer, x0, y0, x1, y1 in columns + [("剪力墙", *wall) for wall in SHEAR_WALLS]:
        d.box(layer, x0, y0, x1, y1)
        d.solid(layer, (x0, y1), (x1, y1), (x0, y0), (x1, y0))
    for x0, y0, x1, y1 in BEAMS:
        for dx, dy in ((0, 0), (250, 0) if x0 == x1 else (0, 250)):
            d.line("梁", (x0 + dx, y0 + dy), (x1 + dx, y1 + dy))
    d.view(10700.0, 5700.0, 18000.0)
    d.standard_objects((420.0, 297.0))
    return d


def main():
    folder = pathlib.Path(__file__).resolve().parent
    storey().write(folder / "storey.dxf", low=(-2500.0, -3800.0), high=(23900.0, 13200.0),
                   linetype_scale=15.0)
    base().write(folder / "storey_base.dxf", low=(-600.0, -600.0), high=(22000.0, 12000.0),
                 linetype_scale=50.0)


if __name__ == "__main__":
    main()
