#include <zyn/setting.h>
#include <zyn/textfile.h>

#include "core/whole_file.h"
#include "services/read_lines.h"

#include <QFile>
#include <QFileInfo>
#include <QString>
#include <QTextStream>

#include <map>
#include <new>
#include <utility>

namespace zyn {

using namespace detail;

namespace {

class CZynSetting final : public IZynSetting {
public:
    ~CZynSetting() override {
        try {
            if (!path.isEmpty() && isRead) { CZynSetting::save(); }
        } catch (const std::bad_alloc&) {}  // the file stays as it was
    }

    int open(QString newPath) override {
        // The path is kept only after the file was read: if memory runs out while reading, a later
        // save would truncate the file.
        const bool isThere = isFileExist(newPath);
        // A file that could not be read must not be truncated when the object is destroyed.
        isRead = isThere ? read(newPath) : create(newPath);
        path = std::move(newPath);
        return isRead && isFileExist(path) ? 0 : -1;
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
        WholeFile file(QFile::encodeName(path).constData());
        if (!file.isOpen()) { return -1; }
        const bool isWritten = file.write([this](QTextStream& stream) {
            for (const auto& [key, value] : values) {
                stream << '[' << key << "]=[" << value << "]\n";
            }
        });
        return isWritten && file.commit() ? 0 : -1;
    }
    int flush() override { return save(); }

private:
    using Values = std::map<QString, QString>;

    /// Creates an empty file if there is none, without truncating one that appears meanwhile.
    /// Returns false for what is not a regular file: opening a pipe could wait for ever, both now
    /// and when saving.
    [[nodiscard]] static bool create(const QString& file) {
        if (QFileInfo::exists(file)) { return false; }
        if (!file.isEmpty()) { QFile(file).open(QIODevice::Append); }
        return true;
    }
    [[nodiscard]] bool read(const QString& file) {
        const ref_ptr<StringArray> lines = readWholeFile(file);
        if (!lines) { return false; }
        Values result = values;
        for (const QString& line : *lines) {
            const ref_ptr<StringArray> pieces = strSeperator(line, QStringLiteral("[]=\n"));
            if (pieces->size() >= 2) {
                result[pieces->get(0)] = strTrimBlankLeftRight(pieces->get(1));
            }
        }
        values = std::move(result);
        return true;
    }

    Values values;
    QString path;
    bool isRead = true;  ///< whether `values` has what the file held when opened
};

}  // namespace

IZynSetting* newZynSetting(QString) { return new CZynSetting; }

}  // namespace zyn
