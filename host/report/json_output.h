// JSON that the program answers with: numbers that read back as the same float, laid out for people.
#pragma once

#include <ombrix/types.h>

#include <nlohmann/json.hpp>

#include <string>

namespace ombrix {

// Keeps the order in which keys are written.
using OutputJson = nlohmann::ordered_json;

// The shortest decimal that reads back as the same float; whole numbers without a point; "nan", "inf" and
// "-inf" for what JSON lacks.
OutputJson toJson(float number);
OutputJson toJson(double number);
OutputJson toJson(const OUtils::Vector& vector);            // [x, y, z]
OutputJson toJson(const OUtils::VectorD& vector);           // [x, y, z]
OutputJson toJson(const OUtils::Color& color);              // [r, g, b]
OutputJson toJson(const OUtils::AColor& color);             // [r, g, b, a]
OutputJson toJson(const OUtils::Matrix& columns);           // [[..], [..], [..]]
OutputJson toJson(const OUtils::Transform& transform);      // {"columns", "offset"}
OutputJson toJson(const OUtils::TraceTransform& transform); // {"columns", "offset"}

// The text of a value, with a newline at its end. What fits a line of this many columns stands on one;
// texts that are no UTF-8 have their bad bytes replaced.
std::string formatJson(const OutputJson& value, int columns = 110);

} // namespace ombrix
