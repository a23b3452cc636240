#include <zyn/array.h>

namespace zyn {

namespace {

/// Returns the coordinates of each point of `source`, without its `inten`.
template <class T, class Array, class Source>
ref_ptr<Array> coordinatesOf(const Source* source, ref_ptr<Array> result) {
    const int count = source->size();
    result->reserve(count);
    for (int i = 0; i < count; ++i) {
        const auto p = source->get(i);
        result->append(XPnt3<T>(static_cast<T>(p.x), static_cast<T>(p.y), static_cast<T>(p.z)));
    }
    return result;
}

}  // namespace

ref_ptr<Pnt3fArray> Pnt3dToPnt3fArr(const Pnt3dArray* source) {
    return coordinatesOf<float>(source, ref_ptr(newPnt3fArray()));
}

ref_ptr<Pnt3dArray> Pnt3fToPnt3dArr(const Pnt3fArray* source) {
    return coordinatesOf<double>(source, ref_ptr(newPnt3dArray()));
}

ref_ptr<PPnt3fArray> PntsToPnt3f(Pnt3fArray* source) {
    ref_ptr<PPnt3fArray> result = newPPnt3fArray();
    const int count = source->size();
    result->reserve(count);
    for (int i = 0; i < count; ++i) { result->append(&source->getRef(i)); }
    return result;
}

ref_ptr<PPnt3fArray> PntsToPnt3f(std::vector<XPnt3f*> source) {
    ref_ptr<PPnt3fArray> result = newPPnt3fArray();
    result->assign(source.data(), static_cast<int>(source.size()));
    return result;
}

}  // namespace zyn
