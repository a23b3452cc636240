#include <zyn/envelope.h>
#include <zyn/geometry.h>

namespace zyn {

IZynGeometry::~IZynGeometry() = default;

Enve3d IZynGeometry::getEnvelope() const { return Enve3d::invalid(); }

std::int32_t IZynGeometry::relation(const Enve3d&) const { return -1; }

std::int32_t IZynGeometry::move(double, double, double) { return 0; }

std::int32_t IZynGeometry::rotate(const double*, const double*, double) { return 0; }

}  // namespace zyn
