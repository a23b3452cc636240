#include <zyn/log.h>
#include <zyn/textfile.h>

#include <QFile>
#include <QTextStream>

#include <cstdio>
#include <memory>
#include <utility>

namespace zyn {

namespace {

class CLog4Zyn final : public IZynLog {
public:
    ~CLog4Zyn() override {
        if (file.isOpen()) { stream.flush(); }
    }

    void setName(QString newName) override { name = std::move(newName); }
    void setEcho(bool newEcho) override { echo = newEcho; }
    bool getEcho() override { return echo; }
    bool open(QString path, bool append) override {
        file.close();
        file.setFileName(path);
        if (path.isEmpty()) { return false; }
        file.open(append ? QIODevice::WriteOnly | QIODevice::Append : QIODevice::WriteOnly);
        stream.setDevice(&file);
        return file.isOpen();
    }
    bool isOpen() override { return file.isOpen(); }
    void setParams(QString a, QString b) override {
        paramA = std::move(a);
        paramB = std::move(b);
    }
    void fatal(QString message) override { write("[FATAL]", message); }
    void error(QString message) override { write("[ERROR]", message); }
    void warn(QString message) override { write("[WARN]", message); }
    void info(QString message) override { write("[INFO]", message); }
    void debug(QString message) override { write("[DEBUG]", message); }

private:
    void write(const char* mark, const QString& message) {
        const QString time = getTimeSystem();
        if (file.isOpen()) {
            stream.resetStatus();  // after a failure the stream would only buffer what follows
            stream << mark << time << ' ' << name << ' ' << message << '\n';
        }
        if (!file.isOpen() || echo) {
            std::printf("%s%s %s %s\n", mark, qPrintable(time), qPrintable(name),
                        qPrintable(message));
        }
    }

    QFile file;  // before the stream, which uses it until its own end
    QTextStream stream;
    QString name;
    QString paramA, paramB;
    bool echo = false;
};

}  // namespace

IZynLog* newZynLog(QString path, bool append, bool echo) {
    auto log = std::make_unique<CLog4Zyn>();
    log->setEcho(echo);
    if (path.isEmpty() || !log->open(path, append)) { log->setEcho(true); }
    return log.release();
}

}  // namespace zyn
