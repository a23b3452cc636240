// The cells of a grid that a thin polygon covers, found in time proportional to their number.
#pragma once

#include "triangulation/predicates.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <utility>

namespace zyn::detail {

/// Represents the part of a triangle inside a grid. Coordinates are in cells: whole numbers are the
/// centres of cells.
///
/// A sliver can cross thousands of rows and columns and contain no centre of a cell. The centres
/// also form lines in other directions. A reduced basis of the lattice (Gauss) yields the direction
/// with the fewest lines across the polygon. By the flatness theorem, a convex figure that many
/// such lines cross contains about as many centres as it has area. So the number of lines visited
/// is at most a constant plus a multiple of the square root of the number of centres.
class CellPolygon {
public:
    /// Takes the triangle a, b, c in columns and rows. Each coordinate has an error of at most
    /// `unclear_` cells.
    CellPolygon(Xy a, Xy b, Xy c, int columns_, int rows_, double unclear_)
        : corner{a, b, c}, columns(columns_), rows(rows_), unclear(std::max(unclear_, 0x1p-31)) {
        // No centre is nearer than half a cell to the rim of the grid, so rounding loses none.
        clip(&Xy::x, -1, 0.5);
        clip(&Xy::x, 1, columns - 0.5);
        clip(&Xy::y, -1, 0.5);
        clip(&Xy::y, 1, rows - 0.5);
    }

    [[nodiscard]] double area() const {
        double twice = 0;
        for (std::size_t i = 2; i < size; ++i) {
            const Xy u = corner[i - 1] - corner[0], v = corner[i] - corner[0];
            twice += u.x * v.y - u.y * v.x;
        }
        return std::abs(twice) / 2;
    }

    /// Calls `use(column, row)` for all cells whose centres are in the polygon, and for some beside
    /// it.
    template <class Use>
    void forEachCell(Use use) const {
        if (size == 0) { return; }
        const auto [across, along] = reducedBasis();
        Range lines = rangeOf(across);
        for (double line = std::ceil(lines.low); line <= lines.high; ++line) {
            const Range places = crossing(across, along, line);
            for (double place = std::ceil(places.low); place <= places.high; ++place) {
                const auto [column, row] = cellAt(across, along, line, place);
                if (column >= 0 && column < columns && row >= 0 && row < rows) {
                    use(static_cast<int>(column), static_cast<int>(row));
                }
            }
        }
    }

private:
    /// Represents a linear function of columns and rows with whole coefficients. It is 0 at
    /// origin().
    struct Form {
        std::int64_t x, y;
    };
    struct Range {
        double low = HUGE_VAL, high = -HUGE_VAL;
        void include(double value) {
            low = std::min(low, value);
            high = std::max(high, value);
        }
    };

    /// Cuts off the part in which `sign` times the coordinate is above `limit`.
    void clip(double Xy::*axis, double sign, double limit) {
        const auto old = corner;
        const std::size_t oldSize = std::exchange(size, 0);
        for (std::size_t i = 0; i < oldSize; ++i) {
            const Xy a = old[i], b = old[(i + 1) % oldSize];
            const double insideA = limit - sign * a.*axis, insideB = limit - sign * b.*axis;
            if (insideA >= 0) { corner[size++] = a; }
            if ((insideA >= 0) != (insideB >= 0)) {
                const double share = insideA / (insideA - insideB);
                corner[size++] = {a.x + (b.x - a.x) * share, a.y + (b.y - a.y) * share};
            }
        }
    }

    [[nodiscard]] Xy origin() const { return {std::floor(corner[0].x), std::floor(corner[0].y)}; }
    [[nodiscard]] double valueAt(Form form, Xy p) const {
        const Xy offset = p - origin();
        return double(form.x) * offset.x + double(form.y) * offset.y;
    }
    /// Returns the error of a value that comes from the errors of the coordinates.
    [[nodiscard]] double unclearOf(Form form) const {
        return unclear * (std::abs(double(form.x)) + std::abs(double(form.y)));
    }
    [[nodiscard]] Range rangeOf(Form form) const {
        Range range;
        for (std::size_t i = 0; i < size; ++i) { range.include(valueAt(form, corner[i])); }
        return {range.low - unclearOf(form), range.high + unclearOf(form)};
    }
    /// Returns an inner product of two forms: the sum of the products of their values at the
    /// corners, relative to the first corner. Its norm is the width of the polygon, up to a
    /// constant factor.
    [[nodiscard]] double product(Form f, Form g) const {
        double total = 0;
        for (std::size_t i = 1; i < size; ++i) {
            const Xy d = corner[i] - corner[0];
            total +=
                (double(f.x) * d.x + double(f.y) * d.y) * (double(g.x) * d.x + double(g.y) * d.y);
        }
        return total;
    }
    /// Returns two forms that number the centres without gaps. The first has few values on the
    /// polygon.
    [[nodiscard]] std::pair<Form, Form> reducedBasis() const {
        Form across{1, 0}, along{0, 1};
        if (product(along, along) < product(across, across)) { std::swap(across, along); }
        for (double width2 = product(across, across); width2 > 0.25;) {
            const double times = std::round(product(across, along) / width2);
            // Larger coefficients would make the values unclear, and finally overflow.
            if (std::abs(times) * unclearOf(across) + unclearOf(along) > 0.125) { break; }
            const auto whole = static_cast<std::int64_t>(times);
            const Form shorter{along.x - whole * across.x, along.y - whole * across.y};
            const double shorter2 = product(shorter, shorter);
            if (!(shorter2 < 0.9 * width2)) { break; }
            along = std::exchange(across, shorter);
            width2 = shorter2;
        }
        return {across, along};
    }
    /// Returns the range of `along` on the part of the polygon where `across` may be `line`.
    [[nodiscard]] Range crossing(Form across, Form along, double line) const {
        const double low = line - unclearOf(across), high = line + unclearOf(across);
        Range range;
        for (std::size_t i = 0; i < size; ++i) {
            const Xy a = corner[i], b = corner[(i + 1) % size];
            const double from = valueAt(across, a), to = valueAt(across, b);
            if (std::max(from, to) < low || std::min(from, to) > high) { continue; }
            const double start = valueAt(along, a), end = valueAt(along, b);
            for (const double limit : {low, high}) {
                const double share =
                    from == to ? 0 : std::clamp((limit - from) / (to - from), 0.0, 1.0);
                range.include(start + (end - start) * share);
            }
            if (from == to) { range.include(end); }
        }
        return {range.low - unclearOf(along), range.high + unclearOf(along)};
    }
    /// Returns the cell at which `across` is `line` and `along` is `place`. The determinant of the
    /// forms is 1 or -1.
    [[nodiscard]] std::pair<std::int64_t, std::int64_t> cellAt(Form across, Form along, double line,
                                                               double place) const {
        const auto f = static_cast<std::int64_t>(line), g = static_cast<std::int64_t>(place);
        const std::int64_t sign = across.x * along.y - across.y * along.x;
        const auto x = static_cast<std::int64_t>(origin().x),
                   y = static_cast<std::int64_t>(origin().y);
        return {x + sign * (f * along.y - g * across.y), y + sign * (g * across.x - f * along.x)};
    }

    std::array<Xy, 7> corner;  // each of the four cuts adds at most one
    std::size_t size = 3;
    int columns, rows;
    double unclear;
};

}  // namespace zyn::detail
