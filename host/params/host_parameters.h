// The host's side of parameter declarations and lists.
#pragma once

#include "host/params/value.h"

#include <ombrix/parameters.h>

#include <deque>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace ombrix {

// A declared parameter with what the scene wrote into it, as OmbrixParameterList::setParameter takes it
// and getParam gives it.
class HostParameter : public OUtils::OmbrixPluginParameter {
public:
    // declaration must outlive this object. An absent value means unset: the declared default shows.
    explicit HostParameter(const ParameterDeclaration& declaration, std::optional<ParameterValue> value = {});

    const char* getName() override;
    OUtils::ParameterType getType() override;
    int getCount(double time) override;
    int getInt(int index, double time) override;
    float getFloat(int index, double time) override;
    double getDouble(int index, double time) override;
    OUtils::Vector getVector(int index, double time) override;
    OUtils::AColor getColor(int index, double time) override;
    OUtils::TraceTransform getTransform(int index, double time) override;
    const char* getString(int index, double time) override;
    OUtils::PluginBase* getPlugin(int index, double time) override;

    const ParameterDeclaration& declaration() const { return declared; }
    const std::optional<ParameterValue>& value() const { return written; }
    void write(std::optional<ParameterValue> value);

private:
    Value element(int index, double time) const;

    const ParameterDeclaration& declared;
    std::optional<ParameterValue> written;
    // Stand for outputs whose own holder does not lead back to them.
    std::vector<std::unique_ptr<OUtils::PluginBase>> outputHolders;
};

} // namespace ombrix

// The declarations, in their order; a name can stand twice (an output and an input).
struct OUtils::OmbrixParameterListDesc::Declarations {
    std::deque<ombrix::ParameterDeclaration> all;

    // The input parameter of this name, or null.
    const ombrix::ParameterDeclaration* findInput(std::string_view name) const;
    // The output parameter of this name, or null.
    const ombrix::ParameterDeclaration* findOutput(std::string_view name) const;
};

namespace ombrix {

// Unsets an input parameter, so that its declared default shows again. False when it is not declared.
bool unsetParameter(OUtils::OmbrixParameterList& list, std::string_view name);
// The object that an instance bound to an output parameter; null when there is none.
OUtils::PluginInterface* boundOutput(OUtils::OmbrixParameterList& list, std::string_view name);
// Writes every bound field with the values at a time; OmbrixPluginInterface::frameBegin does so with the
// renderer's time, or with the time of the last call when it is given no renderer (before any call, that
// of a new FrameData). Plain values on texture inputs show as constant textures that the list owns; a
// field that holds its list or text already is left untouched, so its storage stays.
void updateBoundFields(OUtils::OmbrixParameterList& list, double time);

} // namespace ombrix
