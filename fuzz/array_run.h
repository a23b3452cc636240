// Operations on an array against a vector as the model.
#pragma once

#include <zyn/array.h>

#include <QString>

#include <algorithm>
#include <concepts>
#include <cstdio>
#include <cstdlib>
#include <stdexcept>
#include <type_traits>
#include <vector>

#include "bytes.h"

using namespace zyn;

template <class E>
E element(Bytes& bytes) {
    if constexpr (std::same_as<E, QString>) {
        return QString(bytes.below(40), QChar(bytes.take<char16_t>()));
    } else if constexpr (std::same_as<E, XPnt3d>) {
        return {double(bytes.take()), 1, 2};
    } else if constexpr (std::same_as<E, IntArray*>) {
        // Few rows, so that an array holds them more than once, and null.
        static const ref_ptr<IntArray> rows[] = {newIntArray(), newIntArray(), newIntArray()};
        const int row = bytes.below(4);
        return row == 3 ? nullptr : rows[row].get();
    } else {
        return bytes.take<E>();
    }
}

/// A row counts by its array: it may not be replaced behind its back.
template <class E>
void setPlain(E& element) {
    if constexpr (!std::is_pointer_v<E>) { element = E(); }
}

template <class Array>
void runArray(Bytes& bytes, ref_ptr<Array> array) {
    using E = typename Array::value_type;
    std::vector<E> model;
    while (!bytes.isEmpty() && model.size() < 5000) {
        const int size = int(model.size()), kind = bytes.below(10), at = bytes.take() % (size + 1);
        const int to = at + bytes.take() % (size - at + 1), index = bytes.take<short>();
        const std::vector<E> before = model;
        std::vector<E> items(std::size_t(bytes.below(10)));
        for (E& item : items) { item = element<E>(bytes); }
        const E value = element<E>(bytes);
        const auto place = model.begin() + at;
        // Rows that a resize cuts off keep their counts, and would never go.
        const int rest = index % 256,
                  wanted = std::is_pointer_v<E> && rest >= 0 && rest < size ? size : rest;
        try {
            switch (kind) {
            case 0: array->append(items.data(), int(items.size())); break;
            case 1: array->append(array.get()); break;
            case 2: array->removeRange(at, to); break;
            case 3: array->resize(wanted); break;
            case 4: array->reserve(index); break;
            case 5: array = ref_ptr(array->clone()); break;
            case 6: array->assign(items.data(), int(items.size())); break;
            case 7: setPlain(array->getRef(index)); break;
            default: array->insert(at, value);
            }
            switch (kind) {
            case 0: model.insert(model.end(), items.begin(), items.end()); break;
            case 1: model.insert(model.end(), before.begin(), before.end()); break;
            case 2: model.erase(place, model.begin() + to); break;
            case 3: model.resize(std::size_t(wanted)); break;
            case 4:
            case 5: break;
            case 6: model = items; break;
            case 7: setPlain(model.at(std::size_t(index))); break;
            default: model.insert(place, value);
            }
        } catch (const std::out_of_range&) {
            FUZZ_REQUIRE(kind == 7 && (index < 0 || index >= size));
        } catch (const std::length_error&) { FUZZ_REQUIRE((kind == 3 || kind == 4) && index < 0); }
        FUZZ_REQUIRE(array->size() == int(model.size()) && array->capacity() >= array->size());
        FUZZ_REQUIRE(std::equal(array->begin(), array->end(), model.begin()));
    }
}
