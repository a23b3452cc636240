// Counted objects that tell when they end, and the reference-holding array of them.
#pragma once

#include <zyn/array.h>

#include <functional>

struct TracedRow : zyn::ZynReferenced {
    ~TracedRow() override { onEnd(); }

    std::function<void()> onEnd = [] {};
};

class TracedRowArray : public zyn::TypedArray<TracedRowArray, TracedRow*> {};
