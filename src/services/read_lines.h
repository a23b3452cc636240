// Lines of a file, all of them or none.
#pragma once

#include <zyn/array.h>

class QString;

namespace zyn::detail {

/// The lines that are not empty, without carriage returns; null when the file cannot be read to its end.
ref_ptr<StringArray> readWholeFile(const QString& path);

}  // namespace zyn::detail
