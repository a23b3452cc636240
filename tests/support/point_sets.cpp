#include "point_sets.h"

#include <zyn/network.h>

#include <algorithm>
#include <cmath>
#include <iterator>
#include <limits>
#include <numbers>
#include <random>
#include <utility>

namespace support {
namespace {

class Maker {
public:
    Maker(unsigned seed, int count_)
        : count(count_), side(int(std::ceil(std::sqrt(double(count))))), random(seed) {}

    double uniform(double low, double high) {
        return std::uniform_real_distribution(low, high)(random);
    }
    double across() { return uniform(0, side); }
    int whole(int low, int high) { return std::uniform_int_distribution(low, high)(random); }
    double sign() { return whole(0, 1) == 0 ? -1 : 1; }

    void add(double x, double y) { set.points.emplace_back(x, y, std::sin(x) + std::cos(y)); }
    [[nodiscard]] bool isFull() const { return int(set.points.size()) >= count; }
    /// Calls `addNext(i)` for i = 0, 1, ... until there are enough points.
    template <class AddNext>
    void each(AddNext addNext) {
        for (int i = 0; !isFull(); ++i) { addNext(i); }
        set.points.resize(std::size_t(count));
    }
    template <class AddNode>
    void grid(AddNode addNode) {
        each([=, this](int i) { addNode(i / side, i % side); });
        shuffle();
    }
    void uniformly() {
        each([this](int) { add(across(), across()); });
    }
    void shuffle() { std::shuffle(set.points.begin(), set.points.end(), random); }
    template <class Key>
    void sortBy(Key key) {
        std::ranges::sort(set.points, {}, key);
    }
    void frame(double minX, double minY, double maxX, double maxY) {
        set.minX = minX;
        set.minY = minY;
        set.maxX = maxX;
        set.maxY = maxY;
    }
    /// A frame that leaves a tenth of the extent free around the points.
    void frameWithMargin() {
        if (set.points.empty()) { return frame(0, 0, 1, 1); }
        const auto [left, right] = std::ranges::minmax(set.points, {}, &zyn::XPnt3d::x);
        const auto [low, high] = std::ranges::minmax(set.points, {}, &zyn::XPnt3d::y);
        const double extent = std::max(right.x - left.x, high.y - low.y);
        const double margin = std::max(0.1 * extent, 1.0);
        frame(left.x - margin, low.y - margin, right.x + margin, high.y + margin);
    }
    void place(const Scale& scale) {
        const auto placed = [&](double& c, double offset) {
            c = offset + scale.spacing * c;
            if (scale.lattice > 0) { c = std::round(c / scale.lattice) * scale.lattice; }
        };
        const auto nudged = [this](double c) {
            return std::nextafter(c, whole(-1, 1) == 0 ? c : sign() * HUGE_VAL);
        };
        for (zyn::XPnt3d& p : set.points) {
            placed(p.x, scale.x);
            placed(p.y, scale.y);
            if (isNudged) { p.set(nudged(p.x), nudged(p.y), p.z); }
        }
        for (double* const c : {&set.minX, &set.maxX}) { placed(*c, scale.x); }
        for (double* const c : {&set.minY, &set.maxY}) { placed(*c, scale.y); }
    }

    PointSet set;
    int count, side;
    bool isNudged = false;  ///< each coordinate moves to the next number up or down, or stays

private:
    std::mt19937 random;
};

// Orders of uniform points

void strips(Maker& m) {
    m.uniformly();
    const double width = m.side / 100.0;
    m.sortBy([width](const zyn::XPnt3d& p) {
        const double strip = std::floor(p.x / width);
        return std::pair(strip, std::fmod(strip, 2) == 0 ? p.y : -p.y);
    });
}
void sortedByX(Maker& m) {
    m.uniformly();
    m.sortBy(&zyn::XPnt3d::x);
}
void sortedDown(Maker& m) {
    m.uniformly();
    m.sortBy([](const zyn::XPnt3d& p) { return std::pair(-p.y, -p.x); });
}
void hilbert(Maker& m) {
    m.uniformly();
    const zyn::ref_ptr<zyn::Pnt3dArray> points = zyn::newPnt3dArray();
    for (const zyn::XPnt3d& p : m.set.points) { points->append(p); }
    zyn::spatialSort(points.get());
    std::copy(points->begin(), points->end(), m.set.points.begin());
}

// On lines and circles

void line(Maker& m, double dx, double dy) {
    m.each([&m, dx, dy](int i) { m.add(i * dx, i * dy); });
    m.shuffle();
}
void circle(Maker& m, int rings) {
    m.each([&](int i) {
        const double angle = i * 2 * std::numbers::pi / m.count, radius = m.side * (i % rings + 1);
        m.add(radius * std::cos(angle), radius * std::sin(angle));
    });
    m.shuffle();
}
void spiral(Maker& m) {
    m.each([&m](int i) { m.add(0.05 * i * std::cos(0.05 * i), 0.05 * i * std::sin(0.05 * i)); });
}
void scanLines(Maker& m) {
    m.each([&m](int i) {
        const int onLine = 5 * m.side, line = i / onLine, at = i % onLine;
        m.add(0.1 * (line % 2 == 0 ? at : onLine - 1 - at), line);
    });
}
void denseLines(Maker& m) {
    m.each([&m](int i) {
        const int onLine = i / 3;
        m.add(onLine * 1e-3 + 20 * (onLine / 100), 50 * (i % 3));
    });
}

// Clusters and near duplicates

void clusters(Maker& m, int number, double finest) {
    m.each([&, x = 0.0, y = 0.0, spread = 0.0](int i) mutable {
        if (i % ((m.count + number - 1) / number) == 0) {
            x = 20 * m.across();
            y = 20 * m.across();
            spread = std::pow(10.0, m.uniform(finest, 0));
        }
        m.add(x + spread * m.uniform(-1, 1), y + spread * m.uniform(-1, 1));
    });
}
void outlier(Maker& m) {
    m.each([&m](int i) { m.add(1e-4 * m.across(), i == m.count / 2 ? 1e4 : 1e-4 * m.across()); });
}
/// Repeats every third point.
void duplicates(Maker& m, bool onLattice) {
    m.each([&](int i) {
        m.add(onLattice ? m.whole(0, m.side / 2) : m.across(),
              onLattice ? m.whole(0, m.side / 2) : m.across());
        const zyn::XPnt3d again = m.set.points[std::size_t(m.whole(0, i))];
        if (i % 3 == 0) { m.add(again.x, again.y); }
    });
    m.set.duplicates = true;
}
void nearDuplicates(Maker& m) {
    m.each([&m](int i) {
        const zyn::XPnt3d again =
            i == 0 ? zyn::XPnt3d() : m.set.points[std::size_t(m.whole(0, i - 1))];
        i % 3 == 0 ? m.add(m.across(), m.across()) : m.add(again.x, again.y);
    });
    m.isNudged = true;
}

// Coordinates of very different sizes

void magnitudes(Maker& m, double least, double most) {
    const auto number = [&] { return m.sign() * std::pow(10.0, m.uniform(least, most)); };
    m.each([&](int) { m.add(number(), number()); });
}

// Near the frame and on it

void gridOnFrame(Maker& m) {
    const int end = std::max(m.side - 1, 1);
    m.frame(0, 0, end, end);
    m.grid([&m](int i, int j) { m.add(i, j); });
}
void frameEdges(Maker& m) {
    m.frame(0, 0, 100, 70);
    m.each([&m](int i) {
        const double x = m.uniform(0, 100), y = m.uniform(0, 70);
        const std::pair<double, double> places[] = {{x, 0}, {100, y}, {x, 70}, {0, y}, {x, y}};
        m.add(places[i % 5].first, places[i % 5].second);
    });
}
void oneFrameEdge(Maker& m) {
    m.frame(0, 0, 100, 70);
    m.each([&m](int) { m.add(m.uniform(0, 100), 70); });
}
void outsideFrame(Maker& m) {
    m.uniformly();
    m.frame(0.25 * m.side, 0.25 * m.side, 0.75 * m.side + 1, 0.75 * m.side + 1);
}
void notFinite(Maker& m) {
    m.uniformly();
    m.frame(-1, -1, m.side + 1, m.side + 1);
    const double bad[] = {std::nan(""), HUGE_VAL, -HUGE_VAL};
    for (zyn::XPnt3d& p : m.set.points) {
        double* const coordinates = p;
        if (m.whole(0, 3) == 0) { coordinates[m.whole(0, 2)] = bad[m.whole(0, 2)]; }
    }
}

struct Family {
    std::string_view name;
    void (*fill)(Maker&);
};
constexpr Family families[] = {
    {"Uniform", strips},
    {"RandomOrder", [](Maker& m) { m.uniformly(); }},
    {"SortedByX", sortedByX},
    {"SortedDown", sortedDown},
    {"HilbertOrder", hilbert},
    {"OnAxis", [](Maker& m) { line(m, 1, 0); }},
    {"Oblique", [](Maker& m) { line(m, 1, 3); }},
    {"AlmostOnALine", [](Maker& m) { line(m, 0.1, 0.7); }},
    {"Circle", [](Maker& m) { circle(m, 1); }},
    {"Rings", [](Maker& m) { circle(m, 7); }},
    {"Spiral", spiral},
    {"ScanLines", scanLines},
    {"DenseLines", denseLines},
    {"Grid", [](Maker& m) { m.grid([&m](int i, int j) { m.add(i, j); }); }},
    {"FineGrid", [](Maker& m) { m.grid([&m](int i, int j) { m.add(i * 1e-4, j * 1e-4); }); }},
    {"TiltedGrid",
     [](Maker& m) { m.grid([&m](int i, int j) { m.add(0.8 * i - 0.6 * j, 0.6 * i + 0.8 * j); }); }},
    {"UlpGrid",
     [](Maker& m) {
         m.grid([&m](int i, int j) { m.add(i + 1, j + 1); });
         m.isNudged = true;
     }},
    {"RefusedDuplicates",
     [](Maker& m) {
         m.each([&m](int) { m.add(m.whole(0, m.side / 2), m.whole(0, m.side / 2)); });
     }},
    {"Duplicates", [](Maker& m) { duplicates(m, false); }},
    {"LatticeDuplicates", [](Maker& m) { duplicates(m, true); }},
    {"NearDuplicates", nearDuplicates},
    {"Clusters", [](Maker& m) { clusters(m, 20, -8); }},
    {"Outlier", outlier},
    {"MixedSigns", [](Maker& m) { magnitudes(m, -9, 3); }},
    {"Subnormals", [](Maker& m) { magnitudes(m, -323, 2); }},
    {"GridOnFrame", gridOnFrame},
    {"FrameEdges", frameEdges},
    {"OneFrameEdge", oneFrameEdge}};
constexpr Family wildFamilies[] = {{"OutsideFrame", outsideFrame}, {"NotFinite", notFinite}};

template <std::size_t number>
std::span<const std::string_view> namesOf(const Family (&all)[number]) {
    static const std::vector<std::string_view> names = [&] {
        std::vector<std::string_view> result;
        std::ranges::transform(all, std::back_inserter(result), &Family::name);
        return result;
    }();
    return names;
}

}  // namespace

std::span<const std::string_view> pointSetNames() { return namesOf(families); }
std::span<const std::string_view> wildPointSetNames() { return namesOf(wildFamilies); }

PointSet makePointSet(std::string_view name, unsigned seed, int count, const Scale& scale) {
    Maker maker(seed, count);
    const auto* family = std::ranges::find(families, name, &Family::name);
    if (family == std::end(families)) {
        family = std::ranges::find(wildFamilies, name, &Family::name);
    }
    family->fill(maker);
    if (maker.set.minX == maker.set.maxX) { maker.frameWithMargin(); }
    maker.place(scale);
    return std::move(maker.set);
}

PointSet uniformPoints(int count, unsigned seed) {
    return makePointSet("Uniform", seed, count, {"", 1 / std::ceil(std::sqrt(double(count)))});
}

}  // namespace support
