// The instantiations of the engines and of the functions on them.
#include "triangulation/engine_compact.inl"
#include "triangulation/engine_enforce.inl"
#include "triangulation/engine_frame.inl"
#include "triangulation/engine_functions.inl"
#include "triangulation/engine_insert.inl"
#include "triangulation/engine_query.inl"
#include "triangulation/engine_remove.inl"
#include "triangulation/tin_file.inl"

namespace zyn::detail {

template class DelaunayEngine<float>;
template bool DelaunayEngine<float>::insert(Pnt*, float, Tri*, NoFixedEdges&);
template bool DelaunayEngine<float>::insert(Pnt*, float, Tri*, FixedEdges<float>&);

template class DelaunayEngine<double>;
template bool DelaunayEngine<double>::insert(Pnt*, double, Tri*, NoFixedEdges&);
template bool DelaunayEngine<double>::insert(Pnt*, double, Tri*, FixedEdges<double>&);

}  // namespace zyn::detail

namespace zyn {

template int vertexCount(DelaunayInterface<float>*);
template int allVertexCount(DelaunayInterface<float>*);
template int surfaceTriangleCount(DelaunayInterface<float>*);
template float surfaceArea(DelaunayInterface<float>*);
template float surfaceAreaHorizen(DelaunayInterface<float>*);
template bool bounds(DelaunayInterface<float>*, float&, float&, float&, float&, float&, float&);
template int compactVertices(DelaunayInterface<float>*);
template bool writeBinary(DelaunayInterface<float>*, const char*);
template bool writeText(DelaunayInterface<float>*, const char*);
template bool readBinary(DelaunayInterface<float>*, const char*, float*&, int&);
template bool readText(DelaunayInterface<float>*, const char*, float*&, int&);
template bool readBinary(DelaunayInterface<float>&, const char*);
template bool readText(DelaunayInterface<float>&, const char*);

template int vertexCount(DelaunayInterface<double>*);
template int allVertexCount(DelaunayInterface<double>*);
template int surfaceTriangleCount(DelaunayInterface<double>*);
template double surfaceArea(DelaunayInterface<double>*);
template double surfaceAreaHorizen(DelaunayInterface<double>*);
template bool bounds(DelaunayInterface<double>*, double&, double&, double&, double&, double&,
                     double&);
template int compactVertices(DelaunayInterface<double>*);
template bool writeBinary(DelaunayInterface<double>*, const char*);
template bool writeText(DelaunayInterface<double>*, const char*);
template bool readBinary(DelaunayInterface<double>*, const char*, double*&, int&);
template bool readText(DelaunayInterface<double>*, const char*, double*&, int&);
template bool readBinary(DelaunayInterface<double>&, const char*);
template bool readText(DelaunayInterface<double>&, const char*);

}  // namespace zyn
