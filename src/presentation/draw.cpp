#include <zyn/draw.h>

#include "containers/array_imp.h"

#include <algorithm>
#include <iterator>
#include <utility>

namespace zyn {

using namespace detail;

PntClass::PntClass(std::int32_t value_, bool visible_, ZynColor4b color_, QString name_)
    : value(value_), visible(visible_), color(color_), name(std::move(name_)) {}

QString PntClass::defaultName() { return QStringLiteral("Default"); }

void PntClass::setVal(std::int32_t value_, bool visible_, ZynColor4b color_, QString name_) {
    value = value_;
    visible = visible_;
    color = color_;
    name = std::move(name_);
}

PntClassArray* newPntClassArray() { return new ArrayImp<PntClassArray>; }

IZynLasDrawParam::~IZynLasDrawParam() = default;

IZynLasDrawParam* IZynLasDrawParam::clone() const {
    const ref_ptr<IZynColorRamp> ownRamp = ramp ? ramp->clone() : nullptr;
    auto* const copy = new IZynLasDrawParam(*this);
    copy->ramp = ownRamp;
    return copy;
}

std::int32_t IZynLasDrawParam::assignPntClass(const ref_ptr<PntClassArray>& a) {
    if (!a) { return 0; }
    for (const PntClass& given : *a) {
        PntClass* const entry = std::ranges::find(classes, given.value, &PntClass::value);
        if (entry != std::end(classes)) {
            entry->setVal(given.value, given.visible, given.color, given.name);
        }
    }
    return a->size();
}

IZynLasDrawParam* newZynLasDrawParam() { return new IZynLasDrawParam; }

}  // namespace zyn
