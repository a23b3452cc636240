// Lines of points: x y z, with or without a point number before them.
#pragma once

#include "line_reader.h"

#include <zyn/point.h>

#include <string_view>
#include <vector>

/// The first columns of the lines of a file.
enum class Columns {
    recognized,  ///< x y z or number x y z, recognized from the whole file
    xyz,
    numberXyz,  ///< the number can be any word
};

class PointLines {
public:
    /// Reads lines of `file`, which must outlive the object.
    PointLines(const LineReader& file, Columns columns);

    /// Returns whether the current line begins like a point.
    [[nodiscard]] bool atPoint() const;
    /// Appends the point of the current line. Throws a Failure.
    void append();
    /// Recognizes the columns, after the last line. Returns whether there were point numbers, and
    /// then removes them from the points.
    bool finish();

    /// Returns the points so far, with the first three columns as x y z until finish() decides.
    [[nodiscard]] std::vector<zyn::XPnt3d>& points() { return read; }

private:
    void noteNumber(std::string_view number, std::string_view x, std::string_view y,
                    std::string_view fourth);
    [[nodiscard]] bool hasNumbers() const;
    [[nodiscard]] bool eachNumberHasOnePoint() const;

    const LineReader& file;
    const Columns columns;
    std::vector<zyn::XPnt3d> read;

    // Evidence for and against point numbers.
    bool maybeNumbers;
    bool countsUp = true;         ///< each first column is one above the line before
    bool decimalsInX = false;     ///< in at least one line, if x is the second column
    bool decimalsInY = false;     ///< in at least one line, if y is the third column
    std::vector<double> fourths;  ///< the fourth column, while there may be numbers
};
