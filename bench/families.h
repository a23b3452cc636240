// The families of points for measurements of surfaces.
#pragma once

#include <zyn/point.h>

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <random>
#include <string>
#include <vector>

namespace bench {

using zyn::XPnt3d;

constexpr double extent = 1000.0;

using Points = std::vector<XPnt3d>;

inline double heightOf(double x, double y) {
    return 40 * std::sin(x / 60) * std::cos(y / 45) + x / 20;
}

inline Points uniform(std::size_t n, std::mt19937_64& random) {
    std::uniform_real_distribution<double> coordinate(0, extent);
    Points points;
    while (points.size() < n) {
        const double x = coordinate(random);
        points.emplace_back(x, coordinate(random));
    }
    return points;
}

inline Points clusters(std::size_t n, std::mt19937_64& random) {
    const Points centres = uniform(50, random);
    std::normal_distribution<double> offset(0, extent / 200);
    Points points;
    while (points.size() < n) {
        const XPnt3d& c = centres[points.size() % centres.size()];
        const double x = c.x + offset(random);
        points.emplace_back(x, c.y + offset(random));
    }
    std::shuffle(points.begin(), points.end(), random);
    return points;
}

inline Points rows(std::size_t n, std::mt19937_64&) {
    const auto side = static_cast<std::size_t>(std::sqrt(double(n)));
    Points points;
    for (std::size_t i = 0; i < side * side; ++i) {
        points.emplace_back(double(i % side), double(i / side));
    }
    return points;
}

inline Points grid(std::size_t n, std::mt19937_64& random) {
    Points points = rows(n, random);
    std::shuffle(points.begin(), points.end(), random);
    return points;
}

/// Makes lines of a scanner: dense along the line, a tenth as dense across.
inline Points scan(std::size_t n, std::mt19937_64& random) {
    const double step = extent / std::sqrt(10 * double(n));
    std::normal_distribution<double> noise(0, step / 20);
    Points points;
    for (double y = 0; points.size() < n; y += 10 * step) {
        for (double x = 0; x < extent && points.size() < n; x += step) {
            const double jitter = noise(random);
            points.emplace_back(x + jitter, y + noise(random));
        }
    }
    return points;
}

/// Repeats the shipped terrain side by side until there are enough points.
inline Points terrain(std::size_t n, std::mt19937_64&) {
    std::ifstream file(TERRAIN_FILE);
    std::string key;
    std::size_t columns = 0, lines = 0;
    double skipped = 0, noData = 0;
    file >> key >> columns >> key >> lines;
    while (file >> key && key != "NODATA_value" && key != "nodata_value") { file >> skipped; }
    file >> noData;
    Points tile;
    for (std::size_t i = 0; i < columns * lines; ++i) {
        double z = 0;
        if (file >> z && z != noData) {
            tile.emplace_back(double(i % columns), double(lines - 1 - i / columns), z);
        }
    }
    if (tile.empty()) {
        std::fprintf(stderr, "the terrain cannot be read\n");
        std::exit(1);
    }
    Points points;
    for (std::size_t i = 0; points.size() < n; ++i) {
        const double shiftX = double(i % 8 * columns), shiftY = double(i / 8 * lines);
        for (std::size_t k = 0; k < tile.size() && points.size() < n; ++k) {
            points.emplace_back(tile[k].x + shiftX, tile[k].y + shiftY, tile[k].z);
        }
    }
    return points;
}

struct Family {
    const char* name;
    Points (*make)(std::size_t, std::mt19937_64&);
};
constexpr Family families[] = {{"uniform", uniform}, {"clusters", clusters}, {"grid", grid},
                               {"rows", rows},       {"scan", scan},         {"terrain", terrain}};

}  // namespace bench
