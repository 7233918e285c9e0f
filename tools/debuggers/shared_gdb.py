# SPDX-License-Identifier: MIT
# Copyright (c) 2026 The Shared authors
"""Shows the library's values in gdb as a reader would write them. In gdb or in ~/.gdbinit:

    source .../share/shared/debuggers/shared_gdb.py

GString is its text; vectors, points, boxes, quaternions, colors and matrices are their numbers; CPodVector and
GPolyline are lists; GPolygon is a list of contours, each with its points and whether it is a hole. GPolygon2d is a list
of polygons, each with its rings; that needs a library built with debug information.
"""

import gdb
import gdb.printing

ROWS_SHOWN = 200  # of a list; gdb's own "set print elements" cuts further


def numbers(values):
    return "(" + ", ".join(str(value) for value in values) + ")"


def vector_elements(vector):
    """The elements of a std::vector, first to last."""
    first, last = vector["_M_impl"]["_M_start"], vector["_M_impl"]["_M_finish"]
    return first, int(last - first)


class Text:
    """GString: the text of the string inside."""

    def __init__(self, value):
        self.value = value

    def to_string(self):
        inside = self.value["text_"]
        pointer, length = inside["_M_dataplus"]["_M_p"], int(inside["_M_string_length"])
        units = [int(pointer[i]) for i in range(min(length, 10000))]
        if pointer.dereference().type.sizeof == 2:
            data = b"".join((unit & 0xFFFF).to_bytes(2, "little") for unit in units)
            text = data.decode("utf-16-le", "replace")
        else:
            text = "".join(chr(unit) if 0 <= unit < 0x110000 else "\ufffd" for unit in units)
        return '"' + text.replace("\\", "\\\\").replace('"', '\\"').replace("\n", "\\n") + '"'


class Components:
    """A vector, point or quaternion by the names of its components."""

    def __init__(self, value):
        self.value = value

    def to_string(self):
        parts = []
        for name in "xyzw":
            try:
                parts.append(self.value[name])
            except gdb.error:
                break
        return numbers(parts)


class Color:
    """Color4b as the style sheets write it, with its alpha."""

    def __init__(self, value):
        self.value = value

    def to_string(self):
        return "#" + "".join(f"{int(self.value[name]) & 255:02x}" for name in ("red", "green", "blue", "alpha"))


class Box:
    def __init__(self, value):
        self.value = value

    def to_string(self):
        return f"{Components(self.value['min_']).to_string()} .. {Components(self.value['max_']).to_string()}"


class Matrix:
    """Its rows, from the flat elements."""

    def __init__(self, value):
        self.value = value

    def to_string(self):
        elements = self.value["elements_"]
        first, last = elements.type.range()
        size = round((last - first + 1) ** 0.5)
        return "\n".join(numbers(elements[row * size + column] for column in range(size)) for row in range(size))


class List:
    """A run of elements behind a pointer."""

    def __init__(self, name, pointer, count):
        self.name, self.pointer, self.count = name, pointer, count

    def to_string(self):
        return f"{self.name} of {self.count}"

    def children(self):
        for i in range(min(self.count, ROWS_SHOWN)):
            yield f"[{i}]", self.pointer[i]

    def display_hint(self):
        return "array"


def pod_vector(value):
    return List("CPodVector", value["data_"], int(value["size_"]))


def polyline(value):
    return List("GPolyline", *vector_elements(value))  # it is a vector itself


class Polygon:
    """The contours of a GPolygon or of its record, with their points in one line."""

    def __init__(self, value):
        self.record = value["record_"] if "record_" in [f.name for f in value.type.fields()] else value

    def to_string(self):
        return f"GPolygon of {int(self.record['contourCount'])} contours"

    def children(self):
        for i in range(min(int(self.record["contourCount"]), ROWS_SHOWN)):
            contour = self.record["contours"][i]
            count = int(contour["vertexCount"])
            points = contour["vertices"]
            shown = " ".join(Components(points[k]).to_string() for k in range(min(count, ROWS_SHOWN)))
            kind = "hole" if int(self.record["holeFlags"][i]) else "contour"
            yield f"[{i}]", f"{kind} of {count}: {shown}"


class Polygons:
    """The polygons of a GPolygon2d, the rings of each in a line."""

    def __init__(self, value):
        self.model = value["model_"]

    def is_known(self):
        return self.model.type.target().fields() != [] if int(self.model) else False

    def to_string(self):
        if not int(self.model):
            return "GPolygon2d of 0 polygons"
        if not self.is_known():
            return "GPolygon2d (the library has no debug information)"
        return f"GPolygon2d of {vector_elements(self.model['polygons'])[1]} polygons"

    def children(self):
        if not self.is_known():
            return
        polygons, count = vector_elements(self.model["polygons"])
        points, _ = vector_elements(self.model["points"])
        ends, _ = vector_elements(self.model["ringEnds"])
        ring = point = 0
        for i in range(min(count, ROWS_SHOWN)):
            rings = []
            while ring < int(polygons[i]["endRing"]):
                end = int(ends[ring])
                rings.append(" ".join(Components(points[k]).to_string() for k in range(point, end)))
                ring, point = ring + 1, end
            yield f"[{i}]", "; ".join(rings)


def build():
    printers = gdb.printing.RegexpCollectionPrettyPrinter("Shared")
    printers.add_printer("GString", r"^shr::GString$", Text)
    printers.add_printer("vectors", r"^shr::(Vec[234]|Point[234]|Quat4)(<.*>)?$", Components)
    printers.add_printer("Color4b", r"^shr::Color4b$", Color)
    printers.add_printer("boxes", r"^shr::Box[23](<.*>)?$", Box)
    printers.add_printer("matrices", r"^shr::(Mat3d|Mat4(<.*>)?)$", Matrix)
    printers.add_printer("CPodVector", r"^shr::CPodVector<.*>$", pod_vector)
    printers.add_printer("GPolyline", r"^shr::GPolyline$", polyline)
    printers.add_printer("GPolygon", r"^shr::(GPolygon|GpcPolygon)$", Polygon)
    printers.add_printer("GPolygon2d", r"^shr::GPolygon2d$", Polygons)
    return printers


gdb.printing.register_pretty_printer(gdb.current_objfile(), build(), replace=True)
