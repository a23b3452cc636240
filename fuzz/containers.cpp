// Arrays, pools and matrices, compared with vectors as the model, and colours with any numbers.
#include <zyn/color.h>
#include <zyn/matrix.h>
#include <zyn/pool.h>

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <numeric>
#include <utility>
#include <vector>

#include "array_run.h"
#include "bytes.h"

namespace {

using namespace zyn;

/// Returns small numbers mostly, otherwise any bits.
double number(Bytes& bytes) {
    const int kind = bytes.take();
    return kind < 230   ? kind % 17 - 8
           : kind < 245 ? double(bytes.take<float>())
                        : bytes.take<double>();
}

void runPool(Bytes& bytes) {
    constexpr std::size_t blockSize = 65536;
    const ref_ptr<IntPool> pool = newIntPool();
    std::vector<int> model;
    std::vector<int*> starts;  // of the blocks; they must not move
    for (int n = 0; n < 20 && !bytes.isEmpty() && model.size() < 200000; ++n) {
        const int kind = bytes.below(9), value = bytes.take<int>();
        std::vector<int> items(bytes.take<std::uint16_t>() * std::size_t(bytes.below(3)));
        std::iota(items.begin(), items.end(), value % 1000);
        if (kind > 6) { items = {value}; }
        if (kind == 3) { items = model; }
        if (kind == 2 || kind == 4) { model = items = {}; }
        const std::size_t count = items.size();
        const int number = int(count);
        std::vector<int*> pointers;
        for (int& item : items) { pointers.push_back(&item); }
        const ref_ptr<IntPool> other = newIntPool();
        other->append(items);
        (void)other->next();
        switch (kind) {
        case 0: FUZZ_REQUIRE(pool->append(items) == count); break;
        case 1:
            FUZZ_REQUIRE(pool->append(items.data(), number) == (number > 0 ? number : -1));
            break;
        case 2: pool->clear(); break;
        case 3: FUZZ_REQUIRE(pool->append(pool.get()) == count); break;
        case 4: pool->removeAll(); break;
        case 5: FUZZ_REQUIRE(pool->append(pointers) == count); break;
        case 6: FUZZ_REQUIRE(pool->append(other.get()) == count); break;
        default: FUZZ_REQUIRE(pool->contains(pool->append(value)));
        }
        model.insert(model.end(), items.begin(), items.end());
        if (model.empty()) { starts.clear(); }
        FUZZ_REQUIRE(pool->size() == model.size() && pool->at(model.size()) == nullptr);
        FUZZ_REQUIRE(pool->blockCount() ==
                     std::max<std::size_t>(1, (model.size() + blockSize - 1) / blockSize));
        pool->rewindBlocks();
        std::size_t walked = 0;
        for (std::size_t part = 0; (part = pool->currentBlockSize()) > 0; walked += part) {
            int* const block = pool->nextBlock();
            if (walked / blockSize == starts.size()) { starts.push_back(block); }
            FUZZ_REQUIRE(block == pool->at(walked) && block == starts[walked / blockSize]);
            FUZZ_REQUIRE(pool->contains(block) && !pool->contains(block + part));
            FUZZ_REQUIRE(std::memcmp(block, &model[walked], part * sizeof *block) == 0);
        }
        FUZZ_REQUIRE(walked == model.size() && pool->nextBlock() == nullptr);
        pool->rewind();
        for (const int v : model) { FUZZ_REQUIRE(*pool->next() == v); }
        FUZZ_REQUIRE(pool->next() == nullptr);
    }
}

/// Returns the determinant of whole numbers. Each division is exact: Bareiss, "Sylvester's identity
/// and multistep integer-preserving Gaussian elimination", 1968.
long long determinant(std::vector<std::vector<long long>> a) {
    long long last = 1, sign = 1;
    for (std::size_t k = 0; k < a.size(); ++k) {
        const auto pivot = std::find_if(a.begin() + std::ptrdiff_t(k), a.end(),
                                        [k](const auto& row) { return row[k] != 0; });
        if (pivot == a.end()) { return 0; }
        if (*pivot != a[k]) {
            std::swap(*pivot, a[k]);
            sign = -sign;
        }
        for (std::size_t i = k + 1; i < a.size(); ++i) {
            for (std::size_t j = k + 1; j < a.size(); ++j) {
                a[i][j] = (a[i][j] * a[k][k] - a[i][k] * a[k][j]) / last;
            }
        }
        last = a[k][k];
    }
    return sign * last;
}

/// Checks, for small whole numbers, that a regular matrix times its inverse is the unit matrix.
void requireInverse(const MatrixDbl& m, const MatrixDbl& inverse, bool isInverted) {
    const int n = m.rows();
    std::vector<std::vector<long long>> whole;
    double largest = 0;
    for (int r = 0; r < n; ++r) {
        whole.emplace_back();
        for (int c = 0; c < n; ++c) {
            const double v = m.get(r, c);
            if (!(std::abs(v) <= 8 && v == std::trunc(v))) { return; }
            whole.back().push_back(std::llround(v));
            largest = std::max(largest, std::abs(inverse.get(r, c)));
        }
    }
    const bool isRegular = determinant(whole) != 0;
    // Rounding can make a singular matrix regular; its inverse then has very large numbers.
    FUZZ_REQUIRE(isInverted ? isRegular || largest > 1e6 : !isRegular);
    for (int r = 0; r < n && isInverted && largest < 1e3; ++r) {
        for (int c = 0; c < n; ++c) {
            double sum = 0;
            for (int k = 0; k < n; ++k) { sum += m.get(r, k) * inverse.get(k, c); }
            FUZZ_REQUIRE(std::abs(sum - (r == c ? 1 : 0)) < 1e-6);
        }
    }
}

void runMatrix(Bytes& bytes) {
    const int rows = bytes.below(9) - 1, cols = bytes.below(4) > 0 ? rows : bytes.below(9) - 1;
    const ref_ptr<MatrixDbl> m = newMatrixDbl();
    FUZZ_REQUIRE(m->setSize(rows, cols) == (rows > 0 && cols > 0));
    matrix<double> copy(m->rows(), m->cols());
    const int size = m->rows() * m->cols();
    for (int i = 0; i < size; ++i) { copy.data()[i] = m->data()[i] = number(bytes); }
    const auto same = [](double a, double b) { return a == b || (std::isnan(a) && std::isnan(b)); };
    m->transpose();
    for (int r = 0, c = 0; r < m->rows(); c = (c + 1) % m->cols(), r += c == 0) {
        FUZZ_REQUIRE(same(m->get(r, c), copy.get(c, r)));
    }
    const int first = bytes.take<short>(), last = bytes.take<short>();
    (void)ref_ptr(m->subMatrix(first % 9, last % 9, last % 7, first % 7));
    (void)ref_ptr(m->normalized(number(bytes), number(bytes)));
    m->transpose();
    const bool isInverted = copy.invert();
    try {
        const ref_ptr<MatrixDbl> inverse(m->inverse());
        FUZZ_REQUIRE(std::equal(copy.data(), copy.data() + size, inverse->data(), same));
        requireInverse(*m, *inverse, isInverted);
    } catch (char*) { FUZZ_REQUIRE(m->rows() != m->cols() && !isInverted); }
    // Nothing is known of numbers that wrap around, except that nothing may crash.
    const ref_ptr<MatrixInt> wrapping = newMatrixInt();
    wrapping->setSize(rows, rows);
    for (int i = 0; i < wrapping->rows() * wrapping->cols(); ++i) {
        wrapping->data()[i] = bytes.take<int>();
    }
    (void)ref_ptr(wrapping->normalized(bytes.take<int>(), bytes.take<int>()));
    (void)wrapping->invert();
}

/// Compares products and sums of rows with plain loops.
void runProducts(Bytes& bytes) {
    const int rows = bytes.below(6) + 1, inner = bytes.below(6) + 1, cols = bytes.below(6) + 1;
    const bool fits = bytes.below(8) > 0;
    matrix<int> a(rows, inner), b(fits ? inner : inner + 1, cols);
    for (int i = 0; i < rows * inner; ++i) { a.data()[i] = bytes.take<int>(); }
    for (int i = 0; i < b.rows() * cols; ++i) { b.data()[i] = bytes.take<int>(); }
    const auto entry = [](auto& m, int r, int c) { return std::uint32_t(m.get(r, c)); };
    try {
        const matrix<int> product = a * b;
        FUZZ_REQUIRE(fits && product.rows() == rows && product.cols() == cols);
        for (int i = 0; i < rows * cols; ++i) {
            std::uint32_t sum = 0;
            for (int k = 0; k < inner; ++k) {
                sum += entry(a, i / cols, k) * entry(b, k, i % cols);
            }
            FUZZ_REQUIRE(entry(product, i / cols, i % cols) == sum);
        }
    } catch (char*) { FUZZ_REQUIRE(!fits); }
    const ref_ptr<MatrixInt> counted = newMatrixInt();
    FUZZ_REQUIRE(counted->assign(a));
    for (int r = 0; r < rows; ++r) {
        std::uint32_t sum = 0;
        for (int c = 0; c < inner; ++c) { sum += entry(a, r, c); }
        FUZZ_REQUIRE(std::uint32_t(counted->rowSum(r)) == sum);
        FUZZ_REQUIRE(counted->rowMin(r) <= a.get(r, 0) && a.get(r, 0) <= counted->rowMax(r));
    }
}

/// Converts colours there and back, from valid channels and from any numbers.
void runColors(Bytes& bytes) {
    while (!bytes.isEmpty()) {
        const double r = bytes.take() / 255.0, g = bytes.take() / 255.0, b = bytes.take() / 255.0;
        double h = 0, s = 0, v = 0, backR = 0, backG = 0, backB = 0;
        FUZZ_REQUIRE(RGB2HSV(r, g, b, &h, &s, &v) == 0);
        FUZZ_REQUIRE(HSV2RGB(h, s, v, &backR, &backG, &backB) == 0);
        FUZZ_REQUIRE(std::abs(backR - r) + std::abs(backG - g) + std::abs(backB - b) < 1e-12);
        const double x = number(bytes), y = number(bytes), z = number(bytes);
        const auto isShare = [](double c) { return c >= 0 && c <= 1; };
        const bool isColor = isShare(x) && isShare(y) && isShare(z);
        FUZZ_REQUIRE(RGB2HSV(x, y, z, &h, &s, &v) == (isColor ? 0 : -1));
        (void)HSV2RGB(x, y, z);
    }
}

void runGrade(Bytes& bytes) {
    const ref_ptr<IZynGradeColor> grade = newZynGradeColor();
    while (!bytes.isEmpty()) {
        const int kind = bytes.below(7), count = grade->getPegCount();
        const int index = bytes.below(2) == 0 ? bytes.take() % (count + 1) : bytes.take<int>();
        const float pos = kind % 2 == 0 ? bytes.take() / 200.0F - 0.1F : bytes.take<float>();
        const auto color = bytes.take<std::uint32_t>();
        switch (kind) {
        case 0: grade->setMode(index % 12); break;
        case 1: grade->setSteps(index); break;
        case 2: grade->removePeg(index); break;
        case 3: grade->setUseZero(index % 2); break;
        case 4: (void)grade->setPeg(index, color, pos); break;
        default: FUZZ_REQUIRE(grade->getPeg(grade->addPeg(color, pos)).color == color);
        }
        for (int i = 0; i < grade->getPegCount(); ++i) {
            const float low = i > 0 ? grade->getPeg(i - 1).pos : 0;
            FUZZ_REQUIRE(low <= grade->getPeg(i).pos && grade->getPeg(i).pos <= 1);
        }
        FUZZ_REQUIRE(grade->findSegment(pos) < grade->getPegCount());
        std::vector<ZynColor4b> table(64);
        if (!grade->fillTable(table.data(), 64)) { continue; }
        for (int i = 0; i < 64; ++i) {
            const std::uint32_t c = grade->getColor(float(i) / 64);
            const ZynColor4b t = table[std::size_t(i)];
            FUZZ_REQUIRE((c & 0xFFFFFF) == std::uint32_t(t.r | t.g << 8 | t.b << 16));
        }
    }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    Bytes bytes(data, size);
    switch (bytes.below(9)) {
    case 0: runArray(bytes, ref_ptr(newIntArray())); break;
    case 1: runArray(bytes, ref_ptr(newStringArray())); break;
    case 2: runArray(bytes, ref_ptr(newPnt3dArray())); break;
    case 3: runPool(bytes); break;
    case 4: runMatrix(bytes); break;
    case 5: runGrade(bytes); break;
    case 6: runArray(bytes, ref_ptr(newIntArrayArray())); break;
    case 7: runProducts(bytes); break;
    default: runColors(bytes);
    }
    return 0;
}
