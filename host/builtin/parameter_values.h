// How the host's own plugins read what a scene wrote into them, where a bound field is not enough: lists
// of points, values at other times than the frame's, and whether anything was written at all.
#pragma once

#include "host/geometry/vector_math.h"
#include "host/params/host_parameters.h"

#include <initializer_list>
#include <string>
#include <vector>

namespace ombrix {

// Whether the scene wrote the parameter. False for a name that is not declared.
bool isWritten(OUtils::OmbrixParameterList& list, const char* name);
// Whether the parameter's value depends on the time.
bool isAnimated(OUtils::OmbrixParameterList& list, const char* name);

// The times at which some parameter has a sample, rising; a single 0 when nothing depends on the time.
// Between them and around them nothing else can happen than at one of them, but for numbers that run
// straight.
std::vector<double> sampleTimes(OUtils::OmbrixParameterList& list, std::initializer_list<const char*> names);

// The elements at a time of a list that was declared with addParamColor, as points.
std::vector<Vector> readPoints(OUtils::OmbrixParameterList& list, const char* name, double time);
std::vector<int> readInts(OUtils::OmbrixParameterList& list, const char* name, double time);
// The plugins that a list refers to, null ones left out.
std::vector<OUtils::PluginBase*> readPlugins(OUtils::OmbrixParameterList& list, const char* name);
// The value at a time of a parameter that was declared with addParamColor, as a point.
Vector readPoint(OUtils::OmbrixParameterList& list, const char* name, double time);

// Numbers of metadata in use by several kinds.
inline constexpr const char* kPointMetadata = "quantityType=(position)";
inline constexpr const char* kDirectionMetadata = "quantityType=(direction)";

} // namespace ombrix
