// The order of the virtual operations is binary contract: a host and a library that were built apart meet
// in these tables.

#include <ombrix/ombrix.h>

#include <gtest/gtest.h>

#include <bit>
#include <cstdint>

namespace {

using namespace OUtils;

// The place of a virtual operation in its class's table. A destructor takes two places, the complete
// one and the deleting one.
template <class Operation>
int place(Operation operation)
{
    // How this machine's ABI writes a pointer to a virtual member function: 1 + the offset in the table.
    struct Pointer {
        std::uintptr_t offsetPlusOne;
        std::ptrdiff_t adjustment;
    };
    const auto pointer = std::bit_cast<Pointer>(operation);
    EXPECT_EQ(pointer.offsetPlusOne & 1, 1u) << "not virtual";
    return static_cast<int>((pointer.offsetPlusOne - 1) / sizeof(void*));
}

constexpr int kAfterDestructor = 2;
constexpr int kAfterPluginBase = kAfterDestructor + 4;
constexpr int kAfterPluginInterface = kAfterDestructor + 4;

TEST(VirtualOrder, PluginBase)
{
    EXPECT_EQ(place(&PluginBase::getInterface), kAfterDestructor + 0);
    EXPECT_EQ(place(&PluginBase::releaseInterface), kAfterDestructor + 1);
    EXPECT_EQ(place(&PluginBase::addInterface), kAfterDestructor + 2);
    EXPECT_EQ(place(&PluginBase::removeInterface), kAfterDestructor + 3);
}

TEST(VirtualOrder, PluginLibDesc)
{
    EXPECT_EQ(place(&PluginLibDesc::getName), kAfterPluginBase + 0);
    EXPECT_EQ(place(&PluginLibDesc::getDescription), kAfterPluginBase + 1);
    EXPECT_EQ(place(&PluginLibDesc::enumPlugins), kAfterPluginBase + 2);
    EXPECT_EQ(place(&EnumPluginsCallback::processPlugin), 0);
}

TEST(VirtualOrder, PluginDesc)
{
    EXPECT_EQ(place(&PluginDesc::getPluginID), kAfterPluginBase + 0);
    EXPECT_EQ(place(&PluginDesc::newPlugin), kAfterPluginBase + 1);
    EXPECT_EQ(place(&PluginDesc::deletePlugin), kAfterPluginBase + 2);
    EXPECT_EQ(place(&PluginDesc::supportsInterface), kAfterPluginBase + 3);
    EXPECT_EQ(place(&PluginDesc::getName), kAfterPluginBase + 4);
    EXPECT_EQ(place(&PluginDesc::registerPlugin), kAfterPluginBase + 5);
    EXPECT_EQ(place(&PluginDesc::unregisterPlugin), kAfterPluginBase + 6);
    EXPECT_EQ(place(&PluginDesc::reservedOperation8), kAfterPluginBase + 7);
    EXPECT_EQ(place(&PluginDesc::getDescription), kAfterPluginBase + 8);
    EXPECT_EQ(place(&PluginDesc::reservedOperation10), kAfterPluginBase + 9);
    EXPECT_EQ(place(&PluginDesc::reservedOperation11), kAfterPluginBase + 10);
}

TEST(VirtualOrder, Plugin)
{
    EXPECT_EQ(place(&Plugin::getPluginDesc), kAfterPluginBase + 0);
    EXPECT_EQ(place(&Plugin::setPluginName), kAfterPluginBase + 1);
}

TEST(VirtualOrder, PluginInterface)
{
    EXPECT_EQ(place(&PluginInterface::getInterfaceID), kAfterDestructor + 0);
    EXPECT_EQ(place(&PluginInterface::getPlugin), kAfterDestructor + 1);
    EXPECT_EQ(place(&PluginInterface::getInterfaceName), kAfterDestructor + 2);
    EXPECT_EQ(place(&PluginInterface::releaseInterface), kAfterDestructor + 3);
}

TEST(VirtualOrder, OmbrixPluginInterface)
{
    EXPECT_EQ(place(&OmbrixPluginInterface::renderBegin), kAfterPluginInterface + 0);
    EXPECT_EQ(place(&OmbrixPluginInterface::renderEnd), kAfterPluginInterface + 1);
    EXPECT_EQ(place(&OmbrixPluginInterface::frameBegin), kAfterPluginInterface + 2);
    EXPECT_EQ(place(&OmbrixPluginInterface::frameEnd), kAfterPluginInterface + 3);
    EXPECT_EQ(place(&OmbrixPluginInterface::setParameter), kAfterPluginInterface + 4);
    EXPECT_EQ(place(&OmbrixPluginInterface::getParameter), kAfterPluginInterface + 5);
}

TEST(VirtualOrder, Parameters)
{
    EXPECT_EQ(place(&OmbrixPluginParameter::getName), kAfterDestructor + 0);
    EXPECT_EQ(place(&OmbrixPluginParameter::getType), kAfterDestructor + 1);
    EXPECT_EQ(place(&OmbrixPluginParameter::getCount), kAfterDestructor + 2);
    EXPECT_EQ(place(&OmbrixPluginParameter::getInt), kAfterDestructor + 3);
    EXPECT_EQ(place(&OmbrixPluginParameter::getFloat), kAfterDestructor + 4);
    EXPECT_EQ(place(&OmbrixPluginParameter::getDouble), kAfterDestructor + 5);
    EXPECT_EQ(place(&OmbrixPluginParameter::getVector), kAfterDestructor + 6);
    EXPECT_EQ(place(&OmbrixPluginParameter::getColor), kAfterDestructor + 7);
    EXPECT_EQ(place(&OmbrixPluginParameter::getTransform), kAfterDestructor + 8);
    EXPECT_EQ(place(&OmbrixPluginParameter::getString), kAfterDestructor + 9);
    EXPECT_EQ(place(&OmbrixPluginParameter::getPlugin), kAfterDestructor + 10);
    EXPECT_EQ(place(&EnumParamsCallback::processParam), 0);
}

TEST(VirtualOrder, Textures)
{
    EXPECT_EQ(place(&TextureInterface::evalColor), kAfterPluginInterface + 0);
    EXPECT_EQ(place(&TextureInterface::evalColorBounds), kAfterPluginInterface + 1);
    EXPECT_EQ(place(&TextureInterface::evalColorGradient), kAfterPluginInterface + 2);
    EXPECT_EQ(place(&TextureFloatInterface::evalFloat), kAfterPluginInterface + 0);
    EXPECT_EQ(place(&TextureFloatInterface::evalFloatBounds), kAfterPluginInterface + 1);
    EXPECT_EQ(place(&TextureFloatInterface::evalFloatGradient), kAfterPluginInterface + 2);
    EXPECT_EQ(place(&TextureIntInterface::evalInt), kAfterPluginInterface + 0);
    EXPECT_EQ(place(&TextureTransformInterface::evalTransform), kAfterPluginInterface + 0);
    EXPECT_EQ(place(&TextureVectorInterface::evalVector), kAfterPluginInterface + 0);
    EXPECT_EQ(place(&TextureVectorInterface::evalVectorBounds), kAfterPluginInterface + 1);
}

TEST(VirtualOrder, Mapping)
{
    EXPECT_EQ(place(&UVWGenInterface::evalUVW), kAfterPluginInterface + 0);
    EXPECT_EQ(place(&UVWGenInterface::evalUVWDerivs), kAfterPluginInterface + 1);
    EXPECT_EQ(place(&UVWGenInterface::evalUVWTransform), kAfterPluginInterface + 2);
    EXPECT_EQ(place(&UVWGenInterface::evalUVWForChannel), kAfterPluginInterface + 3);
    EXPECT_EQ(place(&MappedSurface::getLocalUVWTransform), kAfterPluginInterface + 0);
    EXPECT_EQ(place(&MappedSurface::getLocalUVW), kAfterPluginInterface + 1);
}

TEST(VirtualOrder, RTTexInterface)
{
    EXPECT_EQ(place(&RTTexInterface::reservedOperation1), kAfterPluginInterface + 0);
    EXPECT_EQ(place(&RTTexInterface::reservedOperation2), kAfterPluginInterface + 1);
    EXPECT_EQ(place(&RTTexInterface::getSource), kAfterPluginInterface + 2);
}

TEST(InterfaceIds, AreTheContractsNumbers)
{
    EXPECT_EQ(EXT_OMBRIX_PLUGIN, 0x7776FFFFu);
    EXPECT_EQ(EXT_TEXTURE, 0x77780002u);
    EXPECT_EQ(EXT_TEXTURE_FLOAT, 0x7782F8E5u);
    EXPECT_EQ(EXT_TEXTURE_VECTOR, 0x7782F8E6u);
    EXPECT_EQ(EXT_TEXTURE_TRANSFORM, 0x7782F8E9u);
    EXPECT_EQ(EXT_TEXTURE_INT, 0x7782F8EAu);
    EXPECT_EQ(EXT_RTTEX, 0x77CFFFA6u);
    EXPECT_EQ(EXT_UVWGEN, 0x780B88A9u);
    EXPECT_EQ(EXT_MATERIAL, 0x77770002u);
    EXPECT_EQ(EXT_BSDF, 0x77770020u);
    EXPECT_EQ(EXT_MAPPED_SURFACE, 0x77780010u);
    EXPECT_EQ(EXT_REFERENCED_SURFACE, 0x77A1300Cu);
    EXPECT_EQ(EXT_COMMON_TEXTURE_NOISE, 0x77A213C9u);
    EXPECT_EQ(EXT_MAYA_FLUID_TEXTURE, 0x77CEC919u);
}

} // namespace
