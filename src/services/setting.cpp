#include <zyn/setting.h>
#include <zyn/textfile.h>

#include <QFile>
#include <QString>
#include <QTextStream>

#include <map>
#include <utility>

namespace zyn {

namespace {

class CZynSetting final : public IZynSetting {
public:
    ~CZynSetting() override {
        if (!path.isEmpty()) { CZynSetting::save(); }
    }

    int open(QString newPath) override {
        path = std::move(newPath);
        if (path.isEmpty()) { return -1; }
        if (!isFileExist(path)) {
            QFile(path).open(QIODevice::WriteOnly);
            return isFileExist(path) ? 0 : -1;
        }
        const ref_ptr<StringArray> lines = readLines(path, nullptr);
        if (!lines) { return 0; }
        for (const QString& line : *lines) {
            const ref_ptr<StringArray> pieces = strSeperator(line, QStringLiteral("[]=\n"));
            if (pieces->size() >= 2) {
                values[pieces->get(0)] = strTrimBlankLeftRight(pieces->get(1));
            }
        }
        return 0;
    }
    int setValue(QString key, QString value, QString) override {
        values[std::move(key)] = std::move(value);
        return 0;
    }
    QString getValue(QString key) override {
        const auto found = values.find(key);
        return found == values.end() ? QString() : found->second;
    }
    QString getValueText(QString key) override { return getValue(std::move(key)); }
    int save() override {
        QFile file(path);
        if (path.isEmpty() || !file.open(QIODevice::WriteOnly | QIODevice::Text)) { return -1; }
        QTextStream stream(&file);
        for (const auto& [key, value] : values) { stream << '[' << key << "]=[" << value << "]\n"; }
        stream.flush();
        const bool isWritten = stream.status() == QTextStream::Ok && file.flush();
        return isWritten ? 0 : -1;
    }
    int flush() override { return save(); }

private:
    std::map<QString, QString> values;
    QString path;
};

}  // namespace

IZynSetting* newZynSetting(QString) { return new CZynSetting; }

}  // namespace zyn
