#include "host/builtin/parameter_values.h"

#include <set>

namespace ombrix {

namespace {

HostParameter* findParameter(OUtils::OmbrixParameterList& list, const char* name)
{
    return dynamic_cast<HostParameter*>(list.getParam(name));
}

std::vector<Value> readElements(OUtils::OmbrixParameterList& list, const char* name, double time)
{
    const HostParameter* parameter = findParameter(list, name);
    if (!parameter || !parameter->value()) return {};
    return sampleAt(*parameter->value(), time);
}

} // namespace

bool isWritten(OUtils::OmbrixParameterList& list, const char* name)
{
    const HostParameter* parameter = findParameter(list, name);
    return parameter && parameter->value().has_value();
}

bool isAnimated(OUtils::OmbrixParameterList& list, const char* name)
{
    const HostParameter* parameter = findParameter(list, name);
    return parameter && parameter->value() && parameter->value()->times.size() > 1;
}

std::vector<double> sampleTimes(OUtils::OmbrixParameterList& list, std::initializer_list<const char*> names)
{
    std::set<double> times;
    for (const char* name : names) {
        const HostParameter* parameter = findParameter(list, name);
        if (parameter && parameter->value())
            times.insert(parameter->value()->times.begin(), parameter->value()->times.end());
    }
    if (times.empty()) times.insert(0.0);
    return {times.begin(), times.end()};
}

std::vector<Vector> readPoints(OUtils::OmbrixParameterList& list, const char* name, double time)
{
    std::vector<Vector> points;
    for (const Value& element : readElements(list, name, time)) {
        if (const auto* color = std::get_if<Color>(&element))
            points.push_back({color->r, color->g, color->b});
        else if (const auto* wide = std::get_if<AColor>(&element))
            points.push_back({wide->r, wide->g, wide->b});
    }
    return points;
}

std::vector<int> readInts(OUtils::OmbrixParameterList& list, const char* name, double time)
{
    std::vector<int> numbers;
    for (const Value& element : readElements(list, name, time))
        if (const int* number = std::get_if<int>(&element)) numbers.push_back(*number);
    return numbers;
}

std::vector<OUtils::PluginBase*> readPlugins(OUtils::OmbrixParameterList& list, const char* name)
{
    std::vector<OUtils::PluginBase*> plugins;
    for (const Value& element : readElements(list, name, 0.0)) {
        const auto* reference = std::get_if<PluginReference>(&element);
        if (reference && reference->plugin) plugins.push_back(reference->plugin);
    }
    return plugins;
}

Vector readPoint(OUtils::OmbrixParameterList& list, const char* name, double time)
{
    OUtils::OmbrixPluginParameter* parameter = list.getParam(name);
    if (!parameter) return {};
    const AColor value = parameter->getColor(-1, time);
    return {value.r, value.g, value.b};
}

} // namespace ombrix
