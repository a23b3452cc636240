// Exact signs of determinants, against which the tests compare the predicates.
#pragma once

#include <vector>

namespace support {

struct Position {
    double x;
    double y;
};

/// Returns 1 if a, b, c run counter-clockwise, -1 if clockwise, and 0 if they are collinear.
int exactOrientation(Position a, Position b, Position c);

/// Returns the sign of the lifted determinant of the in-circle test: 1 if d is inside the circle of
/// a, b, c that run counter-clockwise.
int exactInCircle(Position a, Position b, Position c, Position d);

/// Returns whether the triangles, three corners each, have the area of the polygon. Both run
/// counter-clockwise.
bool haveAreaOf(const std::vector<Position>& triangles, const std::vector<Position>& polygon);

}  // namespace support
