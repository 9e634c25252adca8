// What a host that knows nothing but the contract expects of the library: every plugin, with everything
// that a descriptor and an instance tell, and every parameter declaration.
#pragma once

#include "host/params/value.h"

#include <ombrix/interface_ids.h>

#include <variant>
#include <vector>

namespace conformance {

// The default of a declaration that has none.
inline constexpr std::monostate kNone;

// One parameter as a Params class declares it. count is -1 unless it is told.
struct DeclarationRow {
    ombrix::Declaration kind;
    const char* name;
    ombrix::Value defaultValue; // monostate where the declaration has none
    const char* description;
    const char* metadata;
    OUtils::InterfaceId requiredInterface = 0;
    int transformFlag = 0;
    int count = -1;
};
using DeclarationRows = std::vector<DeclarationRow>;

struct PluginRow {
    const char* name;
    OUtils::PluginId id;
    // Both without EXT_OMBRIX_PLUGIN, which every descriptor declares and every instance has.
    std::vector<OUtils::InterfaceId> declared;
    std::vector<OUtils::InterfaceId> onInstance;
    const char* description;
    DeclarationRows (*declarations)();
    // The node's source, without ending, below src/; its tests stand at the same place below tests/, with
    // "_test" added.
    const char* source;
    // The interface whose id and name all interfaces of an instance report; 0: each reports its own.
    OUtils::InterfaceId reportedAs = 0;
};

const std::vector<PluginRow>& pluginTable();

// By the folders of the nodes.
DeclarationRows texColorConditionDeclarations();
DeclarationRows texFloatConditionDeclarations();
DeclarationRows texColorConstantDeclarations();
DeclarationRows texFloatConstantDeclarations();
DeclarationRows texColorLogicDeclarations();
DeclarationRows texFloatLogicDeclarations();
DeclarationRows uvwGenMayaPlace2dTextureDeclarations();
DeclarationRows texSimplexNoiseDeclarations();
DeclarationRows texNoiseMayaDeclarations();
DeclarationRows texColorCorrectDeclarations();
DeclarationRows texFloatCorrectDeclarations();
DeclarationRows texColorMaskDeclarations();
DeclarationRows texFloatMaskDeclarations();
DeclarationRows texCompositeDeclarations();
DeclarationRows texFloatCompositeDeclarations();
DeclarationRows texRGBToHSVDeclarations();
DeclarationRows texHSVToRGBDeclarations();
DeclarationRows texLuminanceDeclarations();
DeclarationRows texColorAndAlphaDeclarations();
DeclarationRows texMayaConversionDeclarations();
DeclarationRows floatToTexDeclarations();
DeclarationRows transformToTexDeclarations();
DeclarationRows texVectorToColorDeclarations();
DeclarationRows texStencilDeclarations();
DeclarationRows mayaProjectionTexDeclarations();
DeclarationRows mayaMultiplyDivideDeclarations();
DeclarationRows mayaGammaDeclarations();
DeclarationRows texSetRangeDeclarations();
DeclarationRows texVectorProductDeclarations();
DeclarationRows texDistanceBetweenDeclarations();
DeclarationRows texPlusMinusAverageDeclarations();
DeclarationRows texCondition2Declarations();
DeclarationRows texUVWGenToTextureDeclarations();
DeclarationRows texMayaContrastDeclarations();
DeclarationRows texTemperatureToColorDeclarations();

// A derived Params class declares its own parameters behind the inherited ones.
DeclarationRows behind(DeclarationRows inherited, const DeclarationRows& own);
// What all textures with colour post-processing inherit.
DeclarationRows commonDeclarations();
// What mapped textures inherit, with or without wrap.
DeclarationRows mappedDeclarations(bool withWrap);

} // namespace conformance
