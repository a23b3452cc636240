// The implementation behind the typed pools, which callers reach through virtual calls only. A
// family creates its factories from it, one line each:
//
//     IntPool* newIntPool() { return new ZynPoolImp<IntPool>(poolBlockSize); }
#pragma once

#include <zyn/pool.h>

#include <algorithm>
#include <cstddef>
#include <functional>
#include <iterator>
#include <limits>
#include <utility>
#include <vector>

namespace zyn::detail {

inline constexpr std::size_t poolBlockSize = 65536;

/// Holds at least one block. All blocks except the last are full. A block has room for all its
/// elements from the start, so that no element ever moves.
template <class Derived>
class ZynPoolImp final : public Derived {
public:
    using E = typename Derived::value_type;
    using Derived::append;

    explicit ZynPoolImp(std::size_t size) : blockSize(size) { clear(); }
    ZynPoolImp(const ZynPoolImp&) = delete;
    ZynPoolImp& operator=(const ZynPoolImp&) = delete;

    void removeAll() override { clear(); }

    std::size_t size() const override {
        return (blocks.size() - 1) * blockSize + blocks.back().size();
    }
    std::size_t blockCount() const override { return blocks.size(); }

    // Appending a pool to itself moves its end with each element, so the cursor alone would never
    // reach it.
    std::size_t append(Derived* other) override {
        const std::size_t count = other->size();
        other->rewind();
        for (std::size_t n = 0; other != this || n < count; ++n) {
            const E* const value = other->next();
            if (value == nullptr) { break; }
            append(*value);
        }
        return count;
    }
    int append(const E* items, int count) override {
        if (items == nullptr || count < 1) { return -1; }
        appendAll(items, static_cast<std::size_t>(count));
        return count;
    }
    E* append(const E& value) override {
        if (blocks.back().size() == blockSize) { blocks.push_back(newBlock()); }
        return &blocks.back().emplace_back(value);
    }
    std::size_t append(const std::vector<E>& values) override {
        if (!values.empty()) { appendAll(values.data(), values.size()); }
        return values.size();
    }
    std::size_t append(const std::vector<E*>& values) override {
        for (const E* const value : values) { append(*value); }
        return values.size();
    }

    E* at(std::size_t index) override {
        const std::size_t block = index / blockSize, place = index % blockSize;
        return block < blocks.size() && place < blocks[block].size() ? &blocks[block][place]
                                                                     : nullptr;
    }
    void clear() override {
        std::vector<Block> fresh;
        fresh.push_back(newBlock());
        blocks = std::move(fresh);
        rewind();
        rewindBlocks();
    }

    E* next() override {
        if (element == endOf(elementBlock)) {
            if (elementBlock + 1 == blocks.size() || blocks[elementBlock + 1].empty()) {
                return nullptr;
            }
            element = blocks[++elementBlock].data();
        }
        return element++;
    }
    void rewind() override {
        elementBlock = 0;
        element = blocks.front().data();
    }

    E* nextBlock() override {
        if (currentBlockSize() == 0) { return nullptr; }
        E* const start = blocks[walkedBlock].data();
        walkedBlock = walkedBlock + 1 < blocks.size() ? walkedBlock + 1 : atEnd;
        return start;
    }
    void rewindBlocks() override { walkedBlock = 0; }
    std::size_t currentBlockSize() const override {
        return walkedBlock == atEnd ? 0 : blocks[walkedBlock].size();
    }

    bool contains(const E* address) const override {
        return std::any_of(blocks.begin(), blocks.end(), [address](const Block& block) {
            return !std::less<>()(address, block.data()) &&
                   std::less<>()(address, block.data() + block.size());
        });
    }
    std::size_t getBlockSize() const override { return blockSize; }

    /// Appends a default element and returns its address.
    E* allocate() { return append(E()); }

private:
    using Block = std::vector<E>;

    static constexpr std::size_t atEnd = std::numeric_limits<std::size_t>::max();

    Block newBlock() const {
        Block block;
        block.reserve(blockSize);
        return block;
    }
    E* endOf(std::size_t block) { return blocks[block].data() + blocks[block].size(); }

    // Allocates everything first, so that a failure leaves the pool as it was.
    void appendAll(const E* items, std::size_t count) {
        const std::size_t room = blockSize - blocks.back().size();
        const std::size_t beyond = count > room ? count - room : 0;
        std::vector<Block> added;
        for (std::size_t n = 0; n < beyond; n += blockSize) { added.push_back(newBlock()); }
        blocks.reserve(blocks.size() + added.size());

        const auto fill = [&](Block& block) {
            const std::size_t part = std::min(count, blockSize - block.size());
            block.insert(block.end(), items, items + part);
            items += part;
            count -= part;
        };
        fill(blocks.back());
        for (Block& block : added) {
            fill(block);
            blocks.push_back(std::move(block));
        }
    }

    std::size_t blockSize;
    std::vector<Block> blocks;
    std::size_t elementBlock = 0;
    E* element = nullptr;  // the next one to give out
    std::size_t walkedBlock = 0;
};

}  // namespace zyn::detail
