// Walking through a network one triangle at a time, with a guaranteed end.
#pragma once

namespace zyn::detail {

/// Says what ended a walk.
enum class WalkEnd {
    arrived,   ///< the step stayed where it was
    left,      ///< the step returned null
    circling,  ///< a triangle came twice, so the walk would never end
};

/// Steps from `t` until the step stays, leaves the network, or runs in a circle. `t` is then the
/// last triangle. REQUIRES: the step depends on the triangle alone, and `t` is not null.
///
/// Such a step repeats for ever once a triangle comes twice. Brent's method detects that: it keeps
/// one triangle and replaces it at powers of two. It starts only after a few hundred steps, more
/// than a walk in a sound network takes.
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
