#include <zyn/textfile.h>

#include <algorithm>
#include <cstddef>
#include <cstdlib>
#include <ctime>
#include <limits>

namespace zyn {

ref_ptr<StringArray> strSeperator(QString str, QString seps) {
    ref_ptr<StringArray> pieces = newStringArray();
    const auto isSeparator = [&seps](QChar c) { return seps.contains(c); };
    for (auto piece = str.cbegin();;) {
        piece = std::find_if_not(piece, str.cend(), isSeparator);
        if (piece == str.cend()) { return pieces; }
        const auto end = std::find_if(piece, str.cend(), isSeparator);
        pieces->append(QString(piece, static_cast<int>(end - piece)));
        piece = end;
    }
}

QString strTrimBlankLeftRight(const QString& str) { return str.trimmed(); }

bool isCharInArray(QChar c, const QChar* chars, int count) noexcept {
    return chars != nullptr && count > 0 && std::find(chars, chars + count, c) != chars + count;
}

double toDouble(QString str) {
    bool converts = false;
    const double value = str.toDouble(&converts);
    return converts ? value : 0.0;
}

std::int32_t toLong(QString str) { return str.toInt(); }

QString tostring(int value) { return QString::number(value); }

QString tostring(int value, int base) {
    if (base < 2 || base > 36) { return {}; }
    const QString digits = QString::number(std::abs(static_cast<long long>(value)), base);
    return value < 0 ? QLatin1Char('-') + digits : digits;
}

QString tostring(double value) {
    constexpr int digitsBehindFirst = 14;
    // The text has the form d.dddddddddddddde+dd; its exponent is the one after rounding.
    QString text = QString::number(value, 'e', digitsBehindFirst);
    const int e = text.indexOf(QLatin1Char('e'));
    if (e < 0) { return text; }  // nan, inf
    const int exponent = text.midRef(e + 1).toInt();
    const bool isNegative = text.startsWith(QLatin1Char('-'));
    QString digits = text.mid(isNegative, e - isNegative);
    digits.remove(1, 1);

    const bool isFixed = exponent >= -1 && exponent <= digitsBehindFirst;
    const int whole = isFixed ? exponent + 1 : 1;  // digits before the point
    if (whole == 0) { digits.prepend(QLatin1Char('0')); }
    digits.insert(std::max(whole, 1), QLatin1Char('.'));
    while (digits.endsWith(QLatin1Char('0'))) { digits.chop(1); }
    if (!isFixed) { digits += text.midRef(e); }
    return isNegative ? QLatin1Char('-') + digits : digits;
}

QString numToKeyStr(int num) {
    const char sign = num > 0 ? 'P' : num < 0 ? 'N' : 'Z';
    return QLatin1Char(sign) + QString::number(std::abs(static_cast<long long>(num)));
}

int keyStrToNum(QString key) {
    if (key.startsWith(QLatin1Char('P'))) { return key.midRef(1).toInt(); }
    if (key.startsWith(QLatin1Char('N'))) {
        const int number = key.midRef(1).toInt();
        return number == std::numeric_limits<int>::min() ? 0 : -number;
    }
    return 0;
}

QString getTimeSystem() {
    const std::time_t now = std::time(nullptr);
    std::tm local = {};
    localtime_r(&now, &local);
    char text[64];
    const std::size_t size = std::strftime(text, sizeof text, "%Y-%m-%d %H:%M:%S", &local);
    return QString::fromLatin1(text, static_cast<int>(size));
}

}  // namespace zyn
