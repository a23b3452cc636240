// Index arithmetic around a triangle, links between triangles, and the flip.
#pragma once

#include <zyn/tin.h>

namespace zyn::detail {

/// Hold (i + 1) % 3 and (i + 2) % 3. Index 3, "no corner", has the values of index 0.
inline constexpr int after[4] = {1, 2, 0, 1};
inline constexpr int before[4] = {2, 0, 1, 2};

/// Returns the index of `item` among three, or 3 if it is not there. Has no branch, since during an
/// insertion all three places are equally likely.
template <class T>
inline int placeOf(T* const (&three)[3], const T* item) {
    const unsigned first = three[0] != item;
    const unsigned second = first & unsigned(three[1] != item);
    const unsigned third = second & unsigned(three[2] != item);
    return int(first + second + third);
}

/// Replaces `from` by `to` among the neighbours of `t`. Does nothing if `t` is null or `from` is no
/// neighbour.
template <class Real>
inline void redirect(TinRecord<Real>* t, const TinRecord<Real>* from, TinRecord<Real>* to) {
    if (t == nullptr) { return; }
    const int slot = placeOf(t->neighbor, from);
    if (slot != 3) { t->neighbor[slot] = to; }
}

/// Replaces the edge between s and n by the other diagonal of their quadrilateral. s = (P, A, B)
/// with P at i becomes (P, A, Q); n = (Q, B, A) with Q at j becomes (Q, B, P). Both records stay in
/// place. REQUIRES: n is neighbor[i] of s, and s is neighbor[j] of n.
template <class Real>
[[gnu::always_inline]] inline void flipEdge(TinRecord<Real>* s, int i, TinRecord<Real>* n, int j) {
    s->vertex[before[i]] = n->vertex[j];
    n->vertex[before[j]] = s->vertex[i];
    TinRecord<Real>* const x = s->neighbor[after[i]];
    TinRecord<Real>* const y = n->neighbor[after[j]];
    s->neighbor[i] = y;
    n->neighbor[j] = x;
    s->neighbor[after[i]] = n;
    n->neighbor[after[j]] = s;
    redirect(x, s, n);
    redirect(y, n, s);
}

}  // namespace zyn::detail
