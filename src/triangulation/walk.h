// Walking through a network one step at a time, with an end.
#pragma once

namespace zyn::detail {

/// What stopped a walk.
enum class WalkEnd {
    arrived,   ///< the step stayed where it was
    left,      ///< the step gave null
    circling,  ///< a triangle came twice, so the walk would never end
};

/// Steps from `t` until the step stays, leaves, or is seen to circle; `t` is then the last triangle.
/// REQUIRES: the step depends on the triangle alone, and `t` is not null.
///
/// A step that depends on nothing else goes round for ever as soon as a triangle comes twice. That
/// is found out by Brent's method, which keeps one triangle and replaces it at powers of two. The
/// first few hundred steps, more than a walk in a good network needs, run without it.
template <class Tri, class Step>
WalkEnd walk(Tri*& t, Step step) {
    Tri* seen = nullptr;
    for (unsigned long steps = 0, limit = 256;; ++steps) {
        Tri* const next = step(t);
        if (next == t) { return WalkEnd::arrived; }
        if (next == nullptr) { return WalkEnd::left; }
        t = next;
        if (t == seen) { return WalkEnd::circling; }
        if (steps == limit) {
            seen = t;
            limit *= 2;
        }
    }
}

}  // namespace zyn::detail
