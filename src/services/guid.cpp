#include <zyn/guid.h>
#include <zyn/textfile.h>

#include <QString>
#include <cstring>

namespace zyn {

IZynGUID::~IZynGUID() = default;

void IZynGUID::generate() noexcept {}

void IZynGUID::setData4(const unsigned char* bytes) noexcept {
    std::memcpy(data4, bytes, sizeof data4);
}

QString IZynGUID::toString() const {
    constexpr int hexadecimal = 16;
    const QChar dash = QLatin1Char('-');
    return tostring(static_cast<int>(data1), hexadecimal) + dash + tostring(data2, hexadecimal) +
           dash + tostring(data3, hexadecimal) + dash;
}

std::int32_t IZynGUID::frString(const QString&) noexcept { return 0; }

}  // namespace zyn
