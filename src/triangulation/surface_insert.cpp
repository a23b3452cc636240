// Whole arrays of points into an engine.
#include <zyn/progress.h>
#include <zyn/surface.h>

#include "triangulation/engine.h"
#include "triangulation/spatial_order.h"

#include <algorithm>
#include <vector>

namespace zyn {

template <class Real>
int addPoints(DelaunayInterface<Real>* interface, Pnt3Array<Real>* points,
              std::type_identity_t<Real> tolerance, IZynProgress* progress, IntArray* rejected) {
    auto* const engine = engineOf(interface);
    if (engine == nullptr || points == nullptr) { return 0; }
    const int count = points->size();
    XPnt3<Real>* const first = points->data();
    const std::vector<std::int32_t> order = hilbertOrder<Real>(first, count);
    engine->number(first, count);

    constexpr int part = 1024;  // points between two looks at the progress
    std::vector<std::int32_t> refused;
    if (progress != nullptr) { progress->setTotal(count); }
    int done = 0;
    while (done < count && !(progress != nullptr && progress->isCanceled())) {
        const int end = std::min(count, done + part);
        for (int n = done; n < end; ++n) {
            const std::int32_t index = order[static_cast<std::size_t>(n)];
            if (!engine->insert(first + index, tolerance)) { refused.push_back(index); }
        }
        if (progress != nullptr) { progress->step(end - done); }
        done = end;
    }
    if (rejected != nullptr) {
        std::sort(refused.begin(), refused.end());
        rejected->append(refused.data(), static_cast<int>(refused.size()));
    }
    return done - static_cast<int>(refused.size());
}

template int addPoints(DelaunayInterface<float>*, Pnt3fArray*, float, IZynProgress*, IntArray*);
template int addPoints(DelaunayInterface<double>*, Pnt3dArray*, double, IZynProgress*, IntArray*);

}  // namespace zyn
