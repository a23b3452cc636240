// Whole files as strings, and numbers as bytes of binary files.
#pragma once

#include <fstream>
#include <iterator>
#include <string>

namespace support {

inline std::string contentOf(const std::string& path) {
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
}
/// Returns the bytes of numbers on a little-endian machine.
template <class... Numbers>
std::string bytes(Numbers... numbers) {
    std::string result;
    (result.append(reinterpret_cast<const char*>(&numbers), sizeof numbers), ...);
    return result;
}

}  // namespace support
