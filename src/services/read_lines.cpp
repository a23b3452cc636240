#include "services/read_lines.h"

#include <QFile>
#include <QTextStream>

namespace zyn::detail {

ref_ptr<StringArray> readWholeFile(const QString& path) {
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly | QIODevice::Text)) { return nullptr; }
    const ref_ptr<StringArray> lines = newStringArray();
    QTextStream stream(&file);
    for (QString line; stream.readLineInto(&line);) {
        if (!line.isEmpty()) { lines->append(line); }
    }
    return file.error() == QFileDevice::NoError ? lines : nullptr;
}

}  // namespace zyn::detail
