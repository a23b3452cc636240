// Surfaces as LandXML files.
#include <zyn/network.h>

#include "core/text_number.h"
#include "surface/surface_file.h"

#include <QDateTime>
#include <QString>

#include <charconv>
#include <cmath>
#include <string>

namespace zyn {

using namespace detail;

namespace {

/// Returns the text as the value of an attribute, in UTF-8. Leaves out what XML 1.0 cannot contain:
/// control characters, halves of surrogate pairs, U+FFFE and U+FFFF.
std::string attributeText(const QString& text) {
    const QString escaped = text.toHtmlEscaped();
    QString result;
    for (int i = 0; i < escaped.size(); ++i) {
        const QChar c = escaped[i];
        const ushort code = c.unicode();
        if (c.isHighSurrogate() && i + 1 < escaped.size() && escaped[i + 1].isLowSurrogate()) {
            result += c;
            result += escaped[++i];
        } else if (code == '\t' || code == '\n' || code == '\r') {  // readers would see blanks
            result += QStringLiteral("&#%1;").arg(code);
        } else if (code >= ' ' && code < 0xFFFE && !c.isSurrogate()) {
            result += c;
        }
    }
    return result.toStdString();
}

std::string imperial(const char* linearUnit) {
    return std::string(R"(<Imperial areaUnit="squareFoot" linearUnit=")") + linearUnit +
           R"(" volumeUnit="cubicYard" temperatureUnit="fahrenheit" pressureUnit="inHG"/>)";
}

/// Returns the element that names the units, or an empty text if `unit` is none of them.
std::string unitsOf(LengthUnit unit) {
    switch (unit) {
    case LengthUnit::metre:
        return R"(<Metric areaUnit="squareMeter" linearUnit="meter" volumeUnit="cubicMeter")"
               R"( temperatureUnit="celsius" pressureUnit="milliBars"/>)";
    case LengthUnit::foot: return imperial("foot");
    case LengthUnit::usSurveyFoot: return imperial("USSurveyFoot");
    }
    return {};
}

/// Returns everything before the points.
std::string headOf(const QString& name, const std::string& units) {
    const QDateTime now = QDateTime::currentDateTimeUtc();
    const std::string date = now.date().toString(Qt::ISODate).toStdString();
    const std::string time = now.time().toString(Qt::ISODate).toStdString();
    std::string text = R"(<?xml version="1.0" encoding="UTF-8"?>)";
    text += '\n';
    text += R"(<LandXML xmlns="http://www.landxml.org/schema/LandXML-1.2" version="1.2")";
    text += R"( date=")" + date + R"(" time=")" + time + R"(Z">)";
    text += '\n';
    text += "<Units>" + units + "</Units>\n<Application name=\"ZynBase\"/>\n";
    text += R"(<Surfaces><Surface name=")" + attributeText(name) + R"(">)";
    text += "<Definition surfType=\"TIN\">\n<Pnts>\n";
    return text;
}

/// Appends a number in the form of XML Schema.
template <class Real>
void appendCoordinate(std::string& text, Real c) {
    if (std::isfinite(c)) {
        appendNumber(text, c, std::chars_format::fixed);
    } else {
        text += std::isnan(c) ? "NaN" : c > 0 ? "INF" : "-INF";
    }
}

}  // namespace

template <class Real>
bool writeLandXml(DelaunayInterface<Real>* engine, const char* path, QString name, double maxEdge) {
    return writeLandXml(engine, path, name, LengthUnit::metre, maxEdge);
}

template <class Real>
bool writeLandXml(DelaunayInterface<Real>* engine, const char* path, QString name, LengthUnit unit,
                  double maxEdge) {
    const std::string units = unitsOf(unit);
    if (units.empty()) { return false; }
    SurfaceFile<Real> file(engine, path, maxEdge);
    if (!file.isOpen()) { return false; }
    std::string& text = file.text;
    text = headOf(name, units);
    file.forEachVertex([&text, id = 0](const Real* v) mutable {
        text += "<P id=\"";
        appendNumber(text, ++id);
        text += "\">";
        for (const int axis : {1, 0, 2}) {
            if (axis != 1) { text += ' '; }
            appendCoordinate(text, v[axis]);
        }
        text += "</P>\n";
    });
    text += "</Pnts>\n<Faces>\n";
    file.forEachFace([&text](const auto& face) {
        text += "<F>";
        for (const int i : {0, 1, 2}) {
            if (i != 0) { text += ' '; }
            appendNumber(text, face[i] + 1);
        }
        text += "</F>\n";
    });
    text += "</Faces>\n</Definition></Surface></Surfaces>\n</LandXML>\n";
    return file.commit();
}

template bool writeLandXml(DelaunayInterface<float>*, const char*, QString, double);
template bool writeLandXml(DelaunayInterface<double>*, const char*, QString, double);
template bool writeLandXml(DelaunayInterface<float>*, const char*, QString, LengthUnit, double);
template bool writeLandXml(DelaunayInterface<double>*, const char*, QString, LengthUnit, double);

}  // namespace zyn
