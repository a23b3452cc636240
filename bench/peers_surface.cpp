// Compares Surface with an engine, and its single queries and changes with CGAL.
#include "measure.h"
#include "peers.h"

#include <zyn/network.h>
#include <zyn/surface.h>

#include <CGAL/Delaunay_triangulation_2.h>
#include <CGAL/Exact_predicates_inexact_constructions_kernel.h>
#include <CGAL/Triangulation_hierarchy_2.h>
#include <CGAL/Triangulation_vertex_base_with_info_2.h>

#include <cstdio>
#include <cstdlib>
#include <optional>
#include <utility>
#include <vector>

namespace bench {
namespace {

using namespace zyn;
using Kernel = CGAL::Exact_predicates_inexact_constructions_kernel;
using Place = Kernel::Point_2;
using VertexBase = CGAL::Triangulation_vertex_base_with_info_2<double, Kernel>;
using FaceBase = CGAL::Triangulation_face_base_2<Kernel>;
template <class Base>
using DelaunayOf =
    CGAL::Delaunay_triangulation_2<Kernel, CGAL::Triangulation_data_structure_2<Base, FaceBase>>;
using Plain = DelaunayOf<VertexBase>;
using Hierarchy = CGAL::Triangulation_hierarchy_2<
    DelaunayOf<CGAL::Triangulation_hierarchy_vertex_base_2<VertexBase>>>;

template <class Peer>
void fill(Peer& peer, const Points& points) {
    std::vector<Place> places;
    for (const XPnt3d& p : points) { places.emplace_back(p.x, p.y); }
    peer.insert(places.begin(), places.end());
    for (auto v = peer.finite_vertices_begin(); v != peer.finite_vertices_end(); ++v) {
        v->info() = heightOf(v->point().x(), v->point().y());
    }
}

/// Adds the height of the plane over the face to the sum.
template <class Peer>
void addHeight(const Peer& peer, typename Peer::Face_handle face, const XPnt3d& q, double& sum) {
    if (peer.is_infinite(face)) { return; }
    const auto& a = *face->vertex(0);
    const auto& b = *face->vertex(1);
    const auto& c = *face->vertex(2);
    const double ux = b.point().x() - a.point().x(), uy = b.point().y() - a.point().y();
    const double vx = c.point().x() - a.point().x(), vy = c.point().y() - a.point().y();
    const double dx = q.x - a.point().x(), dy = q.y - a.point().y();
    const double area2 = ux * vy - uy * vx;
    const double u = (dx * vy - dy * vx) / area2, v = (ux * dy - uy * dx) / area2;
    sum += a.info() + u * (b.info() - a.info()) + v * (c.info() - a.info());
}

double sum = 0;  // sum of all heights, so that none is optimised away

/// Returns the microseconds of one operation on each of the first `count` points.
template <class Operation>
double microseconds(const Points& points, std::size_t count, Operation operation) {
    const std::size_t end = std::min(count, points.size());
    const double all = seconds([&] {
        for (std::size_t i = 0; i < end; ++i) { operation(points[i]); }
    });
    return all * 1e6 / double(end);
}

struct Networks {
    explicit Networks(Points points)
        : array(arrayOf(points)), engine(Box(points).engine()), surface(points) {
        spatialSort(array.get());
        addPoints(engine.get(), array.get(), 0);
        fill(plain, points);
        fill(hierarchy, points);
    }
    ref_ptr<Pnt3dArray> array;
    ref_ptr<IZynDelaunayD> engine;
    Surface surface;
    Plain plain;
    Hierarchy hierarchy;
};

void printHeights(const Networks& all, Points places, bool isSpatial, int runs) {
    const std::size_t longWalks = isSpatial ? places.size() : 5000;
    const ref_ptr<Pnt3dArray> list = arrayOf(places);
    // Walks from far away take so long that a part of the points must suffice.
    std::vector<double> own, array, engine, plain, hierarchy;
    for (int run = 0; run < runs; ++run) {
        own.push_back(microseconds(places, places.size(), [&](const XPnt3d& p) {
            sum += all.surface.heightAt(p.x, p.y).value_or(0);
        }));
        hierarchy.push_back(microseconds(places, places.size(), [&](const XPnt3d& p) {
            addHeight(all.hierarchy, all.hierarchy.locate(Place(p.x, p.y)), p, sum);
        }));
        array.push_back(seconds([&] { sum += all.surface.heightsAt(places); }) * 1e6 /
                        double(places.size()));
        Plain::Face_handle hint;
        plain.push_back(microseconds(places, longWalks, [&](const XPnt3d& p) {
            hint = all.plain.locate(Place(p.x, p.y), hint);
            addHeight(all.plain, hint, p, sum);
        }));
        engine.push_back(isSpatial
                             ? seconds([&] { sum += heightAt(all.engine.get(), list.get()); }) *
                                   1e6 / double(places.size())
                             : microseconds(places, longWalks, [&](const XPnt3d& p) {
                                   double z = 0;
                                   sum += heightAt(all.engine.get(), p.x, p.y, z) ? z : 0;
                               }));
    }
    const double h = median(own), c = median(hierarchy);
    std::printf("| %s | %zu | %.3f | %.3f | %.3f | %.3f | %.3f | %.2f | %.2f |\n",
                isSpatial ? "spatial" : "random", places.size(), h, median(array), c, median(plain),
                median(engine), c / h, median(plain) / h);
    std::fflush(stdout);
}

/// Inserts and removes single points with both libraries.
void printChanges(Networks& all, const Points& points, int runs) {
    std::vector<double> in, out, peerIn, peerOut;
    std::vector<Hierarchy::Vertex_handle> vertices;
    for (int run = 0; run < runs; ++run) {
        const int first = all.surface.pointCount();
        in.push_back(microseconds(points, points.size(), [&](const XPnt3d& p) {
            all.surface.addPoints({&p, 1});
        }));
        int number = first;
        out.push_back(microseconds(points, points.size(),
                                   [&](const XPnt3d&) { all.surface.removePoint(number++); }));
        vertices.clear();
        peerIn.push_back(microseconds(points, points.size(), [&](const XPnt3d& p) {
            vertices.push_back(all.hierarchy.insert(Place(p.x, p.y)));
        }));
        std::size_t next = 0;
        peerOut.push_back(microseconds(
            points, points.size(), [&](const XPnt3d&) { all.hierarchy.remove(vertices[next++]); }));
    }
    const double a = median(in), r = median(out), c = median(peerIn), d = median(peerOut);
    std::printf(
        "\none point in %.2f us, CGAL's hierarchy %.2f us: %.2f;"
        " out %.2f us, CGAL's hierarchy %.2f us: %.2f\n",
        a, c, c / a, r, d, d / r);
    std::fflush(stdout);
}

/// The seconds to make a surface, and its bytes per point at the peak and at the end.
struct Cost {
    std::vector<double> times;
    double peak = 0, kept = 0;

    template <class Make>
    void measure(std::size_t n, Make make) {
        const std::size_t before = liveBytes();
        resetPeak();
        std::optional<decltype(make())> made;
        times.push_back(seconds([&] { made.emplace(make()); }));
        kept = (double(liveBytes()) - double(before)) / double(n);
        peak = (double(peakBytes()) - double(before)) / double(n);
    }
};

}  // namespace

void printSurfaceHead() {
    std::printf(
        "\n| points | number | addPoints | Surface, moved | copied | moved / addPoints |"
        " copied / addPoints | addPoints bytes at the peak, kept | moved | copied |\n"
        "|---|---|---|---|---|---|---|---|---|---|\n");
}

void printSurface(const char* family, const Points& points, int runs) {
    const std::size_t n = points.size();
    const ref_ptr<Pnt3dArray> array = arrayOf(points);
    const Box box(points);
    Cost engine, moved, copied;
    for (int run = 0; run < runs; ++run) {
        engine.measure(n, [&] {
            const ref_ptr<IZynDelaunayD> made = box.engine();
            addPoints(made.get(), array.get(), 0);
            return made;
        });
        Points own = points;
        moved.measure(n, [&] { return Surface(std::move(own)); });
        copied.measure(n, [&] { return Surface(points); });
    }
    const double us = 1e6 / double(n);
    const double e = median(engine.times), m = median(moved.times), c = median(copied.times);
    const auto ratio = [&engine](const Cost& cost) {  // of runs that follow each other
        std::vector<double> ratios;
        for (std::size_t i = 0; i < cost.times.size(); ++i) {
            ratios.push_back(cost.times[i] / engine.times[i]);
        }
        return median(ratios);
    };
    std::printf(
        "| %s | %zu | %.3f | %.3f | %.3f | %.2f | %.2f | %.1f, %.1f | %.1f, %.1f | %.1f, %.1f |\n",
        family, n, e * us, m * us, c * us, ratio(moved), ratio(copied), engine.peak, engine.kept,
        moved.peak, moved.kept, copied.peak, copied.kept);
    std::fflush(stdout);
}

void printSingles(std::size_t n, int runs, std::mt19937_64& random) {
    Points points = uniform(n, random);
    for (XPnt3d& p : points) { p.z = heightOf(p.x, p.y); }
    Networks all(std::move(points));
    std::printf(
        "\nmicroseconds a height, one call each\n\n"
        "| order | points | Surface::heightAt | heightsAt, all at once | CGAL's hierarchy |"
        " CGAL's locate from the last face | engine's heightAt, in spatial order for all at once | "
        "hierarchy / Surface |"
        " locate / Surface |\n|---|---|---|---|---|---|---|---|---|\n");
    const Points places = uniform(n, random);
    printHeights(all, places, false, runs);
    const ref_ptr<Pnt3dArray> sorted = arrayOf(places);
    spatialSort(sorted.get());
    printHeights(all, Points(sorted->begin(), sorted->end()), true, runs);
    printChanges(all, uniform(std::min<std::size_t>(n, 2000), random), runs);
    if (sum == 0) { std::exit(1); }
}

}  // namespace bench
