#!/usr/bin/env python3
"""Writes the elevations of jacksboro_fault_dem.npz as an ESRI ASCII grid in metres.

usage: make_jacksboro.py jacksboro_fault_dem.npz jacksboro.asc
"""
import ast
import math
import struct
import sys
import zipfile

WGS84_RADIUS = 6378137.0
WGS84_FLATTENING = 1 / 298.257223563
NODATA = -32768


def read_member(archive, name):
    """Returns the shape and the flat values of one array of the archive."""
    data = archive.read(name + ".npy")
    if data[:8] != b"\x93NUMPY\x01\x00":
        sys.exit(f"{name}: not an array file of version 1.0")
    end = 10 + struct.unpack_from("<H", data, 8)[0]
    head = ast.literal_eval(data[10:end].decode("latin-1"))
    code = {"<i2": "h", "<f8": "d"}[head["descr"]]
    return head["shape"], [value for (value,) in struct.iter_unpack("<" + code, data[end:])]


def metres_per_degree(latitude):
    """Returns the lengths of a degree of longitude and of latitude on the ellipsoid."""
    e2 = WGS84_FLATTENING * (2 - WGS84_FLATTENING)
    phi = math.radians(latitude)
    root = math.sqrt(1 - e2 * math.sin(phi) ** 2)
    prime_vertical = WGS84_RADIUS / root
    meridian = WGS84_RADIUS * (1 - e2) / root**3
    return math.radians(prime_vertical * math.cos(phi)), math.radians(meridian)


def main(source, target):
    with zipfile.ZipFile(source) as archive:
        (rows, columns), heights = read_member(archive, "elevation")
        scalars = {name: read_member(archive, name)[1][0] for name in ("ymin", "ymax", "dx", "dy")}
    x_scale, y_scale = metres_per_degree((scalars["ymin"] + scalars["ymax"]) / 2)

    with open(target, "w", encoding="ascii") as grid:
        grid.write(f"ncols {columns}\nnrows {rows}\nxllcorner 0\nyllcorner 0\n")
        grid.write(f"dx {scalars['dx'] * x_scale:.6f}\ndy {scalars['dy'] * y_scale:.6f}\n")
        grid.write(f"NODATA_value {NODATA}\n")
        for row in range(rows):
            grid.write(" ".join(map(str, heights[row * columns : (row + 1) * columns])) + "\n")


if __name__ == "__main__":
    if len(sys.argv) != 3:
        sys.exit(__doc__)
    main(*sys.argv[1:])
