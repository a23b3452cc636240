// Measurement of the time and memory of one operation.
#pragma once

#include <algorithm>
#include <chrono>
#include <cstddef>
#include <vector>

namespace bench {

/// Bytes on the heap now, and the most since the last resetPeak(). The program's own operator new
/// counts them, so both sides of a comparison are measured alike.
[[nodiscard]] std::size_t liveBytes();
[[nodiscard]] std::size_t peakBytes();
void resetPeak();

/// Returns the seconds that `operation` takes.
template <class Operation>
double seconds(Operation operation) {
    const auto start = std::chrono::steady_clock::now();
    operation();
    return std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
}

inline double median(std::vector<double> values) {
    const auto middle = values.begin() + static_cast<std::ptrdiff_t>(values.size() / 2);
    std::nth_element(values.begin(), middle, values.end());
    return *middle;
}

}  // namespace bench
