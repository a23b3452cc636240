// Signs of determinants by integers of any size: what the predicates are measured against.
#pragma once

#include <vector>

namespace support {

struct Position {
    double x;
    double y;
};

/// 1 when a, b, c run counter-clockwise, -1 when clockwise, 0 when they are collinear.
int exactOrientation(Position a, Position b, Position c);

/// Sign of the lifted determinant of the in-circle test: on a, b, c that run counter-clockwise, 1
/// when d lies inside their circle.
int exactInCircle(Position a, Position b, Position c, Position d);

/// Whether the triangles, corner after corner, have together the area of the polygon. Both run
/// counter-clockwise.
bool haveAreaOf(const std::vector<Position>& triangles, const std::vector<Position>& polygon);

}  // namespace support
