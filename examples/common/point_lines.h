// Lines of points: x y z, with or without a point number in front.
#pragma once

#include "line_reader.h"

#include <zyn/point.h>

#include <string_view>
#include <vector>

/// What the lines of a file begin with.
enum class Columns {
    recognized,  ///< x y z or number x y z, as the whole file suggests
    xyz,
    numberXyz,  ///< the number can be any word
};

class PointLines {
public:
    /// Reads lines of `file`, which must outlive the object.
    PointLines(const LineReader& file, Columns columns);

    /// Whether the present line begins like a point.
    [[nodiscard]] bool atPoint() const;
    /// Appends the point of the present line. Throws a Failure.
    void append();
    /// Recognizes the columns; call it behind the last line. Returns whether there were point
    /// numbers, which are no longer in the points then.
    bool finish();

    /// The points so far, with the first three columns as x y z until finish() decides.
    [[nodiscard]] std::vector<zyn::XPnt3d>& points() { return read; }

private:
    void noteNumber(std::string_view number, std::string_view x, std::string_view y,
                    std::string_view fourth);
    [[nodiscard]] bool hasNumbers() const;
    [[nodiscard]] bool eachNumberHasOnePoint() const;

    const LineReader& file;
    const Columns columns;
    std::vector<zyn::XPnt3d> read;

    // What speaks for point numbers and against them.
    bool maybeNumbers;
    bool countsUp = true;         ///< each first column is one above the line before
    bool decimalsInX = false;     ///< of at least one line, where x is the second column
    bool decimalsInY = false;     ///< likewise the third
    std::vector<double> fourths;  ///< the fourth column, as long as there may be numbers
};
