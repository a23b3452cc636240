// The triangle records of both precisions. Compiled so that find, findRefine and the classifying
// find may be called on a null record.
#include "triangulation/triangle_flip.inl"
#include "triangulation/triangle_measure.inl"
#include "triangulation/triangle_ring.inl"
#include "triangulation/triangle_walk.inl"

namespace zyn {

template class TinRecord<float>;
template class TinRecord<double>;

}  // namespace zyn
