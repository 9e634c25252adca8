// Plain values on texture inputs, as textures.
#pragma once

#include "host/params/value.h"

#include <map>
#include <memory>

namespace ombrix {

// A texture that gives one value at every point; its bounds are that value and its gradient is zero. A
// colour and a float answer for their GPU text too.
class ConstantTexture : public OUtils::PluginBase {
public:
    // value has the kind that the declaration keeps.
    virtual void set(const Value& value) = 0;
    // The texture interface of the kind.
    virtual OUtils::PluginInterface* texture() = 0;
};

// Null for a declaration that is no texture input.
std::unique_ptr<ConstantTexture> makeConstantTexture(Declaration kind);

// The constants of one instance. Each parameter has its own, which stays the same object from frame to
// frame.
class ConstantTextures {
public:
    ConstantTexture& at(std::size_t parameter, std::size_t element, Declaration kind);

private:
    std::map<std::pair<std::size_t, std::size_t>, std::unique_ptr<ConstantTexture>> all;
};

} // namespace ombrix
