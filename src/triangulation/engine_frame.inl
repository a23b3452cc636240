// DelaunayEngine: construction and the frame.
#pragma once

#include "triangulation/engine.h"

#include <algorithm>
#include <functional>
#include <iterator>

namespace zyn::detail {

template <class Real>
DelaunayEngine<Real>::DelaunayEngine(Real z, Real minX, Real minY, Real maxX, Real maxY)
    : frame{{minX, minY, z}, {maxX, minY, z}, {maxX, maxY, z}, {minX, maxY, z}} {
    frameChanged();
    Tri* const first = Pool::newTriangle({.vertex = {frame[0], frame[1], frame[2]}});
    first->neighbor[1] = Pool::newTriangle(
        {.vertex = {frame[2], frame[3], frame[0]}, .neighbor = {nullptr, first, nullptr}});
}

template <class Real>
void DelaunayEngine<Real>::frameChanged() {
    frameIsUsable = std::all_of(std::begin(frame), std::end(frame),
                                [](const Pnt& corner) { return isUsable(xyOf<Real>(corner)); });
}

template <class Real>
bool DelaunayEngine<Real>::isFrameVertex(const Real* p) const {
    const void* const address = p;
    return !std::less<>()(address, static_cast<const void*>(frame)) &&
           std::less<>()(address, static_cast<const void*>(std::end(frame)));
}

template <class Real>
bool DelaunayEngine<Real>::isFrameTriangle(const Tri* t) const {
    return t != nullptr && std::any_of(std::begin(t->vertex), std::end(t->vertex),
                                       [this](const Real* v) { return isFrameVertex(v); });
}

}  // namespace zyn::detail
