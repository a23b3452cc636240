#include "point_sets.h"

#include <algorithm>
#include <cmath>
#include <functional>
#include <numbers>
#include <random>
#include <utility>

namespace support {
namespace {

constexpr int side = 60;  // points along a grid's side
constexpr int many = side * side;

class Maker {
public:
    explicit Maker(unsigned seed) : random(seed) {}

    double uniform(double low, double high) {
        return std::uniform_real_distribution(low, high)(random);
    }
    int whole(int low, int high) { return std::uniform_int_distribution(low, high)(random); }
    void add(double x, double y) { set.points.emplace_back(x, y, std::sin(x) + std::cos(y)); }
    void shuffle() { std::shuffle(set.points.begin(), set.points.end(), random); }

    void grid(const std::function<void(int, int)>& addNode) {
        for (int i = 0; i < side; ++i) {
            for (int j = 0; j < side; ++j) { addNode(i, j); }
        }
        shuffle();
    }
    /// `many` points in a square metre, on the nodes of a lattice of that spacing.
    void rounded(double x, double y, double perMetre) {
        for (int i = 0; i < many; ++i) {
            add(std::round((x + uniform(0, 1)) * perMetre) / perMetre,
                std::round((y + uniform(0, 1)) * perMetre) / perMetre);
        }
    }
    void spaced(double spacing) {
        grid([=, this](int i, int j) {
            add((i + uniform(-0.3, 0.3)) * spacing, (j + uniform(-0.3, 0.3)) * spacing);
        });
    }
    void frame(double minX, double minY, double maxX, double maxY) {
        set.minX = minX;
        set.minY = minY;
        set.maxX = maxX;
        set.maxY = maxY;
    }
    /// A frame that leaves that fraction of the extent free around the points.
    void frameWithMargin(double fraction = 0.1) {
        const auto [left, right] = std::ranges::minmax(set.points, {}, &zyn::XPnt3d::x);
        const auto [low, high] = std::ranges::minmax(set.points, {}, &zyn::XPnt3d::y);
        const double margin = fraction * std::max(right.x - left.x, high.y - low.y);
        frame(left.x - margin, low.y - margin, right.x + margin, high.y + margin);
    }

    PointSet set;

private:
    std::mt19937 random;
};

void clusters(Maker& m) {
    for (int c = 0; c < 20; ++c) {
        const double x = m.uniform(0, 1000), y = m.uniform(0, 1000);
        const double spread = std::pow(10.0, -m.uniform(0, 8));
        for (int i = 0; i < many / 20; ++i) {
            m.add(x + spread * m.uniform(-1, 1), y + spread * m.uniform(-1, 1));
        }
    }
}

void frameEdges(Maker& m) {
    m.frame(0, 0, 100, 70);
    for (int i = 0; i < 1000; ++i) {
        const double x = m.uniform(0, 100), y = m.uniform(0, 70);
        const std::pair<double, double> places[] = {{x, 0}, {100, y}, {x, 70}, {0, y}, {x, y}};
        m.add(places[i % 5].first, places[i % 5].second);
    }
}

void circle(Maker& m) {
    for (int i = 0; i < 2000; ++i) {
        const double angle = i * std::numbers::pi / 1000;
        m.add(500 * std::cos(angle), 500 * std::sin(angle));
    }
    m.shuffle();
}

void collinear(Maker& m) {
    for (int i = 0; i < 1000; ++i) {
        m.add(i, 500);
        m.add(i, 3 * i);
        m.add(i * 0.1, i * 0.7);
    }
    m.shuffle();
}

void spiral(Maker& m) {
    for (int i = 0; i < many; ++i) {
        const double turn = 0.05 * i;
        m.add(turn * std::cos(turn), turn * std::sin(turn));
    }
}

void scanLines(Maker& m) {
    for (int line = 0; line < 12; ++line) {
        for (int i = 0; i < 300; ++i) { m.add(0.01 * (line % 2 == 0 ? i : 299 - i), line); }
    }
}

/// New points, and after every third one of them again.
void duplicates(Maker& m, const std::function<double()>& place) {
    for (int i = 0; i < many; ++i) {
        m.add(place(), place());
        const zyn::XPnt3d again = m.set.points[std::size_t(m.whole(0, i))];
        if (i % 3 == 0) { m.add(again.x, again.y); }
    }
    m.set.duplicates = true;
}

using Fill = std::function<void(Maker&)>;
const std::vector<std::pair<std::string_view, Fill>> families{
    {"Uniform", [](Maker& m) { m.set = uniformPoints(many, unsigned(m.whole(0, 1 << 30))); }},
    {"Clusters", clusters},
    {"Grid", [](Maker& m) { m.grid([&m](int i, int j) { m.add(i, j); }); }},
    {"FineGrid", [](Maker& m) { m.grid([&m](int i, int j) { m.add(i * 1e-4, j * 1e-4); }); }},
    {"GridOnFrame",
     [](Maker& m) {
         m.grid([&m](int i, int j) { m.add(i * 0.1, j * 0.1); });
         m.frameWithMargin(0);
     }},
    {"TiltedGrid",
     [](Maker& m) { m.grid([&m](int i, int j) { m.add(0.8 * i - 0.6 * j, 0.6 * i + 0.8 * j); }); }},
    {"UlpGrid",
     [](Maker& m) {
         const auto nudge = [&m](double c) { return std::nextafter(c, m.whole(0, 1) * 2e3 - 1e3); };
         m.grid([&](int i, int j) { m.add(nudge(i + 1), nudge(j + 1)); });
     }},
    {"UtmMillimetres", [](Maker& m) { m.rounded(432100, 5411200, 1000); }},
    {"UtmDecimetres", [](Maker& m) { m.rounded(432100, 5411200, 10); }},
    {"Degrees", [](Maker& m) { m.rounded(8.5, 49.25, 1e5); }},
    {"SpacingNano", [](Maker& m) { m.spaced(1e-9); }},
    {"SpacingMilli", [](Maker& m) { m.spaced(1e-3); }},
    {"SpacingKilo", [](Maker& m) { m.spaced(1e3); }},
    {"SpacingGiga", [](Maker& m) { m.spaced(1e9); }},
    {"FrameEdges", frameEdges},
    {"Circle", circle},
    {"Duplicates", [](Maker& m) { duplicates(m, [&m] { return m.uniform(0, 30); }); }},
    {"LatticeDuplicates", [](Maker& m) { duplicates(m, [&m] { return m.whole(0, 30); }); }},
    {"Collinear", collinear},
    {"Spiral", spiral},
    {"ScanLines", scanLines},
};

}  // namespace

const std::vector<std::string_view>& pointSetNames() {
    static const auto names = [] {
        std::vector<std::string_view> result;
        for (const auto& [name, fill] : families) { result.push_back(name); }
        return result;
    }();
    return names;
}

PointSet makePointSet(std::string_view name, unsigned seed) {
    const auto family =
        std::ranges::find(families, name, &std::pair<std::string_view, Fill>::first);
    Maker maker(seed);
    family->second(maker);
    if (maker.set.minX == maker.set.maxX) { maker.frameWithMargin(); }
    return std::move(maker.set);
}

PointSet uniformPoints(int count, unsigned seed) {
    Maker maker(seed);
    for (int i = 0; i < count; ++i) { maker.add(maker.uniform(0, 1), maker.uniform(0, 1)); }
    std::ranges::sort(maker.set.points, {}, [](const zyn::XPnt3d& p) {
        const double strip = std::floor(100 * p.x);
        return std::pair(strip, std::fmod(strip, 2) == 0 ? p.y : -p.y);
    });
    maker.frameWithMargin();
    return std::move(maker.set);
}

}  // namespace support
