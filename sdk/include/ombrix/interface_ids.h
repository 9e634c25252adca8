// The ids by which getInterface finds an interface, each with its name. Ids are 32-bit numbers held in
// a 64-bit argument.
#pragma once

#include <cstdint>

namespace OUtils {

using InterfaceId = std::uint64_t;
using PluginId = std::uint64_t;

inline constexpr InterfaceId EXT_OMBRIX_PLUGIN = 0x7776FFFF;
inline constexpr InterfaceId EXT_TEXTURE = 0x77780002;
inline constexpr InterfaceId EXT_TEXTURE_FLOAT = 0x7782F8E5;
inline constexpr InterfaceId EXT_TEXTURE_VECTOR = 0x7782F8E6;
inline constexpr InterfaceId EXT_TEXTURE_TRANSFORM = 0x7782F8E9;
inline constexpr InterfaceId EXT_TEXTURE_INT = 0x7782F8EA;
inline constexpr InterfaceId EXT_RTTEX = 0x77CFFFA6;
inline constexpr InterfaceId EXT_UVWGEN = 0x780B88A9;
inline constexpr InterfaceId EXT_MATERIAL = 0x77770002;
inline constexpr InterfaceId EXT_BSDF = 0x77770020;
inline constexpr InterfaceId EXT_MAPPED_SURFACE = 0x77780010;
inline constexpr InterfaceId EXT_REFERENCED_SURFACE = 0x77A1300C;
inline constexpr InterfaceId EXT_COMMON_TEXTURE_NOISE = 0x77A213C9;
inline constexpr InterfaceId EXT_MAYA_FLUID_TEXTURE = 0x77CEC919;
inline constexpr InterfaceId EXT_WORLD_MATRIX = 0x781C532C;
// One interface under two names, offered by a renderer whose scene names a colour space or a particle
// time unit; see UnitSettings.
inline constexpr InterfaceId kColorSpaceSettingsId = 2007041201;
inline constexpr InterfaceId kParticleTimeSettingsId = 0x77A104B1;
static_assert(kColorSpaceSettingsId == kParticleTimeSettingsId);

struct InterfaceName {
    InterfaceId id;
    const char* name;
};

// Every interface that has a name, in the order of their names.
inline constexpr InterfaceName kInterfaceNames[] = {
    {EXT_BSDF, "EXT_BSDF"},
    {EXT_COMMON_TEXTURE_NOISE, "EXT_COMMON_TEXTURE_NOISE"},
    {EXT_MAPPED_SURFACE, "EXT_MAPPED_SURFACE"},
    {EXT_MATERIAL, "EXT_MATERIAL"},
    {EXT_MAYA_FLUID_TEXTURE, "EXT_MAYA_FLUID_TEXTURE"},
    {EXT_OMBRIX_PLUGIN, "EXT_OMBRIX_PLUGIN"},
    {EXT_REFERENCED_SURFACE, "EXT_REFERENCED_SURFACE"},
    {EXT_RTTEX, "EXT_RTTEX"},
    {EXT_TEXTURE, "EXT_TEXTURE"},
    {EXT_TEXTURE_FLOAT, "EXT_TEXTURE_FLOAT"},
    {EXT_TEXTURE_INT, "EXT_TEXTURE_INT"},
    {EXT_TEXTURE_TRANSFORM, "EXT_TEXTURE_TRANSFORM"},
    {EXT_TEXTURE_VECTOR, "EXT_TEXTURE_VECTOR"},
    {EXT_UVWGEN, "EXT_UVWGEN"},
    {EXT_WORLD_MATRIX, "EXT_WORLD_MATRIX"},
};

} // namespace OUtils
