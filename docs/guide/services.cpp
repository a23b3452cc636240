#include <zyn/log.h>
#include <zyn/network.h>
#include <zyn/progress.h>
#include <zyn/setting.h>
#include <zyn/textfile.h>

#include <QString>
#include <cstdio>

using namespace zyn;

/// A host implements this to follow a long operation.
class Percent : public IZynProgress {
public:
    void setTotal(double value) override { total = value; }
    void setPosition(double value) override { position = value; }
    double getPosition() override { return position; }
    void step(double amount) override { position += amount; }
    void setMessage(QString) override {}
    bool isCanceled() override { return false; }
    void finish() override { std::printf("%.0f percent\n", 100 * position / total); }

private:
    double total = 1, position = 0;
};

int main() {
    const QString name = QStringLiteral("host.settings");
    ref_ptr<IZynSetting> settings = newZynSetting(QString());
    settings->open(name);  // creates the file if there is none
    settings->setValue(QStringLiteral("runs"), tostring(3), QString());
    settings->setValue(QStringLiteral("last file"), QStringLiteral("hill.txt"), QString());
    settings->save();
    const ref_ptr<StringArray> saved = readLines(name, nullptr);
    for (const QString& line : *saved) { std::printf("%s\n", qPrintable(line)); }

    ref_ptr<IZynLog> log = newZynLog(QStringLiteral("host.log"), false, false);
    log->setName(QStringLiteral("calc"));
    log->info(QStringLiteral("run ") + settings->getValue(QStringLiteral("runs")));
    log = nullptr;  // writes the lines that are still in the buffer
    const QString line = readLines(QStringLiteral("host.log"), nullptr)->get(0);
    std::printf("%s<time>%s\n", qPrintable(line.left(6)), qPrintable(line.mid(25)));

    ref_ptr<Percent> progress = new Percent;
    ref_ptr<Pnt3dArray> points = newPnt3dArray();
    for (int i = 0; i < 5000; ++i) { points->append(XPnt3d(i % 100, i / 100, 0)); }
    ref_ptr<IZynDelaunayD> engine = newZynDelaunayDouble(0, -1, -1, 100, 100);
    addPoints(engine.get(), points.get(), 0, progress.get());
    progress->finish();

    std::printf("%s %s %g\n", qPrintable(tostring(255, 16)), qPrintable(numToKeyStr(-17)),
                toDouble(QStringLiteral("3.75")));
}
