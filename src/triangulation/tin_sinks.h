// Writers of the two encodings of a TIN file, part by part: head, counts, points, records.
#pragma once

#include "core/file_writer.h"
#include "core/little_endian.h"
#include "core/text_number.h"
#include "triangulation/tin_format.h"

#include <charconv>

namespace zyn::detail::tin_file {

class BinarySink : public FileWriter {
public:
    using FileWriter::FileWriter;

    void head() {
        text.append(magic);
        text.append(binaryHeadSize - magic.size(), '\0');
    }
    void count(std::int32_t n) { appendLittleEndian(text, n); }
    template <class Real>
    void point(const Real* p) {
        for (int axis = 0; axis < 3; ++axis) { appendLittleEndian(text, p[axis]); }
        flushIfFull();
    }
    void record(const Record& numbers) {
        for (const std::int32_t n : numbers) { appendLittleEndian(text, n); }
        flushIfFull();
    }
};

class TextSink : public FileWriter {
public:
    using FileWriter::FileWriter;

    void head() { text.append(magic).append("\n"); }
    void count(std::int32_t n) {
        appendNumber(text, n);
        text += '\n';
    }
    template <class Real>
    void point(const Real* p) {
        for (int axis = 0; axis < 3; ++axis) {
            appendNumber(text, p[axis], std::chars_format::general, significantDigits);
            text += axis < 2 ? '\t' : '\n';
        }
        flushIfFull();
    }
    void record(const Record& numbers) {
        for (const std::int32_t n : numbers) {
            appendNumber(text, n);
            text += '\t';
        }
        text += '\n';
        flushIfFull();
    }

private:
    static constexpr int significantDigits = 6;
};

}  // namespace zyn::detail::tin_file
