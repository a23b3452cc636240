// The fixture of a test that has a file of its own.
#pragma once

#include <zyn/textfile.h>

#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>

#include "testing.h"

inline QString q(const std::string& text) {
    return QString::fromUtf8(text.c_str(), int(text.size()));
}

class FileTest : public testing::Test {
protected:
    QString write(const std::string& content) const {
        std::ofstream(path, std::ios::binary) << content;
        return q(path);
    }
    std::string content() const {
        std::ifstream file(path, std::ios::binary);
        return {std::istreambuf_iterator(file), {}};
    }

    const std::string path =
        testing::TempDir() + testing::UnitTest::GetInstance()->current_test_info()->name();
};
