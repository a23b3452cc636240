#!/usr/bin/env python3
"""Reads a binary TIN file (formats.md) of either width with nothing but the standard library.

usage: read_tin.py FILE

Prints V, T and the width of a coordinate in bytes. Then prints `x y z` for each vertex, and
`a b c l m n` for each triangle: its corners and its neighbours. Numbers have the digits that
restore the same number.
"""

import struct
import sys

HEAD = 64


def read_tin(path):
    """Returns the vertices (x, y, z), the triangles (a, b, c, l, m, n), and the coordinate width."""
    with open(path, "rb") as file:
        data = file.read()
    vertex_count, triangle_count = struct.unpack_from("<ii", data, HEAD)
    if vertex_count < 4 or triangle_count < 1:
        raise ValueError(f"{vertex_count} vertices and {triangle_count} triangles")

    start = HEAD + 8
    room = len(data) - start - 24 * triangle_count
    width = room // (3 * vertex_count)
    if width not in (4, 8) or room != 3 * width * vertex_count:
        raise ValueError("the size of the file fits neither width")
    point = struct.Struct("<3d" if width == 8 else "<3f")
    end = start + point.size * vertex_count
    vertices = list(point.iter_unpack(data[start:end]))
    triangles = list(struct.iter_unpack("<6i", data[end:]))

    for number, triangle in enumerate(triangles):
        if not all(0 <= v < vertex_count for v in triangle[:3]):
            raise ValueError(f"triangle {number} names a vertex that does not exist")
        if not all(-1 <= t < triangle_count for t in triangle[3:]):
            raise ValueError(f"triangle {number} names a neighbour that does not exist")
    return vertices, triangles, width


if __name__ == "__main__":
    if len(sys.argv) != 2:
        sys.exit(__doc__)
    try:
        vertices, triangles, width = read_tin(sys.argv[1])
    except (OSError, ValueError, struct.error) as error:
        sys.exit(f"{sys.argv[1]}: {error}")
    print(len(vertices), len(triangles), width)
    for row in vertices + triangles:
        print(*row)
