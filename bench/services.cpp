// Compares pools and text files with the standard library and Qt.
//
// usage: bench_services
#include "measure.h"

#include <zyn/log.h>
#include <zyn/pool.h>
#include <zyn/textfile.h>

#ifdef ZYN_BENCH_SPDLOG
#include <spdlog/sinks/basic_file_sink.h>
#include <spdlog/spdlog.h>
#endif

#include <cstdio>
#include <cstdlib>
#include <deque>
#include <filesystem>
#include <fstream>
#include <string>
#include <vector>

namespace {

using namespace zyn;

void print(const char* what, double time, const char* peerName, double peer) {
    std::printf("| %s | %.3f s | %s | %.3f s | %.2f |\n", what, time, peerName, peer, time / peer);
}

template <class Operation>
double best(Operation operation) {
    double time = bench::seconds(operation);
    for (int run = 0; run < 2; ++run) { time = std::min(time, bench::seconds(operation)); }
    return time;
}

void pools() {
    constexpr int n = 50000000;
    double sum = 0;
    const double appending = best([] {
        const ref_ptr<DoublePool> pool = newDoublePool();
        for (int i = 0; i < n; ++i) { pool->append(double(i)); }
    });
    const double deque = best([] {
        std::deque<double> peer;
        for (int i = 0; i < n; ++i) { peer.push_back(double(i)); }
    });
    print("50 million appends", appending, "std::deque", deque);

    const std::vector<double> all(n, 1.0);
    ref_ptr<DoublePool> pool;
    std::vector<double> copy;
    const double bulk = best([&] {
        pool = newDoublePool();
        pool->append(all.data(), n);
    });
    const double copying = best([&] { copy = std::vector<double>(all); });
    print("50 million in bulk", bulk, "copy of a std::vector", copying);
    const double walking = best([&] {
        pool->rewind();
        while (const double* const p = pool->next()) { sum += *p; }
    });
    const double vector = best([&] {
        for (const double v : all) { sum += v; }
    });
    print("a walk over them", walking, "std::vector", vector);
    if (sum < 0) { std::exit(1); }
}

void logs(const std::string& path) {
    constexpr int n = 1000000;
    const double logging = best([&] {
        const ref_ptr<IZynLog> log = newZynLog(QString::fromStdString(path), false, false);
        log->setName(QStringLiteral("bench"));
        const QString message = QStringLiteral("a message of some thirty letters");
        for (int i = 0; i < n; ++i) { log->info(message); }
    });
    const auto size = std::filesystem::file_size(path);
#ifdef ZYN_BENCH_SPDLOG
    const char* const name = "spdlog's basic file logger";
    const double peer = best([&] {
        const auto log = spdlog::basic_logger_mt("bench", path, true);
        log->set_pattern("[INFO]%Y-%m-%d %H:%M:%S %n %v");
        for (int i = 0; i < n; ++i) { log->info("a message of some thirty letters"); }
        log->flush();
        spdlog::drop("bench");
    });
#else
    const char* const name = "fprintf";
    const double peer = best([&] {
        std::FILE* const file = std::fopen(path.c_str(), "w");
        for (int i = 0; i < n; ++i) {
            std::fprintf(file, "[INFO]%s %s %s\n", qPrintable(getTimeSystem()), "bench",
                         "a message of some thirty letters");
        }
        std::fclose(file);
    });
#endif
    if (std::filesystem::file_size(path) != size) { std::exit(1); }
    print("a million lines of log", logging, name, peer);
}

void files() {
    const std::string path = std::filesystem::temp_directory_path() / "bench_services.txt";
    {
        std::ofstream file(path);
        for (int i = 0; i < 1000000; ++i) {
            file << 432100.125 + i * 0.25 << ',' << 5411200.5 - i * 0.5 << " point\n";
        }
    }
    const QString name = QString::fromStdString(path);
    ref_ptr<Pnt2dArray> points;
    const double reading = best([&] { (void)readPnt2dArray(name, points, nullptr); });
    const ref_ptr<Pnt2dArray> parts = newPnt2dArray();
    const double peer = best([&] {
        parts->removeAll();
        const ref_ptr<StringArray> lines = readLines(name, nullptr);
        for (const QString& line : *lines) {
            const ref_ptr<StringArray> fields = strSeperator(line, QStringLiteral(" ,\t\n"));
            parts->append(XPnt2d(toDouble(fields->get(0)), toDouble(fields->get(1))));
        }
    });
    if (points->size() != parts->size()) { std::exit(1); }
    print("readPnt2dArray, a million lines", reading, "readLines and toDouble", peer);
    {
        std::ofstream file(path);
        for (int i = 0; i < 20000000; ++i) { file << "twenty-four characters..\n"; }
    }
    const double counting = best([&] { (void)getTxtFileLineNum(name, nullptr); });
    const std::string command = "wc -l '" + path + "' >/dev/null";
    const double wc = best([&] { (void)std::system(command.c_str()); });
    print("getTxtFileLineNum, 500 MB", counting, "wc -l", wc);
    logs(path);
    std::filesystem::remove(path);
}

}  // namespace

int main() {
    std::printf("| | ZynBase | peer | | ratio |\n|---|---|---|---|---|\n");
    pools();
    files();
    return 0;
}
