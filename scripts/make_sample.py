#!/usr/bin/env python3
"""Draws examples/plan.dxf, the ground floor of a small house, and the picture that stands in its title block.

    scripts/make_sample.py [FOLDER]         (examples/ where no folder is named)

Both files are our own design and come out the same at every run. Lengths are millimetres, x runs east, y
north.
"""
import math
import pathlib
import struct
import sys

LAYERS = [  # name, colour index (negative: off), line type, width in 1/100 mm
    ("0", 7, "CONTINUOUS", -3),
    ("WALLS", 7, "CONTINUOUS", 50),
    ("DOORS", 30, "CONTINUOUS", 25),
    ("WINDOWS", 4, "CONTINUOUS", 25),
    ("FURNITURE", 8, "CONTINUOUS", 13),
    ("SANITARY", 5, "CONTINUOUS", 13),
    ("GARDEN", 3, "CONTINUOUS", 18),
    ("AXES", 1, "DASHDOT", 13),
    ("DIMENSIONS", 2, "CONTINUOUS", 13),
    ("TEXT", 7, "CONTINUOUS", 18),
    ("LEVELS", 6, "DOT", 13),
    ("ROOF", -9, "DASHED", 35),
    ("TITLE", 7, "CONTINUOUS", 35),
]
LINE_TYPES = [  # name, shape in words, pattern
    ("CONTINUOUS", "Solid line", []),
    ("DASHED", "__ __ __ __", [500.0, -250.0]),
    ("DOT", ". . . . . .", [0.0, -250.0]),
    ("DASHDOT", "__ . __ . __", [500.0, -250.0, 0.0, -250.0]),
]
QUARTER = math.tan(math.radians(90 / 4))  # bulge of a quarter circle
HALF = 1.0


class Dxf:
    """Group codes and values of one file, and the handles given out in it."""

    def __init__(self):
        self.lines = []
        self.next_handle = 0x100

    def handle(self):
        self.next_handle += 1
        return f"{self.next_handle:X}"

    def groups(self, *pairs):
        for code, value in pairs:
            self.lines.append(f"{code:3d}")
            self.lines.append(f"{round(value, 6):g}" if isinstance(value, float) and abs(value) < 1e5
                              else str(round(value, 4) if isinstance(value, float) else value))

    def point(self, base, x, y, z=0.0):
        self.groups((10 + base, float(x)), (20 + base, float(y)), (30 + base, float(z)))

    def section(self, name, body):
        self.groups((0, "SECTION"), (2, name))
        body()
        self.groups((0, "ENDSEC"))

    def table(self, name, handle, rows):
        """rows: (kind's subclass, name, flags, further groups, handle)"""
        self.groups((0, "TABLE"), (2, name), (5, handle), (330, "0"), (100, "AcDbSymbolTable"),
                    (70, len(rows)))
        if name == "DIMSTYLE":
            self.groups((100, "AcDbDimStyleTable"))
        for subclass, row, flags, further, row_handle in rows:
            self.groups((0, name), (105 if name == "DIMSTYLE" else 5, row_handle or self.handle()),
                        (330, handle), (100, "AcDbSymbolTableRecord"), (100, subclass), (2, row))
            if flags is not None:
                self.groups((70, flags))
            self.groups(*further)
        self.groups((0, "ENDTAB"))


class Space:
    """Entities of model space or of one block."""

    def __init__(self, dxf, owner):
        self.dxf, self.owner = dxf, owner

    def entity(self, kind, layer, subclass, *look):
        handle = self.dxf.handle()
        self.dxf.groups((0, kind), (5, handle), (330, self.owner), (100, "AcDbEntity"), (8, layer), *look,
                        (100, subclass))
        return handle

    def line(self, layer, x1, y1, x2, y2, *look):
        self.entity("LINE", layer, "AcDbLine", *look)
        self.dxf.point(0, x1, y1)
        self.dxf.point(1, x2, y2)

    def circle(self, layer, x, y, radius, *look):
        self.entity("CIRCLE", layer, "AcDbCircle", *look)
        self.dxf.point(0, x, y)
        self.dxf.groups((40, float(radius)))

    def arc(self, layer, x, y, radius, start, end, *look):
        self.arc_circle(layer, x, y, radius, look)
        self.dxf.groups((100, "AcDbArc"), (50, float(start)), (51, float(end)))

    def arc_circle(self, layer, x, y, radius, look):
        self.entity("ARC", layer, "AcDbCircle", *look)
        self.dxf.point(0, x, y)
        self.dxf.groups((40, float(radius)))

    def path(self, layer, vertices, *look, closed=True):
        """A light polyline; a vertex is (x, y) or (x, y, bulge)."""
        self.entity("LWPOLYLINE", layer, "AcDbPolyline", *look)
        self.dxf.groups((90, len(vertices)), (70, 1 if closed else 0))
        for x, y, *bulge in vertices:
            self.dxf.groups((10, float(x)), (20, float(y)))
            if bulge:
                self.dxf.groups((42, float(bulge[0])))

    def box(self, layer, x1, y1, x2, y2, *look):
        self.path(layer, [(x1, y1), (x2, y1), (x2, y2), (x1, y2)], *look)

    def old_path(self, layer, vertices, closed, *look):
        """A POLYLINE with its VERTEX objects; a vertex is (x, y) or (x, y, bulge)."""
        owner = self.entity("POLYLINE", layer, "AcDb2dPolyline", *look)
        self.dxf.groups((66, 1))
        self.dxf.point(0, 0, 0)
        self.dxf.groups((70, 1 if closed else 0))
        for x, y, *bulge in vertices:
            self.dxf.groups((0, "VERTEX"), (5, self.dxf.handle()), (330, owner), (100, "AcDbEntity"),
                            (8, layer), (100, "AcDbVertex"), (100, "AcDb2dVertex"))
            self.dxf.point(0, x, y)
            if bulge:
                self.dxf.groups((42, float(bulge[0])))
        self.dxf.groups((0, "SEQEND"), (5, self.dxf.handle()), (330, owner), (100, "AcDbEntity"), (8, layer))

    def corners(self, kind, layer, points, *look):
        """SOLID or 3DFACE over four (x, y[, z])."""
        self.entity(kind, layer, "AcDbTrace" if kind == "SOLID" else "AcDbFace", *look)
        for base, corner in enumerate(points):
            self.dxf.point(base, *corner)

    def survey_point(self, layer, x, y, z):
        self.entity("POINT", layer, "AcDbPoint")
        self.dxf.point(0, x, y, z)

    def text(self, layer, x, y, height, words, across=0, up=0, turn=0.0, *look):
        """across: 0 left, 1 centre, 2 right; up: 0 baseline, 1 bottom, 2 middle, 3 top."""
        self.entity("TEXT", layer, "AcDbText", *look)
        self.dxf.point(0, x, y)
        self.dxf.groups((40, float(height)), (1, words), (50, float(turn)), (7, "STANDARD"), (72, across))
        if across or up:
            self.dxf.point(1, x, y)
        self.dxf.groups((100, "AcDbText"), (73, up))

    def mtext(self, layer, x, y, height, width, words, *look):
        """Hung by its top left corner."""
        self.entity("MTEXT", layer, "AcDbMText", *look)
        self.dxf.point(0, x, y)
        self.dxf.groups((40, float(height)), (41, float(width)), (71, 1), (72, 1), (1, words),
                        (7, "STANDARD"))

    def insert(self, layer, block, x, y, sx=1.0, sy=None, turn=0.0, array=None):
        """array: (rows and columns alike, spacing)"""
        self.entity("INSERT", layer, "AcDbBlockReference")
        self.dxf.groups((2, block))
        self.dxf.point(0, x, y)
        self.dxf.groups((41, float(sx)), (42, float(abs(sx) if sy is None else sy)), (43, 1.0),
                        (50, float(turn)))
        if array:
            count, spacing = array
            self.dxf.groups((70, count), (71, count), (44, float(spacing)), (45, float(spacing)))

    def image(self, layer, x, y, width, pixels, definition):
        handle = self.entity("IMAGE", layer, "AcDbRasterImage")
        self.dxf.groups((90, 0))
        self.dxf.point(0, x, y)
        self.dxf.point(1, width / pixels, 0)
        self.dxf.point(2, 0, width / pixels)
        self.dxf.groups((13, float(pixels)), (23, float(pixels)), (340, definition), (70, 7), (280, 0),
                        (281, 50), (282, 50), (283, 0), (71, 1), (91, 2), (14, -0.5), (24, -0.5),
                        (14, pixels - 0.5), (24, pixels - 0.5))
        return handle


# --- blocks -----------------------------------------------------------------------------------------------

def draw_door(block):
    """One unit wide, hinged at the base point, opening upwards by a quarter turn."""
    block.box("0", 0, 0, 0.05, 1)
    block.arc("0", 0, 0, 1, 0, 90, (6, "DASHED"))
    block.line("0", 0, 0, 1, 0, (62, 8))


def draw_window(block):
    """One unit wide in a wall one unit thick."""
    block.box("0", 0, 0, 1, 1)
    block.line("0", 0, 0.4, 1, 0.4)
    block.line("0", 0, 0.6, 1, 0.6)


def draw_chair(block):
    """Seat of 450 with a round back towards +y; base point in the middle of the seat."""
    block.path("0", [(-200, -225), (200, -225), (225, 200), (-225, 200)])
    block.path("0", [(-225, 200), (225, 200, 0.25), (-225, 200)], closed=False)


def draw_table(block):
    """1600 by 900 with rounded corners and six chairs; based on its south-west corner, (500, 500)."""
    w, d, r = 1600, 900, 120
    block.path("0", [(500 + r, 500), (500 + w - r, 500, QUARTER), (500 + w, 500 + r),
                     (500 + w, 500 + d - r, QUARTER), (500 + w - r, 500 + d), (500 + r, 500 + d, QUARTER),
                     (500, 500 + d - r), (500, 500 + r, QUARTER)])
    for x in (900, 1700):
        block.insert("0", "CHAIR", x, 1550)
        block.insert("0", "CHAIR", x, 350, turn=180)
    block.insert("0", "CHAIR", 2250, 950, turn=270)
    block.insert("0", "CHAIR", 350, 950, turn=90)


def draw_bed(block):
    block.box("0", 0, 0, 1600, 2050)
    block.path("0", [(0, 1400), (1600, 1400)], closed=False)
    for x in (100, 850):
        block.path("0", [(x, 1600), (x + 650, 1600, 0.2), (x + 650, 1950), (x, 1950, 0.2)])


def draw_burner(block):
    block.circle("0", 0, 0, 90)
    block.circle("0", 0, 0, 40, (420, 0xB03020))


def draw_tree(block):
    """One unit of radius: a crown of eight arcs round a trunk."""
    for step in range(8):
        turn = math.radians(45 * step)
        block.arc("0", 0.75 * math.cos(turn), 0.75 * math.sin(turn), 0.32, 45 * step - 80, 45 * step + 80)
    block.circle("0", 0, 0, 0.12, (420, 0x7A5230))


def draw_tick(block):
    block.line("0", -80, -80, 80, 80, (370, 50))


BLOCKS = [  # name, base point, what it shows
    ("DOOR", (0, 0), draw_door),
    ("WINDOW", (0, 0), draw_window),
    ("CHAIR", (0, 0), draw_chair),
    ("TABLE", (500, 500), draw_table),
    ("BED", (0, 0), draw_bed),
    ("BURNER", (0, 0), draw_burner),
    ("TREE", (0, 0), draw_tree),
    ("TICK", (0, 0), draw_tick),
]

# --- the house --------------------------------------------------------------------------------------------

WIDTH, DEPTH, OUTER, INNER = 11000, 8000, 300, 120


def wall_run(space, along_x, at, thickness, ends, openings):
    """A wall from ends[0] to ends[1] broken by openings (from, width)."""
    start = ends[0]
    for place, width in sorted(openings) + [(ends[1], 0)]:
        if along_x:
            space.box("WALLS", start, at, place, at + thickness)
        else:
            space.box("WALLS", at, start, at + thickness, place)
        start = place + width


def draw_walls(space):
    wall_run(space, True, 0, OUTER, (0, WIDTH), [(1200, 2400), (5200, 1000), (8000, 1600)])
    wall_run(space, True, DEPTH - OUTER, OUTER, (0, WIDTH), [(1400, 1800), (5500, 800), (8200, 1800)])
    wall_run(space, False, 0, OUTER, (OUTER, DEPTH - OUTER), [(1300, 1800)])
    wall_run(space, False, WIDTH - OUTER, OUTER, (OUTER, DEPTH - OUTER), [(1200, 1800)])
    wall_run(space, True, 4200, INNER, (OUTER, WIDTH - OUTER), [(3200, 900), (5500, 800), (8000, 900)])
    wall_run(space, False, 4600, INNER, (4320, DEPTH - OUTER), [])
    wall_run(space, False, 7000, INNER, (4320, DEPTH - OUTER), [])
    wall_run(space, False, 7000, INNER, (OUTER, 4200), [(2400, 900)])
    for x, y in ((0, 0), (WIDTH - OUTER, 0), (0, DEPTH - OUTER), (WIDTH - OUTER, DEPTH - OUTER)):
        space.corners("SOLID", "WALLS", [(x, y), (x + OUTER, y), (x, y + OUTER), (x + OUTER, y + OUTER)])


def draw_openings(space):
    for x, y, width in ((1200, 0, 2400), (8000, 0, 1600), (1400, DEPTH - OUTER, 1800),
                        (5500, DEPTH - OUTER, 800), (8200, DEPTH - OUTER, 1800)):
        space.insert("WINDOWS", "WINDOW", x, y, width, OUTER)
    space.insert("WINDOWS", "WINDOW", OUTER, 1300, 1800, OUTER, 90)
    space.insert("WINDOWS", "WINDOW", WIDTH, 1200, 1800, OUTER, 90)
    space.insert("DOORS", "DOOR", 5200, OUTER, 1000)
    space.insert("DOORS", "DOOR", 4100, 4320, -900, 900)
    space.insert("DOORS", "DOOR", 5500, 4320, 800)
    space.insert("DOORS", "DOOR", 8000, 4320, 900)
    space.insert("DOORS", "DOOR", 7120, 2400, 900, -900, 90)


def draw_furniture(space):
    space.insert("FURNITURE", "TABLE", 1500, 1700, turn=12)
    space.insert("FURNITURE", "BED", 600, 5500)
    space.insert("FURNITURE", "BED", 10650, 6500, turn=180)
    space.path("FURNITURE", [(6950, 600), (6950, 2200), (6500, 2200, QUARTER), (6300, 2000),
                             (6300, 800, QUARTER), (6500, 600)], (420, 0x6E7F52))
    space.box("FURNITURE", 9200, 3550, 10600, 4150)
    space.insert("FURNITURE", "BURNER", 9400, 3720, array=(2, 260))
    space.circle("SANITARY", 10300, 3850, 180)
    space.path("SANITARY", [(4800, 6900), (6400, 6900, HALF), (6400, 7600), (4800, 7600)])
    space.circle("SANITARY", 5000, 7250, 40)
    space.path("SANITARY", [(6650, 4700), (6950, 4700), (6950, 5200), (6650, 5200, HALF)])
    space.arc("SANITARY", 5000, 5600, 220, 270, 90)
    space.line("SANITARY", 5000, 5380, 5000, 5820)


def draw_garden(space):
    space.old_path("GARDEN", [(5200, -100, -0.2), (4300, -3200), (5400, -3200, 0.2), (6200, -100),
                              (5200, -100)], False, (420, 0xA08050))
    space.old_path("GARDEN", [(-2500, -3200), (13500, -3200), (13500, 10200), (-2500, 10200)], True,
                   (6, "DASHDOT"))
    for x, y, wide, high in ((-1300, 9000, 900, 900), (12500, 9200, 700, 700), (12400, -1800, 1000, 800),
                             (-1200, -2000, 1000, 800)):
        space.insert("GARDEN", "TREE", x, y, wide, high, 15)
    for x, y, z in ((-2500, -3200, -0.35), (13500, -3200, -0.42), (13500, 10200, 0.18), (-2500, 10200, 0.1)):
        space.survey_point("LEVELS", x, y, z * 1000)
        space.text("LEVELS", x + 150, y + 150, 180, f"{z:+.2f}")


def draw_axes(space):
    for mark, x in (("A", 150), ("B", 4660), ("C", 7060), ("D", 10850)):
        space.line("AXES", x, -700, x, 8700)
        space.circle("AXES", x, 9000, 300)
        space.text("AXES", x, 9000, 280, mark, 1, 2)
    for mark, y in (("1", 150), ("2", 4260), ("3", 7850)):
        space.line("AXES", -700, y, 11700, y)
        space.circle("AXES", -1000, y, 300)
        space.text("AXES", -1000, y, 280, mark, 1, 2)


def draw_dimensions(space):
    places = [150, 4660, 7060, 10850]
    space.line("DIMENSIONS", places[0] - 200, -900, places[-1] + 200, -900)
    for x in places:
        space.insert("DIMENSIONS", "TICK", x, -900)
    for left, right in zip(places, places[1:]):
        space.text("DIMENSIONS", (left + right) / 2, -860, 200, f"{(right - left) / 1000:.2f}", 1, 1)
    places = [150, 4260, 7850]
    space.line("DIMENSIONS", 12000, places[0] - 200, 12000, places[-1] + 200)
    for y in places:
        space.insert("DIMENSIONS", "TICK", 12000, y)
    for low, high in zip(places, places[1:]):
        space.text("DIMENSIONS", 11960, (low + high) / 2, 200, f"{(high - low) / 1000:.2f}", 1, 1, 90)


def draw_words(space):
    for x, y, name, area in ((3600, 700, "LIVING", 26.13), (8850, 2100, "KITCHEN", 13.96),
                             (3300, 6000, "BEDROOM 1", 14.53), (5860, 6300, "BATH", 7.71),
                             (8130, 6900, "BEDROOM 2", 12.1)):
        space.text("TEXT", x, y, 260, name, 1, 0)
        space.text("TEXT", x, y - 320, 180, f"{area:.2f} m\u00b2", 1, 0)
    space.text("LEVELS", 5700, 1500, 180, "%%p0.00", 1, 2)
    space.mtext("TEXT", -2400, -3700, 160, 4500,
                "{\\FArial|b0|i0|c0|p34;Outer walls: brick, 300 mm}\\PInner walls: plasterboard"
                "\\PRoof pitch 25%%d")


def draw_roof(space):
    west, east, south, north, ridge, height = -500, WIDTH + 500, -500, DEPTH + 500, DEPTH / 2, 4500
    hip = (north - south) / 2
    left, right = (west + hip, ridge, height), (east - hip, ridge, height)
    sw, se, ne, nw = (west, south, 2700), (east, south, 2700), (east, north, 2700), (west, north, 2700)
    for face in ((sw, se, right, left), (se, ne, right, right), (ne, nw, left, right), (nw, sw, left, left)):
        space.corners("3DFACE", "ROOF", face)


def draw_title(space, definition):
    space.box("TITLE", 7500, -6000, 13500, -3600)
    space.line("TITLE", 7500, -4600, 13500, -4600)
    space.text("TITLE", 7800, -4250, 380, "SMALL HOUSE")
    space.text("TITLE", 9000, -5000, 220, "Ground floor, 1:50")
    space.text("TITLE", 13300, -5700, 160, "Sheet 1", 2, 1)
    space.corners("SOLID", "TITLE", [(12600, -4400), (12900, -4500), (12900, -3700), (12900, -3700)])
    space.corners("SOLID", "TITLE", [(13200, -4400), (12900, -4500), (12900, -3700), (12900, -3700)], (62, 8))
    space.text("TITLE", 12900, -3680, 160, "N", 1, 1)
    return space.image("TITLE", 7700, -5800, 1000, PIXELS, definition)


# --- the file ---------------------------------------------------------------------------------------------

PIXELS = 32


def picture():
    """The mark in the title block, 32 by 32 pixels of 24 bits as BMP: a gable over a door in a ring."""
    def colour(x, y):
        dx, dy = x - 15.5, y - 15.5
        if 13 <= math.hypot(dx, dy) < 15.5:
            return (160, 60, 30)
        if -1 <= dy <= 9 and abs(dx) <= 6:
            return (255, 255, 255) if abs(dx) < 2 and dy > 3 else (90, 110, 60)
        return (150, 40, 40) if -8 <= dy < -1 and abs(dx) < dy + 9 else (255, 255, 255)

    rows = b"".join(bytes(colour(x, y)) for y in reversed(range(PIXELS)) for x in range(PIXELS))
    header = struct.pack("<2sIHHI", b"BM", 54 + len(rows), 0, 0, 54)
    form = struct.pack("<IiiHHIIiiII", 40, PIXELS, PIXELS, 1, 24, 0, len(rows), 3780, 3780, 0, 0)
    return header + form + rows


def write_tables(dxf, records):
    line_types = [("AcDbLinetypeTableRecord", name, 0, [(3, shape), (72, 65), (73, len(dashes)),
                   (40, float(sum(map(abs, dashes))))]
                   + [g for d in dashes for g in ((49, d), (74, 0))], None)
                  for name, shape, dashes in [("BYBLOCK", "", []), ("BYLAYER", "", [])] + LINE_TYPES]
    layers = [("AcDbLayerTableRecord", name, 0, [(62, colour), (6, line_type), (370, width)], None)
              for name, colour, line_type, width in LAYERS]
    view = [(10, 0.0), (20, 0.0), (11, 1.0), (21, 1.0), (12, 5500.0), (22, 2100.0), (13, 0.0), (23, 0.0),
            (14, 10.0), (24, 10.0), (15, 10.0), (25, 10.0), (16, 0.0), (26, 0.0), (36, 1.0), (17, 0.0),
            (27, 0.0), (37, 0.0), (40, 17000.0), (41, 1.0), (42, 50.0), (43, 0.0), (44, 0.0), (50, 0.0),
            (51, 0.0)]
    font = [(40, 0.0), (41, 1.0), (50, 0.0), (71, 0), (42, 200.0), (3, "arial.ttf"), (4, "")]
    dxf.table("VPORT", "8", [("AcDbViewportTableRecord", "*ACTIVE", 0, view, None)])
    dxf.table("LTYPE", "5", line_types)
    dxf.table("LAYER", "2", layers)
    dxf.table("STYLE", "3", [("AcDbTextStyleTableRecord", "STANDARD", 0, font, None)])
    dxf.table("VIEW", "6", [])
    dxf.table("UCS", "7", [])
    dxf.table("APPID", "9", [("AcDbRegAppTableRecord", "ACAD", 0, [], None)])
    dxf.table("DIMSTYLE", "A", [("AcDbDimStyleTableRecord", "STANDARD", 0, [], None)])
    dxf.table("BLOCK_RECORD", "1", [("AcDbBlockTableRecord", name, None, [(340, "0")], handle)
                                    for name, handle in records.items()])


def write_blocks(dxf, records):
    spaces = [("*Model_Space", (0, 0), None), ("*Paper_Space", (0, 0), None)]
    for name, (x, y), draw in spaces + BLOCKS:
        owner = records[name]
        dxf.groups((0, "BLOCK"), (5, dxf.handle()), (330, owner), (100, "AcDbEntity"), (8, "0"),
                   (100, "AcDbBlockBegin"), (2, name), (70, 0))
        dxf.point(0, x, y)
        dxf.groups((3, name), (1, ""))
        if draw:
            draw(Space(dxf, owner))
        dxf.groups((0, "ENDBLK"), (5, dxf.handle()), (330, owner), (100, "AcDbEntity"), (8, "0"),
                   (100, "AcDbBlockEnd"))


def write_objects(dxf, definition, image):
    groups, images, reactor = "D", dxf.handle(), dxf.handle()
    dxf.groups((0, "DICTIONARY"), (5, "C"), (330, "0"), (100, "AcDbDictionary"), (281, 1), (3, "ACAD_GROUP"),
               (350, groups), (3, "ACAD_IMAGE_DICT"), (350, images))
    dxf.groups((0, "DICTIONARY"), (5, groups), (330, "C"), (100, "AcDbDictionary"), (281, 1))
    dxf.groups((0, "DICTIONARY"), (5, images), (330, "C"), (100, "AcDbDictionary"), (281, 1), (3, "MARK"),
               (350, definition))
    dxf.groups((0, "IMAGEDEF"), (5, definition), (102, "{ACAD_REACTORS"), (330, images), (330, reactor),
               (102, "}"), (330, images), (100, "AcDbRasterImageDef"), (90, 0), (1, "mark.bmp"),
               (10, float(PIXELS)), (20, float(PIXELS)), (11, 1.0), (21, 1.0), (280, 1), (281, 0))
    dxf.groups((0, "IMAGEDEF_REACTOR"), (5, reactor), (330, image), (100, "AcDbRasterImageDefReactor"),
               (90, 2), (330, image))


def plan():
    dxf = Dxf()
    records = {"*Model_Space": "1F", "*Paper_Space": "1B"} | {name: dxf.handle() for name, _, _ in BLOCKS}
    model = Space(dxf, records["*Model_Space"])
    definition = dxf.handle()
    image = []

    def entities():
        for draw in (draw_walls, draw_openings, draw_furniture, draw_garden, draw_axes, draw_dimensions,
                     draw_words, draw_roof):
            draw(model)
        image.append(draw_title(model, definition))

    dxf.groups((999, "Ground floor of a small house, millimetres; drawn by scripts/make_sample.py"))
    dxf.section("HEADER", lambda: dxf.groups(
        (9, "$ACADVER"), (1, "AC1015"), (9, "$HANDSEED"), (5, "FFFF"), (9, "$DWGCODEPAGE"), (3, "ANSI_1252"),
        (9, "$INSUNITS"), (70, 4), (9, "$LTSCALE"), (40, 1.0), (9, "$EXTMIN"), (10, -2500.0), (20, -6000.0),
        (30, -420.0), (9, "$EXTMAX"), (10, 13500.0), (20, 10200.0), (30, 4500.0)))
    dxf.section("CLASSES", lambda: None)
    dxf.section("TABLES", lambda: write_tables(dxf, records))
    dxf.section("BLOCKS", lambda: write_blocks(dxf, records))
    dxf.section("ENTITIES", entities)
    dxf.section("OBJECTS", lambda: write_objects(dxf, definition, image[0]))
    dxf.groups((0, "EOF"))
    return "".join(line + "\r\n" for line in dxf.lines).encode("cp1252")


def main(arguments):
    default = pathlib.Path(__file__).resolve().parents[1] / "examples"
    folder = pathlib.Path(arguments[1]) if len(arguments) > 1 else default
    (folder / "plan.dxf").write_bytes(plan())
    (folder / "mark.bmp").write_bytes(picture())


if __name__ == "__main__":
    main(sys.argv)
