// The GPU text of a value texture, as its "source" parameter gives it.
#pragma once

#include "host/builtin/builtin_metadata.h"
#include "host/builtin/parameter_values.h"

#include <ombrix/plugin_kind.h>

#include <string>

namespace ombrix {

// The field of "source": a text, null, or unset.
class ValueSource : public TimedText {
public:
    // Whether the scene wrote null: then there is no text, nor EXT_RTTEX.
    bool isNone() const;
    // Answers getSource of a value texture: 0 with nothing written for another descriptor than
    // "MaterialDescriptor"; else the written text, as it stands at the time in frames, with {name} and {tag}
    // replaced, or unsetText where none is written, and 1.
    int write(double time, const char* name, const char* tag, const char* descriptor,
              const std::string& unsetText, OUtils::ShaderSource& source) const;
};

// A value texture over Base, which answers to EXT_RTTEX as its parameter "source" says.
template <class Base>
class ValueTexture : public OUtils::Offers<Base, OUtils::RTTexInterface> {
    using Offering = OUtils::Offers<Base, OUtils::RTTexInterface>;

public:
    using Offering::Offering;

    // What a kind's table ends with.
    template <class Table>
    static void parameters(Table& p)
    {
        p("source", &ValueTexture::source, "",
          "The GPU text, {name} and {tag} replaced; unset, the value of a color or a float as a constant; "
          "null, none",
          kNullableMetadata);
    }

    OUtils::PluginInterface* getInterface(OUtils::InterfaceId id) override
    {
        if (id == OUtils::RTTexInterface::kId && source.isNone()) return Base::getInterface(id);
        return Offering::getInterface(id);
    }
    void frameBegin(OUtils::OmbrixRenderer* renderer) override
    {
        Base::frameBegin(renderer);
        if (renderer) time = renderer->getFrameData().time;
    }
    int getSource(const char* name, const char* tag, const char* descriptor, OUtils::ShaderSource& text,
                  OUtils::OCLData& /*data*/) override
    {
        return source.write(time, name, tag, descriptor, unsetSource(), text);
    }

protected:
    // The text while the scene writes none.
    virtual std::string unsetSource() { return {}; }

    double time = 0.0; // of the frame

private:
    ValueSource source;
};

// "color %f %f %f %f\n".
std::string constantColorText(const OUtils::AColor& color);

} // namespace ombrix
