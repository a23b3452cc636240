#include <zyn/variant.h>

#include <QString>
#include <cstdint>
#include <utility>

namespace zyn {

namespace {

constexpr int unset = -99999;

class CZynVariant final : public IZynVariant {
public:
    bool isValid() override { return type != 0; }
    int getType() override { return type; }
    void setType(int newType) override { type = newType; }
    void setString(QString value) override { stringValue = std::move(value); }
    void setLong(long long value) override { longValue = value; }
    void setInt(int value) override { intValue = value; }
    void setDouble(double value) override { doubleValue = value; }
    void setFloat(float value) override { floatValue = value; }
    float getFloat() override { return floatValue; }
    double getDouble() override { return doubleValue; }
    int getInt() override { return intValue; }
    long long getLong() override { return longValue; }
    QString getString() override { return stringValue; }

private:
    std::int32_t type = 0;
    std::int32_t intValue = unset;
    long long longValue = unset;
    float floatValue = unset;
    double doubleValue = unset;
    QString stringValue;
};

}  // namespace

IZynVariant* newZynVarint() { return new CZynVariant; }

}  // namespace zyn
