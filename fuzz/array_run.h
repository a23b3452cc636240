// Operations on an array against a vector as the model.
#pragma once

#include <zyn/array.h>

#include <QString>

#include <algorithm>
#include <concepts>
#include <cstdio>
#include <cstdlib>
#include <stdexcept>
#include <vector>

#include "bytes.h"

template <class E>
E element(Bytes& bytes) {
    if constexpr (std::same_as<E, QString>) {
        return QString(bytes.below(40), QChar(bytes.take<char16_t>()));
    } else if constexpr (std::same_as<E, zyn::XPnt3d>) {
        return {double(bytes.take()), 1, 2};
    } else {
        return bytes.take<E>();
    }
}

template <class Array>
void runArray(Bytes& bytes, zyn::ref_ptr<Array> array) {
    using E = typename Array::value_type;
    std::vector<E> model;
    while (!bytes.isEmpty() && model.size() < 5000) {
        const int size = int(model.size()), kind = bytes.below(10), at = bytes.take() % (size + 1);
        const int to = at + bytes.take() % (size - at + 1), index = bytes.take<short>();
        const std::vector<E> items(std::size_t(bytes.below(10)), element<E>(bytes)), before = model;
        const auto place = model.begin() + at;
        try {
            switch (kind) {
            case 0: array->append(items.data(), int(items.size())); break;
            case 1: array->append(array.get()); break;
            case 2: array->removeRange(at, to); break;
            case 3: array->resize(index % 256); break;
            case 4: array->reserve(index); break;
            case 5: array = zyn::ref_ptr(array->clone()); break;
            case 6: array->assign(items.data(), int(items.size())); break;
            case 7: array->getRef(index) = E(); break;
            default: array->insert(at, element<E>(bytes));
            }
            switch (kind) {
            case 0: model.insert(model.end(), items.begin(), items.end()); break;
            case 1: model.insert(model.end(), before.begin(), before.end()); break;
            case 2: model.erase(place, model.begin() + to); break;
            case 3: model.resize(std::size_t(index % 256)); break;
            case 4:
            case 5: break;
            case 6: model = items; break;
            case 7: model.at(std::size_t(index)) = E(); break;
            default: model.insert(place, array->get(at));
            }
        } catch (const std::out_of_range&) {
            FUZZ_REQUIRE(kind == 7 && (index < 0 || index >= size));
        } catch (const std::length_error&) { FUZZ_REQUIRE((kind == 3 || kind == 4) && index < 0); }
        FUZZ_REQUIRE(array->size() == int(model.size()) && array->capacity() >= array->size());
        FUZZ_REQUIRE(std::equal(array->begin(), array->end(), model.begin()));
    }
}
