// Variable: a named, typed binding that an evaluator resolves symbols against.
#pragma once

#include <ombrix/memory.h>

#include <string_view>

namespace nezaiva::expr {

class Variable {
public:
    Variable(std::string_view variableName, std::string_view variableType)
        : name(variableName), type(variableType)
    {
    }
    Variable(const Variable&) = delete;
    Variable& operator=(const Variable&) = delete;
    virtual ~Variable() = default;

    const OUtils::HostString name;
    const OUtils::HostString type;
};

} // namespace nezaiva::expr
