#include <zyn/point.h>

#include <QString>

namespace zyn {

template <std::floating_point T>
QString XPnt2<T>::toString(int) const
    requires std::same_as<T, double>
{
    return QString::number(x) + QLatin1Char(',') + QString::number(y);
}

template <std::floating_point T>
bool XPnt2<T>::frString(QString text)
    requires std::same_as<T, double>
{
    const int comma = text.indexOf(QLatin1Char(','));
    if (comma < 0) { return false; }
    bool xRead = false;
    bool yRead = false;
    const double newX = text.left(comma).toDouble(&xRead);
    const double newY = text.remove(0, comma + 1).toDouble(&yRead);
    if (!xRead || !yRead) { return false; }
    set(newX, newY);
    return true;
}

template QString XPnt2<double>::toString(int) const;
template bool XPnt2<double>::frString(QString);

}  // namespace zyn
