// Heights of a surface on a grid.
#include <zyn/network.h>

#include "surface/cell_polygon.h"
#include "surface/height_plane.h"
#include "surface/queries.h"
#include "triangulation/flip.h"
#include "triangulation/triangle_tests.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <limits>
#include <utility>

namespace zyn {

using namespace detail;

namespace {

/// Describes the centres of cells along one axis.
struct CellAxis {
    double min, step, perStep;
    int count;

    CellAxis(double min_, double max, int count_)
        : min(min_), step((max - min_) / count_), perStep(1 / step), count(count_) {}
    [[nodiscard]] double centre(int cell) const { return min + (cell + 0.5) * step; }
    /// Returns the last cell whose centre is at most `value`, up to rounding; 0 to count.
    [[nodiscard]] int upTo(double value) const {
        const double cell = (value - min) * perStep - 0.5;
        return cell > 0 ? static_cast<int>(std::min(cell, double(count))) : 0;  // 0 for a NaN
    }
    /// Returns the place of `value` in cells, where whole numbers are the centres.
    [[nodiscard]] double placeOf(double value) const { return (value - min) * perStep - 0.5; }
    /// Returns the largest distance of a centre's place from a whole number, in cells.
    [[nodiscard]] double unclear() const { return 0x1p-50 * (std::abs(min) * perStep + count); }
};

/// Fills the cells whose centres a triangle contains, row by row. Two triangles compute the same
/// crossing of their common edge with a row, so no cell between them is left out. A cell that both
/// contain gets the same height twice, which is that of heightAt().
template <class Real>
class TriangleFill {
public:
    TriangleFill(const CellAxis& x, const CellAxis& y, double* out)
        : columns(x), rows(y), cells(out) {}

    void operator()(const TinRecord<Real>* t) const {
        if (orientationOf(t) == 0) { return; }  // its neighbours contain the same places
        double lowest = HUGE_VAL, highest = -HUGE_VAL;
        for (const Real* const v : t->vertex) {
            lowest = std::min(lowest, double(v[1]));
            highest = std::max(highest, double(v[1]));
        }
        const int spanned = rows.upTo(highest) - rows.upTo(lowest);
        if (spanned > fewRows && fillSliver(t, spanned)) { return; }
        const Source source(t);
        // By rounding, the first and last row may be off by one, so the loop compares the centres.
        for (int row = rows.upTo(lowest); row < rows.count; ++row) {
            const double y = rows.centre(row);
            if (y > highest) { break; }
            if (y < lowest) { continue; }
            fillRow(source, {row, y});
        }
    }

private:
    static constexpr int fewRows = 16;

    /// Represents the triangle from which cells are filled.
    struct Source {
        const TinRecord<Real>* triangle;
        HeightPlane plane;
        double unclear;  // more than the rounding of a crossing, some units in the last place

        explicit Source(const TinRecord<Real>* t)
            : triangle(t),
              plane(t),
              unclear(1e-14 * std::max({std::abs(double(t->vertex[0][0])),
                                        std::abs(double(t->vertex[1][0])),
                                        std::abs(double(t->vertex[2][0]))})) {}
    };
    struct Row {
        int number;
        double y;  // of the centres
    };

    /// Fills a triangle that spans many more rows than it contains centres. Returns false and
    /// changes nothing for other triangles, and if rounding blurs the places of the centres.
    bool fillSliver(const TinRecord<Real>* t, int spanned) const {
        Xy corner[3];
        double farthest = 0;
        for (int i = 0; i < 3; ++i) {
            const Xy v = xyOf(t->vertex[i]);
            corner[i] = {columns.placeOf(v.x), rows.placeOf(v.y)};
            farthest = std::max({farthest, std::abs(corner[i].x), std::abs(corner[i].y)});
        }
        const double unclear = 0x1p-48 * farthest + columns.unclear() + rows.unclear();
        if (!(unclear < 0x1p-10)) { return false; }
        const CellPolygon polygon(corner[0], corner[1], corner[2], columns.count, rows.count,
                                  unclear);
        if (spanned <= fewRows + 4 * polygon.area()) { return false; }
        polygon.forEachCell([&](int column, int row) {
            const Xy centre{columns.centre(column), rows.centre(row)};
            if (contains(t, centre)) { rowOf(row)[column] = detail::heightIn(t, centre); }
        });
        return true;
    }
    /// Fills the cells of a row that the triangle spans.
    void fillRow(const Source& source, Row row) const {
        const TinRecord<Real>* const t = source.triangle;
        double left = HUGE_VAL, right = -HUGE_VAL;
        for (int i = 0; i < 3; ++i) {
            const Real* a = t->vertex[after[i]];
            const Real* b = t->vertex[before[i]];
            if (b[1] < a[1] || (b[1] == a[1] && b[0] < a[0])) { std::swap(a, b); }
            const double ay = double(a[1]), by = double(b[1]);
            if (row.y < ay || row.y > by) { continue; }
            if (ay == by) { return fillEdge(a, b, row.number); }
            const double ax = double(a[0]), bx = double(b[0]);
            const double x = row.y == by ? bx : ax + (bx - ax) * ((row.y - ay) / (by - ay));
            left = std::min(left, x);
            right = std::max(right, x);
        }
        fillBetween(source, row, left - source.unclear, right + source.unclear);
    }
    /// Fills the cells of a row with centres from `left` to `right`, which leave room for the
    /// rounding of the crossings. Near both ends, exact arithmetic decides.
    void fillBetween(const Source& source, Row row, double left, double right) const {
        double* const out = rowOf(row.number);
        int cell = columns.upTo(left);
        const double firstClear = left + 2 * source.unclear;
        const double lastClear = right - 2 * source.unclear;
        const auto fillIfHeld = [&](Xy centre) {
            if (contains(source.triangle, centre)) {
                out[cell] = detail::heightIn(source.triangle, centre);
            }
        };
        for (; cell < columns.count; ++cell) {
            const double x = columns.centre(cell);
            if (x > firstClear || x > right) { break; }
            if (x >= left) { fillIfHeld({x, row.y}); }
        }
        for (const int clear = columns.upTo(lastClear); cell < clear; ++cell) {
            out[cell] = source.plane.at(columns.centre(cell), row.y);
        }
        for (; cell < columns.count; ++cell) {
            const double x = columns.centre(cell);
            if (x > right) { return; }
            if (x < lastClear) {
                out[cell] = source.plane.at(x, row.y);
            } else {
                fillIfHeld({x, row.y});
            }
        }
    }
    /// Fills the cells whose centres are on an edge along their row, from left to right.
    void fillEdge(const Real* a, const Real* b, int row) const {
        const double y = double(a[1]), left = double(a[0]), right = double(b[0]);
        for (int cell = columns.upTo(left); cell < columns.count; ++cell) {
            const double x = columns.centre(cell);
            if (x > right) { return; }
            if (x >= left) { rowOf(row)[cell] = heightOnEdge(a, b, {x, y}); }
        }
    }
    [[nodiscard]] double* rowOf(int row) const {
        return cells + std::size_t(row) * std::size_t(columns.count);
    }

    const CellAxis& columns;
    const CellAxis& rows;
    double* cells;
};

}  // namespace

namespace detail {

bool isGrid(const Enve2d& envelope, int columns, int rows) {
    const double width = envelope.maxX - envelope.minX, height = envelope.maxY - envelope.minY;
    return columns >= 1 && rows >= 1 && width > 0 && height > 0 && std::isfinite(width) &&
           std::isfinite(height);
}

template <class Real>
void fillCells(const SurfaceTriangles<Real>& surface, const Enve2d& envelope, int columns, int rows,
               double* cells) {
    const CellAxis x(envelope.minX, envelope.maxX, columns);
    const CellAxis y(envelope.minY, envelope.maxY, rows);
    const TriangleFill<Real> fill(x, y, cells);
    surface.forEach([&fill](const TinRecord<Real>* t, std::size_t) { fill(t); });
}

template void fillCells(const SurfaceTriangles<double>&, const Enve2d&, int, int, double*);

}  // namespace detail

template <class Real>
bool rasterize(DelaunayInterface<Real>* interface, const Enve2d& envelope, int cellsX, int cellsY,
               MatrixDbl* out, double maxEdge) {
    const auto* const engine = engineOf(interface);
    if (engine == nullptr || out == nullptr || !detail::isGrid(envelope, cellsX, cellsY) ||
        !out->setSize(cellsY, cellsX, std::numeric_limits<double>::quiet_NaN())) {
        return false;
    }
    detail::fillCells(SurfaceTriangles<Real>(engine, maxEdge), envelope, cellsX, cellsY,
                      out->data());
    return true;
}

template bool rasterize(DelaunayInterface<float>*, const Enve2d&, int, int, MatrixDbl*, double);
template bool rasterize(DelaunayInterface<double>*, const Enve2d&, int, int, MatrixDbl*, double);

}  // namespace zyn
