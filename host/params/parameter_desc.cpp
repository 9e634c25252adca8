// Declarations of parameters.
#include "host/params/list_values.h"

namespace OUtils {
namespace {

using ombrix::Declaration;
using ombrix::ParameterDeclaration;
using ombrix::Value;

TraceTransform widened(const Transform& transform)
{
    return {transform.matrix,
            {static_cast<double>(transform.offset.x), static_cast<double>(transform.offset.y),
             static_cast<double>(transform.offset.z)}};
}

// The texts that every declaration ends with.
struct Texts {
    const char* description;
    const char* metadata;
};

// Appends a declaration and returns its index.
int declare(std::deque<ParameterDeclaration>& all, Declaration kind, const char* name, Value defaultValue,
            int count, const Texts& texts)
{
    ParameterDeclaration& added = all.emplace_back();
    added.kind = kind;
    added.name = name;
    added.defaultValue = std::move(defaultValue);
    added.count = count;
    if (texts.description) added.description = texts.description;
    if (texts.metadata) added.metadata = texts.metadata;
    return static_cast<int>(all.size()) - 1;
}

} // namespace

OmbrixParameterListDesc::OmbrixParameterListDesc() : declared(new Declarations) {}

OmbrixParameterListDesc::~OmbrixParameterListDesc()
{
    delete declared;
}

int OmbrixParameterListDesc::addParamBool(const char* name, bool defaultValue, int count,
                                          const char* description, const char* metadata)
{
    return declare(declared->all, Declaration::Bool, name, defaultValue, count, {description, metadata});
}

int OmbrixParameterListDesc::addParamInt(const char* name, int defaultValue, int count,
                                         const char* description, const char* metadata)
{
    return declare(declared->all, Declaration::Int, name, defaultValue, count, {description, metadata});
}

int OmbrixParameterListDesc::addParamFloat(const char* name, float defaultValue, int count,
                                           const char* description, const char* metadata)
{
    return declare(declared->all, Declaration::Float, name, defaultValue, count, {description, metadata});
}

int OmbrixParameterListDesc::addParamColor(const char* name, const Color& defaultValue, int count,
                                           const char* description, const char* metadata)
{
    return declare(declared->all, Declaration::Color, name, defaultValue, count, {description, metadata});
}

int OmbrixParameterListDesc::addParamString(const char* name, const char* defaultValue, int count,
                                            const char* description, const char* metadata)
{
    return declare(declared->all, Declaration::String, name, std::string(defaultValue ? defaultValue : ""),
                   count, {description, metadata});
}

int OmbrixParameterListDesc::addParamPlugin(const char* name, InterfaceId requiredInterface, int count,
                                            const char* description, const char* metadata)
{
    const int index = declare(declared->all, Declaration::Plugin, name, {}, count, {description, metadata});
    declared->all.back().requiredInterface = requiredInterface;
    return index;
}

int OmbrixParameterListDesc::addParamTransform(const char* name, int flag, const Transform& defaultValue,
                                               int count, const char* description, const char* metadata)
{
    const int index = declare(declared->all, Declaration::Transform, name, widened(defaultValue), count,
                              {description, metadata});
    declared->all.back().transformFlag = flag;
    return index;
}

int OmbrixParameterListDesc::addParamTexture(const char* name, const AColor& defaultValue, int count,
                                             const char* description, const char* metadata)
{
    return declare(declared->all, Declaration::Texture, name, defaultValue, count, {description, metadata});
}

int OmbrixParameterListDesc::addParamTexture(const char* name, const Color& defaultValue, int count,
                                             const char* description, const char* metadata)
{
    return declare(declared->all, Declaration::Texture, name, defaultValue, count, {description, metadata});
}

int OmbrixParameterListDesc::addParamTexture(const char* name, int count, const char* description,
                                             const char* metadata)
{
    return declare(declared->all, Declaration::Texture, name, {}, count, {description, metadata});
}

int OmbrixParameterListDesc::addParamTextureFloat(const char* name, float defaultValue, int count,
                                                  const char* description, const char* metadata)
{
    return declare(declared->all, Declaration::TextureFloat, name, defaultValue, count,
                   {description, metadata});
}

int OmbrixParameterListDesc::addParamTextureFloat(const char* name, int count, const char* description,
                                                  const char* metadata)
{
    return declare(declared->all, Declaration::TextureFloat, name, {}, count, {description, metadata});
}

int OmbrixParameterListDesc::addParamTextureInt(const char* name, int defaultValue, int count,
                                                const char* description, const char* metadata)
{
    return declare(declared->all, Declaration::TextureInt, name, defaultValue, count,
                   {description, metadata});
}

int OmbrixParameterListDesc::addParamTextureInt(const char* name, int count, const char* description,
                                                const char* metadata)
{
    return declare(declared->all, Declaration::TextureInt, name, {}, count, {description, metadata});
}

int OmbrixParameterListDesc::addParamTextureTransform(const char* name, const Transform& defaultValue,
                                                      int count, const char* description,
                                                      const char* metadata)
{
    return declare(declared->all, Declaration::TextureTransform, name, widened(defaultValue), count,
                   {description, metadata});
}

int OmbrixParameterListDesc::addParamTextureVector(const char* name, const Vector& defaultValue, int count,
                                                   const char* description, const char* metadata)
{
    return declare(declared->all, Declaration::TextureVector, name, defaultValue, count,
                   {description, metadata});
}

int OmbrixParameterListDesc::addOutputParamTexture(const char* name, const char* description,
                                                   const char* metadata)
{
    return declare(declared->all, Declaration::OutputTexture, name, {}, -1, {description, metadata});
}

int OmbrixParameterListDesc::addOutputParamTextureFloat(const char* name, const char* description,
                                                        const char* metadata)
{
    return declare(declared->all, Declaration::OutputTextureFloat, name, {}, -1, {description, metadata});
}

OmbrixParameterList* OmbrixParameterListDesc::newParameterList()
{
    return new OmbrixParameterList(new OmbrixParameterList::Values(*declared));
}

void OmbrixParameterListDesc::deleteParameterList(OmbrixParameterList* list)
{
    delete list;
}

int OmbrixParameterListDesc::registerParameters(OmbrixPluginHost* host, OmbrixPluginDesc* desc)
{
    return host ? host->addParameters(desc, this) : 0;
}

const ParameterDeclaration* OmbrixParameterListDesc::Declarations::findInput(std::string_view name) const
{
    for (const ParameterDeclaration& declaration : all)
        if (!ombrix::isOutput(declaration.kind) && declaration.name == name) return &declaration;
    return nullptr;
}

const ParameterDeclaration* OmbrixParameterListDesc::Declarations::findOutput(std::string_view name) const
{
    for (const ParameterDeclaration& declaration : all)
        if (ombrix::isOutput(declaration.kind) && declaration.name == name) return &declaration;
    return nullptr;
}

} // namespace OUtils
