// Operations on an array, compared with a vector as the model.
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

/// Returns a few rows, so few that an array holds them more than once.
inline const std::vector<ref_ptr<IntArray>>& rows() {
    static const std::vector<ref_ptr<IntArray>> made{newIntArray(), newIntArray(), newIntArray()};
    return made;
}

template <class E>
E element(Bytes& bytes) {
    if constexpr (std::same_as<E, QString>) {
        return QString(bytes.below(40), QChar(bytes.take<char16_t>()));
    } else if constexpr (std::same_as<E, XPnt3d>) {
        return {double(bytes.take()), 1, 2};
    } else if constexpr (std::same_as<E, IntArray*>) {
        const std::size_t row = std::size_t(bytes.below(4));
        return row == rows().size() ? nullptr : rows()[row].get();
    } else {
        return bytes.take<E>();
    }
}

/// Resets an element in place. An array counts its rows, so a row must not be replaced that way.
template <class E>
void setPlain(E& element) {
    if constexpr (!std::is_pointer_v<E>) { element = E(); }
}

/// Checks that each row has one reference for each place in the array, and one for rows().
template <class E>
void requireCounts(const std::vector<E>& model) {
    if constexpr (std::is_pointer_v<E>) {
        for (const auto& row : rows()) {
            const auto places = std::count(model.begin(), model.end(), row.get());
            FUZZ_REQUIRE(row->referenceCount() == 1 + places);
        }
    }
}

template <class Array>
void runArray(Bytes& bytes, ref_ptr<Array> array) {
    using E = typename Array::value_type;
    std::vector<E> model;
    int room = 0;
    while (!bytes.isEmpty() && model.size() < 5000) {
        const int size = int(model.size()), drawn = bytes.below(14);
        const int kind = size == 0 && drawn >= 8 && drawn <= 10 ? 13 : drawn;
        const int at = bytes.take() % (size + 1), place = size == 0 ? 0 : at % size;
        const int to = at + bytes.take() % (size - at + 1), index = bytes.take<short>();
        const std::vector<E> before = model;
        std::vector<E> items(std::size_t(bytes.below(10)));
        for (E& item : items) { item = element<E>(bytes); }
        const E value = element<E>(bytes);
        // A resize does not release the rows that it cuts off, so they would leak.
        const int rest = index % 256,
                  wanted = std::is_pointer_v<E> && rest >= 0 && rest < size ? size : rest;
        try {
            int answer = -1;
            switch (kind) {
            case 0: answer = array->append(items.data(), int(items.size())); break;
            case 1: answer = array->append(array.get()); break;
            case 2: array->removeRange(at, to); break;
            case 3: array->resize(wanted); break;
            case 4: array->reserve(index); break;
            case 5: array = ref_ptr(array->clone()); break;
            case 6: answer = array->assign(items.data(), int(items.size())); break;
            case 7: setPlain(array->getRef(index)); break;
            case 8: array->removeFirst(); break;
            case 9: array->removeLast(); break;
            case 10: array->removeAt(place); break;
            case 11: array->removeAll(); break;
            case 12: answer = array->append(value); break;
            default: answer = array->insert(at, value);
            }
            switch (kind) {
            case 0: model.insert(model.end(), items.begin(), items.end()); break;
            case 1: model.insert(model.end(), before.begin(), before.end()); break;
            case 2: model.erase(model.begin() + at, model.begin() + to); break;
            case 3: model.resize(std::size_t(wanted)); break;
            case 4:
            case 5: break;
            case 6: model = items; break;
            case 7: setPlain(model.at(std::size_t(index))); break;
            case 8: model.erase(model.begin()); break;
            case 9: model.pop_back(); break;
            case 10: model.erase(model.begin() + place); break;
            case 11: model.clear(); break;
            case 12: model.push_back(value); break;
            default: model.insert(model.begin() + at, value);
            }
            FUZZ_REQUIRE(answer == -1 || answer == int(model.size()));
        } catch (const std::out_of_range&) {
            FUZZ_REQUIRE(kind == 7 && (index < 0 || index >= size));
        } catch (const std::length_error&) { FUZZ_REQUIRE((kind == 3 || kind == 4) && index < 0); }

        const int now = int(model.size());
        const auto half = [&room] { return room + room / 2; };
        switch (kind) {
        case 3: room = now > room ? std::max(now, half()) : room; break;
        case 4: room = std::max(room, index); break;
        case 5: room = now; break;
        case 6: room = std::max(room, now); break;
        default:
            while (room < now) { room = std::max(room + 1, half()); }
        }
        FUZZ_REQUIRE(array->size() == now && array->capacity() == room);
        FUZZ_REQUIRE((array->begin() == nullptr) == (room == 0));
        const bool isNull = now == 0 && !std::is_pointer_v<E>;
        FUZZ_REQUIRE(array->data() == (isNull ? nullptr : array->begin()));
        FUZZ_REQUIRE(std::equal(array->begin(), array->end(), model.begin()));
        requireCounts(model);
    }
}
