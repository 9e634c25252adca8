// The GPU text of a value texture, as its "source" parameter gives it.
#pragma once

#include <ombrix/plugin.h>

#include <optional>
#include <string>

namespace ombrix {

// Declares "source": a text, null, or unset.
void declareSource(OUtils::OmbrixParameterListDesc& parameters);

enum class SourceKind {
    Unset, // the type's own text
    Text,  // the given text, with {name} and {tag} replaced
    None,  // null: no EXT_RTTEX at all
};
SourceKind sourceKindOf(OUtils::OmbrixParameterList& list);

// Answers getSource of a value texture: 0 with nothing written for another descriptor than
// "MaterialDescriptor"; else the given text, as it stands at the time in frames, or unsetText where none
// is given, and 1.
int writeValueSource(OUtils::OmbrixParameterList& list, double time, const char* name, const char* tag,
                     const char* descriptor, const std::string& unsetText, OUtils::ShaderSource& source);

// "color %f %f %f %f\n".
std::string constantColorText(const OUtils::AColor& color);

} // namespace ombrix
