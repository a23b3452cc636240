// What the command line asks for.
#pragma once

#include "point_lines.h"
#include "program.h"

#include <zyn/surface.h>

#include <optional>
#include <string>

struct Options {
    std::string input;
    std::string breaklines;  ///< no file when empty
    double maxEdge = zyn::anyEdge;
    Columns columns = Columns::recognized;
    std::optional<double> tolerance;  ///< follows the extent if it is left out
    double contours = 0;  ///< between two lines; 0: a round number that gives about twelve of them
    std::string out = ".";
};

extern const char* const helpText;

Options parseOptions(Arguments arguments);
