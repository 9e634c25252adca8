#include "host/builtin/parameter_values.h"

#include <set>

namespace ombrix {

void TimedParameter::attach(OUtils::OmbrixParameterList& list, const char* name)
{
    parameter = dynamic_cast<HostParameter*>(list.getParam(name));
}

std::vector<double> TimedParameter::times() const
{
    return isWritten() ? parameter->value()->times : std::vector<double>{};
}

std::vector<Value> TimedParameter::elementsAt(double time) const
{
    return isWritten() ? sampleAt(*parameter->value(), time) : std::vector<Value>{};
}

template <>
int TimedInt::at(double time) const
{
    return parameter ? parameter->getInt(-1, time) : 0;
}

template <>
float TimedFloat::at(double time) const
{
    return parameter ? parameter->getFloat(-1, time) : 0.0f;
}

template <>
std::string TimedText::at(double time) const
{
    return parameter ? parameter->getString(-1, time) : "";
}

template <>
TraceTransform TimedTransform::at(double time) const
{
    return parameter ? parameter->getTransform(-1, time) : TraceTransform{};
}

template <>
std::vector<int> TimedInts::at(double time) const
{
    std::vector<int> numbers;
    for (const Value& element : elementsAt(time))
        if (const int* number = std::get_if<int>(&element)) numbers.push_back(*number);
    return numbers;
}

template <>
Vector TimedPoint::at(double time) const
{
    if (!parameter) return {};
    const AColor value = parameter->getColor(-1, time);
    return {value.r, value.g, value.b};
}

template <>
std::vector<Vector> TimedPoints::at(double time) const
{
    std::vector<Vector> points;
    for (const Value& element : elementsAt(time)) {
        if (const auto* color = std::get_if<Color>(&element))
            points.push_back({color->r, color->g, color->b});
        else if (const auto* wide = std::get_if<AColor>(&element))
            points.push_back({wide->r, wide->g, wide->b});
    }
    return points;
}

template <>
std::vector<Vector> TimedVectors::at(double time) const
{
    std::vector<Vector> vectors;
    const int count = parameter ? parameter->getCount(time) : 0;
    for (int i = 0; i < count; ++i)
        vectors.push_back(parameter->getVector(i, time));
    return vectors;
}

std::vector<double> sampleTimes(std::initializer_list<const TimedParameter*> parameters)
{
    std::set<double> times;
    for (const TimedParameter* parameter : parameters) {
        const std::vector<double> own = parameter->times();
        times.insert(own.begin(), own.end());
    }
    if (times.empty()) times.insert(0.0);
    return {times.begin(), times.end()};
}

} // namespace ombrix
