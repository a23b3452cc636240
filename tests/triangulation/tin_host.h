// Networks in files, and a host that reads them whatever stands in them.
#pragma once

#include <zyn/surface.h>

#include <gtest/gtest.h>

#include <filesystem>
#include <memory>
#include <string>

#include "failing_allocation.h"
#include "file_content.h"
#include "memory_file.h"
#include "network.h"

/// The file of a network, in either encoding.
template <class Real>
std::string fileOf(support::Network<Real>& net, bool isText) {
    const MemoryFile file;
    EXPECT_TRUE((isText ? zyn::writeText<Real> : zyn::writeBinary<Real>)(net.engine.get(),
                                                                         file.path.c_str()));
    return support::contentOf(file.path);
}

/// An engine that reads one file after another.
template <class Real>
class TinHost {
public:
    /// Reads the file. The first promise that is broken, or null when all are kept.
    const char* faultOfRead(const std::string& path, bool isText) {
        std::error_code error;
        const bool isFile = std::filesystem::is_regular_file(path, error);
        const std::size_t size = isFile ? std::filesystem::file_size(path) : 0;
        auto& e = *net.engine;
        Real* array = &marker;
        int count = -7;
        const support::PeakMemory memory;
        taken =
            (isText ? zyn::readText<Real> : zyn::readBinary<Real>)(&e, path.c_str(), array, count);
        if (memory.bytes() > 16 * size + (1U << 20U)) { return "took too much memory"; }
        vertices.reset(array);  // what the last network stood on is not needed any more
        e.rewindTriangles();
        if (taken) {
            const bool isWhole = array != nullptr && count >= 4 && e.nextTriangle() != nullptr;
            return isWhole ? nullptr : "gave a part";
        }
        const bool isNothing = array == nullptr && count == 0 && e.triangleCount() == 0 &&
                               e.nextTriangle() == nullptr && e.locate(0, 0) == nullptr &&
                               !e.addPoint(&some, 0) && !e.removePoint(nullptr, 0, 0, 9) &&
                               e.enforceEdge(&marker, &marker, nullptr) == nullptr;
        return isNothing ? nullptr : "left something";
    }
    /// Does with the network what a host does; whatever comes of that, it can be written and read
    /// again.
    const char* faultInUse() {
        auto* const e = net.engine.get();
        (void)zyn::validate<Real>(e, true);
        double z = 0;
        zyn::heightAt<Real>(e, 5, 5, z);
        net.add(4.5, 3.5, 1);
        (void)zyn::profile<Real>(e, {0, 0}, {9, 8});
        e->rewindTriangles();
        auto *const first = e->nextTriangle(), *const second = e->nextTriangle();
        if (second != nullptr) { e->enforceEdge(first->vertex[0], second->vertex[1], nullptr); }
        e->removePoint(nullptr, 5, 2, 9);
        zyn::restoreDelaunay<Real>(e);
        zyn::compactVertices<Real>(e);
        if (!zyn::writeBinary<Real>(e, scratch.path.c_str())) { return "cannot be written"; }
        const char* const fault = faultOfRead(scratch.path, false);
        return fault != nullptr ? fault : taken ? nullptr : "what was written cannot be read";
    }

    bool taken = false;
    support::Network<Real> net{-5, -5, 5, 5};

private:
    std::unique_ptr<Real[]> vertices;
    MemoryFile scratch;
    Real marker = 0;
    zyn::XPnt3<Real> some{0, 0, 0};
};
