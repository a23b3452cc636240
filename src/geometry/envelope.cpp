#include <zyn/envelope.h>
#include <zyn/geometry.h>

#include <cmath>
#include <utility>

namespace zyn {

namespace {

bool within(double v, double lo, double hi) { return lo <= v && v <= hi; }

/// Returns whether `e` is within the bounds of x and y, bounds included.
template <class Box>
bool coversInPlan(const Box& box, const Enve2d& e) {
    return box.minX <= e.minX && e.maxX <= box.maxX && box.minY <= e.minY && e.maxY <= box.maxY;
}

/// Returns whether the bounds of x and y overlap with positive width.
template <class Box>
bool overlapsInPlan(const Box& box, const Enve2d& e) {
    return e.maxX > box.minX && box.maxX > e.minX && e.maxY > box.minY && box.maxY > e.minY;
}

void order(double& lo, double& hi) {
    if (lo > hi) { std::swap(lo, hi); }
}

/// Returns the bounds of axis 0, 1 or 2.
std::pair<double, double> axisBounds(const Enve3d& e, int axis) {
    switch (axis) {
    case 0: return {e.minX, e.maxX};
    case 1: return {e.minY, e.maxY};
    default: return {e.minZ, e.maxZ};
    }
}

/// Returns whether the segment a-b reaches a bound of `axis` and the line through a and b crosses a
/// side of `e` perpendicular to that axis.
bool crossesSide(const Enve3d& e, const XPnt3d& a, const XPnt3d& b, int axis) {
    const auto [lo, hi] = axisBounds(e, axis);
    if (!isIntersect(a[axis], b[axis], lo, hi)) { return false; }
    const auto coversLineAt = [&](double bound) {
        const double t = (bound - a[axis]) / (b[axis] - a[axis]);
        for (const int other : {(axis + 1) % 3, (axis + 2) % 3}) {
            const auto [otherLo, otherHi] = axisBounds(e, other);
            if (!within(a[other] + t * (b[other] - a[other]), otherLo, otherHi)) { return false; }
        }
        return true;
    };
    return coversLineAt(hi) || coversLineAt(lo);
}

}  // namespace

// Enve2d

XPnt2d Enve2d::getCorner(int i) const noexcept {
    switch (i) {
    case 0: return LeftBottomCorner();
    case 1: return RightBottomCorner();
    case 2: return RightTopCorner();
    case 3: return LeftTopCorner();
    default: return XPnt2d::invalidPnt();
    }
}

Enve3d Enve2d::getEnve3d() const noexcept { return {minX, minY, 0.0, maxX, maxY, 0.0}; }

bool Enve2d::operator<(const Enve2d& e) const noexcept {
    if (area() != e.area()) { return area() < e.area(); }
    const double sum = minX + maxX + minY + maxY;
    const double otherSum = e.minX + e.maxX + e.minY + e.maxY;
    return sum != otherSum ? sum < otherSum : minX < e.minX;
}

void Enve2d::extend(double d) noexcept { *this = Enve2d(minX - d, minY - d, maxX + d, maxY + d); }

void Enve2d::extendPercent(double p) noexcept {
    const double w = width() * p;
    const double h = hight() * p;
    *this = Enve2d(minX - w, minY - h, maxX + w, maxY + h);
}

void Enve2d::offset(double dx, double dy) noexcept {
    *this = Enve2d(minX + dx, minY + dy, maxX + dx, maxY + dy);
}

void Enve2d::ScaleX(double s) noexcept { Scale(s, 1.0); }
void Enve2d::ScaleY(double s) noexcept { Scale(1.0, s); }

void Enve2d::Scale(double sx, double sy) noexcept {
    *this = Enve2d(minX * sx, minY * sy, maxX * sx, maxY * sy);
}

Enve2d& Enve2d::operator*=(double s) noexcept {
    Scale(s, s);
    return *this;
}

void Enve2d::Normalize() noexcept {
    order(minX, maxX);
    order(minY, maxY);
}

bool Enve2d::isCover(const Enve2d& e) const noexcept { return coversInPlan(*this, e); }

bool Enve2d::isCover(double x, double y) const noexcept {
    return minX <= x && x < maxX && minY <= y && y < maxY;
}

bool Enve2d::isIntersect(const Enve2d& e) const noexcept { return overlapsInPlan(*this, e); }

bool Enve2d::isIntersect(const XPnt2d& a, const XPnt2d& b) const noexcept {
    return isRayIntersect(a, b) && !(isCover(a.x, a.y) && isCover(b.x, b.y));
}

bool Enve2d::isRayIntersect(const XPnt2d& a, const XPnt2d& b) const noexcept {
    for (int i = 0; i < 4; ++i) {
        if (intersect_seg(a, b, getCorner(i), getCorner((i + 1) % 4))) { return true; }
    }
    return false;
}

// Enve3d

double Enve3d::area() const noexcept {
    return 2 * (Width() * HightY() + Width() * HightZ() + HightY() * HightZ());
}

double Enve3d::Volume() const noexcept { return Width() * HightY() * HightZ(); }

double Enve3d::getDiagonal() const noexcept {
    return std::sqrt(Width() * Width() + HightY() * HightY() + HightZ() * HightZ());
}

bool Enve3d::operator<(const Enve3d& e) const noexcept {
    if (Volume() != e.Volume()) { return Volume() < e.Volume(); }
    if (area() != e.area()) { return area() < e.area(); }
    const double sum = minX + maxX + minY + maxY + minZ + maxZ;
    const double otherSum = e.minX + e.maxX + e.minY + e.maxY + e.minZ + e.maxZ;
    return sum != otherSum ? sum < otherSum : minX < e.minX;
}

void Enve3d::Extend(double d) noexcept {
    *this = Enve3d(minX - d, minY - d, minZ - d, maxX + d, maxY + d, maxZ + d);
}

void Enve3d::offset(double dx, double dy, double dz) noexcept {
    *this = Enve3d(minX + dx, minY + dy, minZ + dz, maxX + dx, maxY + dy, maxZ + dz);
}

void Enve3d::ScaleX(double s) noexcept {
    minX *= s;
    maxX *= s;
}

void Enve3d::ScaleY(double s) noexcept {
    minY *= s;
    maxY *= s;
}

void Enve3d::ScaleZ(double s) noexcept {
    minZ *= s;
    maxZ *= s;
}

void Enve3d::Normalize() noexcept {
    order(minX, maxX);
    order(minY, maxY);
    order(minZ, maxZ);
}

bool Enve3d::isCover(double x, double y, double z) const noexcept {
    return within(x, minX, maxX) && within(y, minY, maxY) && within(z, minZ, maxZ);
}

bool Enve3d::isXYCover(double x, double y) const noexcept {
    return within(x, minX, maxX) && within(y, minY, maxY);
}

bool Enve3d::isXZCover(double x, double z) const noexcept {
    return within(x, minX, maxX) && within(z, minZ, maxZ);
}

bool Enve3d::isYZCover(double y, double z) const noexcept {
    return within(y, minY, maxY) && within(z, minZ, maxZ);
}

bool Enve3d::isCover(const Enve2d& e) const noexcept { return coversInPlan(*this, e); }

bool Enve3d::isCover(const Enve3d& e) const noexcept {
    return isIntersect(minX, maxX, e.minX, e.maxX) && isIntersect(minY, maxY, e.minY, e.maxY) &&
           isIntersect(minZ, maxZ, e.minZ, e.maxZ);
}

bool Enve3d::isIntersected(const Enve2d& e) const noexcept { return overlapsInPlan(*this, e); }

bool Enve3d::isIntersected(const XPnt3d& a, const XPnt3d& b) const noexcept {
    if (isCover(a) && isCover(b)) { return true; }
    constexpr int x = 0, y = 1, z = 2;
    return crossesSide(*this, a, b, z) || crossesSide(*this, a, b, x) ||
           crossesSide(*this, a, b, y);
}

Enve3d Enve3d::intersect(const Enve3d& e) const noexcept {
    if (!isCover(e)) { return invalid(); }
    return {std::max(minX, e.minX), std::max(minY, e.minY), std::max(minZ, e.minZ),
            std::min(maxX, e.maxX), std::min(maxY, e.maxY), std::min(maxZ, e.maxZ)};
}

// Free functions

Enve2d Union(const Enve2d& a, const Enve2d& b) noexcept {
    Enve2d both = a;
    both.Union(b);
    return both;
}

Enve3d Union(const Enve3d& a, const Enve3d& b) noexcept {
    Enve3d both = a;
    both.Union(b);
    return both;
}

bool isIntersect(double a0, double a1, double b0, double b1) noexcept {
    const bool above = a0 > b1 && a1 > b1;
    const bool below = b0 > a0 && b0 > a1;
    const bool strictlyInside = b0 < a0 && a0 < b1 && b0 < a1 && a1 < b1;
    return a0 != a1 && !above && !below && !strictlyInside;
}

bool isCover(double a0, double a1, double b0, double b1) noexcept {
    return !(a0 >= b1 && a1 >= b1) && !(a0 <= b0 && a1 <= b0);
}

}  // namespace zyn
