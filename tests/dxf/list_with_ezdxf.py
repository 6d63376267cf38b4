#!/usr/bin/env python3
"""Lists a drawing as the package ezdxf reads it: the release, then one line a layer, a text style, an
entity, an error of its audit. Latin-1.

    list_with_ezdxf.py FILE        prints "absent" where the package is
"""
import sys

try:
    import ezdxf
except ImportError:
    print("absent")
    sys.exit()

ADDED_BY_EZDXF = {"Defpoints", "Standard"}
FIELDS = {
    "POINT": ["location"],
    "LINE": ["start", "end", "thickness"],
    "CIRCLE": ["center", "radius", "extrusion"],
    "ARC": ["center", "radius", "start_angle", "end_angle", "extrusion"],
    "SOLID": ["vtx0", "vtx1", "vtx2", "vtx3"],
    "3DFACE": ["vtx0", "vtx1", "vtx2", "vtx3"],
    "POLYLINE": ["elevation", "default_start_width", "default_end_width"],
    "TEXT": ["text", "insert", "height", "rotation", "style", "halign", "valign", "align_point"],
    "MTEXT": ["insert", "char_height", "width", "text_direction", "attachment_point"],
    "IMAGE": ["insert", "u_pixel", "v_pixel", "image_size"],
}


def plain(value):
    if isinstance(value, float):
        return f"{value:g}"
    if isinstance(value, (str, int)):
        return str(value)
    return ",".join(f"{number:g}" for number in value)


def describe(entity):
    kind = entity.dxftype()
    parts = [kind, entity.dxf.layer, str(entity.dxf.color), entity.dxf.linetype]
    parts += [plain(entity.dxf.get_default(field)) for field in FIELDS.get(kind, [])]
    if kind == "POLYLINE":
        parts.append("closed" if entity.is_closed else "open")
        parts += [plain(vertex.dxf.location) + ":" + plain(vertex.dxf.get_default("bulge")) for vertex in entity.vertices]
    elif kind == "MTEXT":
        parts.append(entity.text)
    elif kind == "IMAGE":
        parts += [entity.image_def.dxf.filename] + [plain(point) for point in entity.boundary_path]
    return " ".join(parts)


def main(file_name):
    document = ezdxf.readfile(file_name)
    lines = [document.loaded_dxfversion if hasattr(document, "loaded_dxfversion") else "unknown release"]
    lines += [f"layer {layer.dxf.name} {layer.color} {'on' if layer.is_on() else 'off'}"
              for layer in document.layers if layer.dxf.name not in ADDED_BY_EZDXF]
    lines += [f"style {style.dxf.name} {style.dxf.font}"
              for style in document.styles if style.dxf.name not in ADDED_BY_EZDXF]
    lines += [describe(entity) for entity in document.modelspace()]
    lines += ["error " + error.message for error in document.audit().errors]
    sys.stdout.buffer.write("".join(line + "\n" for line in lines).encode("latin-1", "replace"))


main(sys.argv[1])
