// Each writer of files on full disks, at places that hold no file, through links and into pipes.
#include <zyn/log.h>
#include <zyn/network.h>
#include <zyn/setting.h>
#include <zyn/textfile.h>

#include <dlfcn.h>
#include <fcntl.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <climits>
#include <csignal>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <functional>
#include <iterator>
#include <limits>
#include <string>
#include <string_view>

#include "network.h"
#include "testing.h"

namespace {
std::string_view failing;                                        // a call by its name
std::function<void()> meanwhile;                                 // runs at that call
std::size_t readable = std::numeric_limits<std::size_t>::max();  // bytes until the disk fails

/// Returns the function of that name that this program's own one hides.
template <class Function>
Function* behind(const char* name) {
    return reinterpret_cast<Function*>(dlsym(RTLD_NEXT, name));
}
template <class Argument>
int lastCall(const char* name, Argument argument) {
    const int result = behind<int(Argument)>(name)(argument);
    if (failing != name) { return result; }
    if (meanwhile) { meanwhile(); }
    errno = ENOSPC;
    return -1;
}
}  // namespace

// A disk may report only here that it did not store everything.
extern "C" int fclose(std::FILE* file) { return lastCall("fclose", file); }
extern "C" int fsync(int file) { return lastCall("fsync", file); }
extern "C" ssize_t read(int file, void* to, std::size_t size) {
    auto* const next = behind<ssize_t(int, void*, std::size_t)>("read");
    const ssize_t result = readable == 0 ? -1 : next(file, to, std::min(size, readable));
    if (readable == 0) { errno = EIO; }
    readable -= std::size_t(std::max(result, ssize_t(0)));
    return result;
}

namespace {

using namespace zyn;
namespace fs = std::filesystem;

void limitFiles(std::size_t size) {
    rlimit limit = {};
    getrlimit(RLIMIT_FSIZE, &limit);
    limit.rlim_cur = size;
    setrlimit(RLIMIT_FSIZE, &limit);
}

/// Standard output goes nowhere until the end.
class Silence {
public:
    Silence() { change(::open("/dev/null", O_WRONLY)); }
    ~Silence() { change(before); }

private:
    static void change(int to) {
        std::fflush(stdout);
        dup2(to, STDOUT_FILENO);
        ::close(to);
    }
    const int before = dup(STDOUT_FILENO);
};

/// Without the time, which LandXML tells.
std::string contentOf(const std::string& path) {
    std::ifstream file(path, std::ios::binary);
    std::string content{std::istreambuf_iterator<char>(file), {}};
    const std::size_t at = content.find(R"(date=")");
    return at == std::string::npos ? content : content.erase(at, content.find('>', at) - at);
}

struct Writer {
    const char* name;
    std::function<bool(const char*)> write;
    bool tells = true;  ///< otherwise the answer is true, whatever happens
};
void PrintTo(const Writer& writer, std::ostream* out) { *out << writer.name; }

auto ofNetwork(bool (*writeFile)(IZynDelaunayD*, const char*)) {
    return [writeFile](const char* path) {
        support::Network<double> net(0, 0, 100, 100);
        for (int i = 1; i < 90; ++i) { net.add(i, 17 * i % 89 + 1, i); }
        const Silence silence;
        return writeFile(net.engine.get(), path);
    };
}
bool writeSettings(const char* path) {
    const ref_ptr<IZynSetting> settings = newZynSetting(QString());
    settings->open(QString::fromLatin1(path));
    settings->setValue(QStringLiteral("key"), QString(90, QLatin1Char('v')), QString());
    return settings->save() == 0;
}
bool writeManyLines(const char* path) {
    const ref_ptr<StringArray> lines = newStringArray();
    for (int i = 0; i < 3000; ++i) { lines->append(QStringLiteral("a line of text\n")); }
    return writeLines(QString::fromLatin1(path), lines, nullptr);
}
const Writer writers[] = {
    {"Binary", ofNetwork([](auto* e, auto* path) { return writeBinary<double>(e, path); })},
    {"Text", ofNetwork([](auto* e, auto* path) { return writeText<double>(e, path); }), false},
    {"ExportObj", ofNetwork([](auto* e, auto* path) { return e->exportObj({}, path, 1e5); })},
    {"Obj", ofNetwork([](auto* e, auto* path) { return writeObj<double>(e, path); })},
    {"Ply", ofNetwork([](auto* e, auto* path) { return writePly<double>(e, path); })},
    {"LandXml", ofNetwork([](auto* e, auto* path) { return writeLandXml<double>(e, path, {}); })},
    {"Settings", writeSettings},
    {"Lines", writeManyLines, false},
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
        meanwhile = nullptr;
    }
    static bool write(const std::string& to) { return GetParam().write(to.c_str()); }
    static bool answerOfFailure() { return !GetParam().tells; }
    void expectFailureAt(const std::string& to, const char* call) {
        failing = call;
        EXPECT_EQ(write(to), answerOfFailure()) << call;
        failing = {};
    }
    void expectWhole(const std::string& to) {
        EXPECT_TRUE(write(to)) << to;
        EXPECT_EQ(contentOf(path), whole) << to;
    }

    static constexpr const char* old = "[old]\n";
    const std::string folder, path;
    std::string whole;
};

TEST_P(DiskFailure, AFullDiskKeepsTheOldFile) {
    const auto handler = std::signal(SIGXFSZ, SIG_IGN);
    const auto expectFailure = [&](std::size_t room, const char* call = "") {
        std::ofstream(path) << old;
        limitFiles(room);
        expectFailureAt(path, call);
        limitFiles(RLIM_INFINITY);
        EXPECT_EQ(contentOf(path), old) << room << call;
        EXPECT_EQ(std::distance(fs::directory_iterator(folder), {}), 1) << "something is left";
    };
    for (const std::size_t room : {std::size_t(0), whole.size() / 2, whole.size() - 1}) {
        expectFailure(room);
    }
    expectFailure(2 * whole.size(), "fclose");
    expectFailure(2 * whole.size(), "fsync");
    std::signal(SIGXFSZ, handler);
    expectWhole(path);
    fs::remove(path);
    expectFailureAt(path, "fclose");
    EXPECT_EQ(contentOf(path), "") << "a part is left";
    // The writer must not remove a file that another process puts there in the meantime.
    const std::string other = folder + "/other", fresh = folder + "/fresh";
    std::ofstream(other) << old;
    meanwhile = [&] { fs::exists(other) ? fs::rename(other, fresh) : void(); };
    expectFailureAt(fresh, "fclose");
    EXPECT_EQ(contentOf(fresh), old);
}

// A killed process may leave an unfinished file, which hinders no later writer.
TEST_P(DiskFailure, AKilledProcessLeavesNoPart) {
    const std::string fresh = folder + "/fresh";
    meanwhile = [] { std::raise(SIGKILL); };
    for (const std::string& to : {path, fresh}) {
        const std::string before = contentOf(to);
        for (const std::size_t room : {whole.size() / 2, whole.size() - 1}) {
            EXPECT_EXIT((limitFiles(room), write(to)), testing::KilledBySignal(SIGXFSZ), "");
            EXPECT_EQ(contentOf(to), before) << room;
        }
        for (const char* const call : {"fsync", "fclose"}) {
            EXPECT_EXIT(expectFailureAt(to, call), testing::KilledBySignal(SIGKILL), "");
            EXPECT_EQ(contentOf(to), before) << call;
        }
    }
    for (const fs::directory_entry& entry : fs::directory_iterator(folder)) {
        const std::string name = entry.path().filename().string();
        const bool isLeft = name != "file" && name != "fresh";
        EXPECT_EQ(name.starts_with(".zyn-unfinished-"), isLeft) << name;
    }
    expectWhole(path);
}

TEST_P(DiskFailure, RefusesPlacesThatHoldNoFile) {
    for (const std::string& to :
         {std::string("/dev/full"), folder, folder + "/no/file", std::string()}) {
        EXPECT_EQ(write(to), answerOfFailure()) << to;
    }
}

TEST_P(DiskFailure, WritesIntoAPipe) {
    const std::string fifo = folder + "/fifo", drained = folder + "/drain";
    ASSERT_EQ(mkfifo(fifo.c_str(), 0600), 0);
    const int end = ::open(fifo.c_str(), O_RDWR | O_NONBLOCK);
    EXPECT_TRUE(write(fifo));
    std::string arrived(100000, '\0');
    arrived.resize(std::size_t(std::max(::read(end, arrived.data(), arrived.size()), ssize_t(0))));
    ::close(end);
    std::ofstream(drained) << arrived;
    EXPECT_THAT(contentOf(drained), testing::StartsWith(whole)) << "settings are saved twice";
    EXPECT_TRUE(fs::is_fifo(fifo));
}

TEST_P(DiskFailure, KeepsLinksAndPermissions) {
    const std::string link = folder + "/link";
    fs::permissions(path, fs::perms(0640));
    fs::create_symlink(path, link);
    expectWhole(link);
    EXPECT_TRUE(fs::is_symlink(link));
    EXPECT_EQ(fs::status(path).permissions(), fs::perms(0640));

    const std::string second = folder + "/second",
                      longName = folder + '/' + std::string(NAME_MAX, 'n');
    fs::create_hard_link(path, second);
    std::ofstream(path) << old;
    expectWhole(second);
    EXPECT_TRUE(write(longName));
    EXPECT_TRUE(write(longName));
    EXPECT_EQ(contentOf(longName), whole);
    fs::remove(path);
    expectWhole(link);
    EXPECT_TRUE(fs::is_symlink(link));
    // The new file is made in the folder of the target, not in that of the link.
    fs::remove(path);
    fs::create_directory(folder + "/inner");
    fs::create_symlink("../file", folder + "/inner/link");
    expectWhole(folder + "/inner/link");
}

TEST_P(DiskFailure, ReplacesTheFileForThoseWhoReadTheOldOne) {
    const std::string inMemory = "/dev/shm/zyn_disk_failure_" + std::to_string(getpid());
    if (!(std::ofstream(inMemory) << old)) { GTEST_SKIP() << "no /dev/shm"; }
    std::ifstream before(inMemory);
    EXPECT_TRUE(write(inMemory));
    fs::remove(inMemory);
    EXPECT_EQ(std::string(std::istreambuf_iterator<char>(before), {}), old)
        << "the old file was overwritten";
}

TEST_P(DiskFailure, ObeysPermissionsAndTheMask) {
    const uid_t user = geteuid(), other = user == 0 ? 65534 : user;
    // Root may do everything, so another user does it to a file of their own.
    ASSERT_EQ(chown(path.c_str(), other, gid_t(-1)), 0);
    const auto expectAsUser = [&](const std::string& to, bool answer, const std::string& content) {
        EXPECT_EQ(seteuid(other), 0);
        EXPECT_EQ(write(to), answer);
        EXPECT_EQ(seteuid(user), 0);
        EXPECT_EQ(contentOf(path), content);
    };
    fs::permissions(testing::TempDir(), fs::perms::all, fs::perm_options::add);
    fs::permissions(path, fs::perms(0444));
    fs::permissions(folder, fs::perms(0777));
    expectAsUser(path, answerOfFailure(), old);
    const mode_t mask = umask(0027);
    expectAsUser(folder + "/masked", true, old);
    umask(mask);
    EXPECT_EQ(fs::status(folder + "/masked").permissions(), fs::perms(0640));
    fs::permissions(folder, fs::perms(0555));
    expectAsUser(folder + "/new", answerOfFailure(), old);
    expectAsUser(path, answerOfFailure(), old);
    fs::permissions(path, fs::perms(0666));
    expectAsUser(path, true, whole);
}

TEST(LogFailure, LosesOnlyLinesThatADiskRefuses) {
    const std::string path = testing::TempDir() + "zyn_log_failure";
    const auto handler = std::signal(SIGXFSZ, SIG_IGN);
    ref_ptr<IZynLog> log = newZynLog(QString::fromStdString(path), false, false);
    limitFiles(100000);
    for (int i = 0; i < 20000; ++i) { log->info(QStringLiteral("a line")); }
    limitFiles(RLIM_INFINITY);
    for (int i = 0; i < 20000; ++i) { log->info(QStringLiteral("a line")); }
    log = nullptr;
    std::signal(SIGXFSZ, handler);
    const std::string content = contentOf(path);
    EXPECT_TRUE(content.starts_with("[INFO]")) << content.substr(0, 20);
    EXPECT_TRUE(content.ends_with("a line\n"));
    EXPECT_GT(content.size(), 600000U);
    EXPECT_LT(content.size(), 900000U);
    fs::remove(path);
}

TEST(ReadFailure, ReturnsNothingInsteadOfAPart) {
    const std::string path = testing::TempDir() + "zyn_read_failure";
    const QString name = QString::fromStdString(path);
    for (const std::string_view mark : {"", "\xFF\xFE"}) {
        std::string text(mark);
        for (int i = 0; i < 100000; ++i) { text += "[a]=[1]\n2 3\n"; }
        std::ofstream(path) << text;
        for (const std::size_t enough : {std::size_t(0), std::size_t(500001)}) {
            const auto failingAfter = [enough](auto run) {
                readable = enough;
                const auto result = run();
                readable = std::numeric_limits<std::size_t>::max();
                return result;
            };
            ref_ptr<Pnt2dArray> points;
            EXPECT_EQ(failingAfter([&] { return getTxtFileLineNum(name, nullptr); }), 0);
            EXPECT_EQ(failingAfter([&] { return readLines(name, nullptr); })->size(), 0);
            EXPECT_FALSE(failingAfter([&] { return readPnt2dArray(name, points, nullptr); }));
            EXPECT_EQ(points, nullptr);
            ref_ptr<IZynSetting> settings = newZynSetting(QString());
            EXPECT_EQ(failingAfter([&] { return settings->open(name); }), -1);
            EXPECT_TRUE(settings->getValue(QStringLiteral("a")).isNull());
            settings = nullptr;  // the destructor saves nothing
            EXPECT_EQ(contentOf(path), text);
        }
    }
    fs::remove(path);
}

INSTANTIATE_TEST_SUITE_P(Of, DiskFailure, testing::ValuesIn(writers),
                         [](const auto& writer) { return std::string(writer.param.name); });

}  // namespace
