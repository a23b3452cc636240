// Reading all lines of a file, or none.
#pragma once

#include <zyn/array.h>

class QString;

namespace zyn::detail {

/// Returns the lines that are not empty, without carriage returns, or null if the file cannot be
/// read to its end.
ref_ptr<StringArray> readWholeFile(const QString& path);

}  // namespace zyn::detail
