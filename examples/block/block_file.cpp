#include "block_file.h"

#include "fields.h"
#include "line_reader.h"

#include <cmath>
#include <string_view>

namespace {

/// Returns the numbers after the first word of the line, exactly `count` of them.
std::vector<double> numbersOf(LineReader& file, std::string_view rest, std::size_t count) {
    std::vector<double> numbers;
    while (!rest.empty()) {
        const std::string_view field = takeField(rest);
        const auto number = toNumber(field);
        if (!number || !isCoordinate(*number)) {
            file.fail(quoted(field) + " is not a number here");
        }
        numbers.push_back(*number);
    }
    if (numbers.size() != count) {
        file.fail(std::to_string(count) + " numbers are needed, not " +
                  std::to_string(numbers.size()));
    }
    return numbers;
}

/// Returns `number` as an index from 0 up to `limit`, exclusive.
int indexOf(LineReader& file, double number, std::size_t limit, const char* what) {
    if (number < 0 || number >= double(limit) || number != std::floor(number)) {
        file.fail(std::string("there is no such ") + what);
    }
    return int(number);
}

void readLine(LineReader& file, BlockFile& block) {
    std::string_view rest = file.line();
    const std::string_view key = takeField(rest);
    if (key == "camera") {
        const auto v = numbersOf(file, rest, 3);
        if (v[0] <= 0 || v[1] <= 0 || v[2] <= 0) {
            file.fail("the numbers of a camera must be above 0");
        }
        if (block.focalLength > 0) { file.fail("a block has one camera"); }
        block.focalLength = v[0];
        block.width = v[1];
        block.height = v[2];
    } else if (key == "image") {
        const auto v = numbersOf(file, rest, 6);
        zyn::zynCamOutParam& image = block.images.emplace_back();
        image.X = v[0];
        image.Y = v[1];
        image.Z = v[2];
        image.phi = v[3];
        image.omega = v[4];
        image.kappa = v[5];
    } else if (key == "point") {
        const auto v = numbersOf(file, rest, 3);
        block.points.emplace_back(v[0], v[1], v[2]);
    } else if (key == "bad") {
        const auto v = numbersOf(file, rest, 4);
        block.bad.push_back({indexOf(file, v[0], block.images.size(), "image"),
                             indexOf(file, v[1], block.points.size(), "point"),
                             {v[2], v[3]}});
    } else {
        file.fail(quoted(key) + " is not one of camera, image, point, bad");
    }
}

}  // namespace

BlockFile readBlock(const std::string& path) {
    LineReader file(path);
    BlockFile block;
    while (file.next()) {
        if (!file.line().empty() && file.line().front() != '#') { readLine(file, block); }
    }
    if (block.focalLength <= 0) { file.failWhole("has no camera"); }
    if (block.images.size() < 2) { file.failWhole("has fewer than two images"); }
    return block;
}
