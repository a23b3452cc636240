// From points and breaklines to a network, and its measures.
#pragma once

#include <zyn/array.h>
#include <zyn/delaunay.h>
#include <zyn/envelope.h>
#include <zyn/pool.h>

#include <functional>
#include <optional>
#include <string>

struct Network {
    zyn::ref_ptr<zyn::Pnt3dPool> crossings = zyn::newPnt3dPool();  ///< vertices between breaklines
    zyn::ref_ptr<zyn::IZynDelaunayD> engine;
    int rejectedPoints = 0;
    int breaklineEdges = 0;
};

/// Returns a ten-millionth of the points' larger extent in plan, 0.001 at most. That is less than
/// points are apart, in metres, feet and degrees.
double defaultTolerance(zyn::Pnt3dArray& points);

/// Inserts the points, then the breaklines, and makes the network Delaunay's around those. Points and
/// breaklines must stay in place for the life of the network.
Network triangulate(zyn::Pnt3dArray& points, zyn::Pnt3dArrayArray& breaklines, double tolerance);

/// Returns a sentence about the points that the tolerance kept out of the network.
std::string aboutRejected(const Network& network, int points, double tolerance);

struct Measures {
    int triangles = 0;
    double area = 0;
    double planArea = 0;
    double minZ = 0;  ///< without meaning when there is no triangle, like maxZ
    double maxZ = 0;
    zyn::Enve2d area2d{};  ///< the box around it
};

/// The rise of a triangle's plane along x and along y; nothing if the triangle has no area in plan.
std::optional<zyn::XPnt2d> gradientOf(const zyn::tind& t);

/// Calls `use` for each triangle of the surface that has no edge longer than `maxEdge` in space.
void forSurface(zyn::IZynDelaunayD& engine, double maxEdge,
                const std::function<void(const zyn::tind&)>& use);

/// Measures these triangles.
Measures measure(zyn::IZynDelaunayD& engine, double maxEdge);
