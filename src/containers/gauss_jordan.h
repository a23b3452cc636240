// In-place inversion of a square matrix.
#pragma once

#include "core/wrapping.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <cstdio>
#include <utility>

namespace zyn::detail {

/// Inverts the n x n elements at `a`, row by row, by Gauss-Jordan elimination with full pivoting.
template <class T>
class GaussJordan {
public:
    struct Pivot {
        int row, col;
    };

    /// REQUIRES: `pivots` has room for n.
    GaussJordan(T* a_, int n_, Pivot* pivots_) : a(a_), n(n_), pivots(pivots_) {}

    /// Returns false and prints a message if every remaining pivot is exactly 0. The elements then
    /// stay as the elimination left them.
    bool invert() {
        for (int k = 0; k < n; ++k) {
            if (!bringPivot(k)) {
                std::fputs("invert is not availble!\n", stdout);
                return false;
            }
            eliminate(k);
        }
        for (int k = n - 1; k >= 0; --k) {
            swapRows(k, pivots[k].col);
            swapCols(k, pivots[k].row);
        }
        return true;
    }

private:
    T* row(int r) const { return a + static_cast<std::ptrdiff_t>(r) * n; }

    /// Moves the largest of the remaining elements to (k, k); among equal ones, the first.
    bool bringPivot(int k) {
        double largest = 0.0;
        for (int r = k; r < n; ++r) {
            for (int c = k; c < n; ++c) {
                const double size = std::abs(static_cast<double>(row(r)[c]));
                if (size > largest) {
                    largest = size;
                    pivots[k] = {r, c};
                }
            }
        }
        if (largest == 0.0) { return false; }
        swapRows(k, pivots[k].row);
        swapCols(k, pivots[k].col);
        return true;
    }

    void eliminate(int k) {
        using namespace wrapping;
        T* const pivotRow = row(k);
        const T reciprocal = static_cast<T>(1.0 / static_cast<double>(pivotRow[k]));
        pivotRow[k] = reciprocal;
        for (int j = 0; j < n; ++j) {
            if (j != k) { pivotRow[j] = times(pivotRow[j], reciprocal); }
        }
        for (int i = 0; i < n; ++i) {
            if (i == k) { continue; }
            T* const other = row(i);
            const T factor = other[k];
            for (int j = 0; j < n; ++j) {
                if (j != k) { other[j] = minus(other[j], times(pivotRow[j], factor)); }
            }
            other[k] = negated(times(reciprocal, factor));
        }
    }

    void swapRows(int r, int s) {
        if (r != s) { std::swap_ranges(row(r), row(r) + n, row(s)); }
    }
    void swapCols(int c, int d) {
        for (int r = 0; r < n && c != d; ++r) { std::swap(row(r)[c], row(r)[d]); }
    }

    T* a;
    int n;
    Pivot* pivots;
};

}  // namespace zyn::detail
