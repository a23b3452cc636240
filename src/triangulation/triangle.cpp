// The triangle records of both precisions. This unit is built so that a member may be called on a
// null record: find, findRefine and the classifying find answer there.
#include "triangulation/triangle_flip.inl"
#include "triangulation/triangle_measure.inl"
#include "triangulation/triangle_ring.inl"
#include "triangulation/triangle_walk.inl"

namespace zyn {

template class TinRecord<float>;
template class TinRecord<double>;

}  // namespace zyn
