// The options of the command line.
#pragma once

#include "point_lines.h"
#include "program.h"

#include <zyn/surface.h>

#include <optional>
#include <string>

struct Options {
    std::string input;
    std::string breaklines;  ///< empty for none
    double maxEdge = zyn::anyEdge;
    Columns columns = Columns::recognized;
    std::optional<double> tolerance;  ///< depends on the extent if not given
    double contours = 0;              ///< interval; 0: a round number for about twelve lines
    std::string out = ".";
};

extern const char* const helpText;

Options parseOptions(Arguments arguments);
