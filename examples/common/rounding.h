// Round numbers for legends, and decimals for numbers of any size.
#pragma once

#include <string>

/// Returns the least of 1, 2 and 5 times the powers of ten that is not below `wanted`, which is
/// above 0.
double roundUp(double wanted);

/// Returns the number of decimals that shows a number of this size with `digits` digits: at least
/// `least`, and `least` for 0.
int decimalsFor(double size, int digits, int least);

/// Returns `value` with this many decimals.
std::string withDecimals(double value, int decimals);
