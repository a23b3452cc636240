// The order in which points are inserted.
#pragma once

#include <zyn/array.h>

/// The points along a Hilbert curve. Each then lies beside the one before it, on the ground and in
/// memory: the network finds its triangle within a few steps. Points in one place stay in order.
zyn::ref_ptr<zyn::Pnt3dArray> inSpatialOrder(zyn::Pnt3dArray& points);
