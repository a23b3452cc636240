// Each writer of files on disks that are full, on places that take no file, and on what is no disk.
#include <zyn/setting.h>
#include <zyn/surface.h>
#include <zyn/textfile.h>

#include <dlfcn.h>
#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <csignal>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <functional>
#include <iterator>
#include <string>

#include "network.h"

namespace {
bool lastCallsFail = false;

/// What the function of that name behind this program's own says, or a failure.
template <class Argument>
int lastCall(const char* name, Argument argument) {
    using Function = int (*)(Argument);
    const int result = reinterpret_cast<Function>(dlsym(RTLD_NEXT, name))(argument);
    if (!lastCallsFail) { return result; }
    errno = ENOSPC;
    return -1;
}
}  // namespace

// A disk may tell only here that it did not take everything.
extern "C" int fclose(std::FILE* file) { return lastCall("fclose", file); }
extern "C" int fsync(int file) { return lastCall("fsync", file); }

namespace {

using namespace zyn;
namespace fs = std::filesystem;

/// LandXML tells when it was written.
std::string withoutTime(std::string content) {
    const std::size_t at = content.find(R"(date=")");
    return at == std::string::npos ? content : content.erase(at, content.find('>', at) - at);
}
std::string contentOf(const std::string& path) {
    std::ifstream file(path, std::ios::binary);
    return withoutTime({std::istreambuf_iterator(file), {}});
}

struct Writer {
    const char* name;
    std::function<bool(const std::string&)> write;
    bool tells = true;  ///< otherwise the answer is true, whatever happens
};
void PrintTo(const Writer& writer, std::ostream* out) { *out << writer.name; }

auto ofNetwork(bool (*writeFile)(IZynDelaunayD*, const char*)) {
    return [writeFile](const std::string& path) {
        support::Network<double> net(0, 0, 100, 100);
        for (int i = 1; i < 90; ++i) { net.add(i, 17 * i % 89 + 1, i); }
        testing::internal::CaptureStdout();
        const bool result = writeFile(net.engine.get(), path.c_str());
        testing::internal::GetCapturedStdout();
        return result;
    };
}
const Writer writers[] = {
    {"Binary", ofNetwork([](auto* e, auto* path) { return writeBinary<double>(e, path); })},
    {"Text", ofNetwork([](auto* e, auto* path) { return writeText<double>(e, path); }), false},
    {"ExportObj", ofNetwork([](auto* e, auto* path) { return e->exportObj({}, path, 1e5); })},
    {"Obj", ofNetwork([](auto* e, auto* path) { return writeObj<double>(e, path); })},
    {"Ply", ofNetwork([](auto* e, auto* path) { return writePly<double>(e, path); })},
    {"LandXml", ofNetwork([](auto* e, auto* path) { return writeLandXml<double>(e, path, {}); })},
    {"Settings",
     [](const std::string& path) {
         const ref_ptr<IZynSetting> settings = newZynSetting(QString());
         settings->open(QString::fromStdString(path));
         settings->setValue(QStringLiteral("key"), QString(90, QLatin1Char('v')), QString());
         return settings->save() == 0;
     }},
    {"Lines",
     [](const std::string& path) {
         const ref_ptr<StringArray> lines = newStringArray();
         for (int i = 0; i < 3000; ++i) { lines->append(QStringLiteral("a line of text\n")); }
         return writeLines(QString::fromStdString(path), lines, nullptr);
     },
     false},
};

class DiskFailure : public testing::TestWithParam<Writer> {
protected:
    DiskFailure() : folder(testing::TempDir() + "folder"), path(folder + "/file") {
        fs::create_directory(folder);
        EXPECT_TRUE(write(path));
        whole = contentOf(path);
        std::ofstream(path) << old;
    }
    ~DiskFailure() override {
        fs::permissions(folder, fs::perms::owner_all);
        fs::remove_all(folder);
    }
    static bool write(const std::string& to) { return GetParam().write(to); }
    static bool answerOfFailure() { return !GetParam().tells; }

    static constexpr const char* old = "[old]\n";
    const std::string folder, path;
    std::string whole;
};

TEST_P(DiskFailure, FullDisks) {
    rlimit unlimited = {};
    getrlimit(RLIMIT_FSIZE, &unlimited);
    const auto handler = std::signal(SIGXFSZ, SIG_IGN);
    const auto expectFailure = [&](std::size_t room, bool lastCalls) {
        std::ofstream(path) << old;
        const rlimit full{room, unlimited.rlim_max};
        setrlimit(RLIMIT_FSIZE, &full);
        lastCallsFail = lastCalls;
        const bool answer = write(path);
        lastCallsFail = false;
        setrlimit(RLIMIT_FSIZE, &unlimited);
        EXPECT_EQ(answer, answerOfFailure()) << room;
        EXPECT_EQ(contentOf(path), old) << room;
        EXPECT_EQ(std::distance(fs::directory_iterator(folder), {}), 1) << "something is left";
    };
    for (const std::size_t room : {std::size_t(0), whole.size() / 2, whole.size() - 1}) {
        expectFailure(room, false);
    }
    expectFailure(2 * whole.size(), true);
    std::signal(SIGXFSZ, handler);
    EXPECT_TRUE(write(path) && contentOf(path) == whole);
    fs::remove(path);
    lastCallsFail = true;
    EXPECT_EQ(write(path), answerOfFailure());
    lastCallsFail = false;
    EXPECT_EQ(contentOf(path), "") << "a part is left";
}

TEST_P(DiskFailure, Places) {
    for (const std::string& to :
         {std::string("/dev/full"), folder, folder + "/no/file", std::string()}) {
        EXPECT_EQ(write(to), answerOfFailure()) << to;
    }
    const std::string fifo = folder + "/fifo", link = folder + "/link";
    ASSERT_EQ(mkfifo(fifo.c_str(), 0600), 0);
    const int end = ::open(fifo.c_str(), O_RDWR | O_NONBLOCK);
    EXPECT_TRUE(write(fifo));
    std::string arrived(100000, '\0');
    const ssize_t size = ::read(end, arrived.data(), arrived.size());
    arrived.resize(size > 0 ? std::size_t(size) : 0);
    EXPECT_TRUE(
        withoutTime(arrived).starts_with(whole));  // settings come a second time at their end
    ::close(end);
    EXPECT_TRUE(fs::is_fifo(fifo));

    fs::permissions(path, fs::perms(0640));
    fs::create_symlink(path, link);
    EXPECT_TRUE(write(link) && fs::is_symlink(link) && contentOf(path) == whole);
    EXPECT_EQ(fs::status(path).permissions(), fs::perms(0640));

    const std::string second = folder + "/second", longName = folder + '/' + std::string(250, 'n');
    fs::create_hard_link(path, second);
    std::ofstream(path) << old;
    EXPECT_TRUE(write(second) && contentOf(path) == whole);
    EXPECT_TRUE(write(longName) && write(longName) && contentOf(longName) == whole);
    fs::remove(path);
    EXPECT_TRUE(write(link) && fs::is_symlink(link) && contentOf(path) == whole);
}

TEST_P(DiskFailure, Permissions) {
    const uid_t user = geteuid();
    // Root may do everything, so another user does it.
    const auto writeAsUser = [user](const std::string& to) {
        EXPECT_TRUE(user != 0 || seteuid(65534) == 0);
        const bool answer = write(to);
        EXPECT_TRUE(user != 0 || seteuid(user) == 0);
        return answer;
    };
    fs::permissions(testing::TempDir(), fs::perms::all, fs::perm_options::add);
    fs::permissions(path, fs::perms(0444));
    fs::permissions(folder, fs::perms(0777));
    EXPECT_EQ(writeAsUser(path), answerOfFailure());
    EXPECT_EQ(contentOf(path), old);
    fs::permissions(folder, fs::perms(0555));
    EXPECT_EQ(writeAsUser(folder + "/new"), answerOfFailure());
    EXPECT_EQ(writeAsUser(path), answerOfFailure());
    EXPECT_EQ(contentOf(path), old);
    fs::permissions(path, fs::perms(0666));
    EXPECT_TRUE(writeAsUser(path));
    EXPECT_EQ(contentOf(path), whole);
}

INSTANTIATE_TEST_SUITE_P(Of, DiskFailure, testing::ValuesIn(writers),
                         [](const auto& writer) { return std::string(writer.param.name); });

}  // namespace
