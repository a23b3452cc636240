// Counted objects that call a function when they end, and the array that holds references to them.
#pragma once

#include <zyn/array.h>

#include <functional>

struct TracedRow : zyn::ZynReferenced {
    ~TracedRow() override { onEnd(); }

    std::function<void()> onEnd = [] {};
};

class TracedRowArray : public zyn::TypedArray<TracedRowArray, TracedRow*> {};
