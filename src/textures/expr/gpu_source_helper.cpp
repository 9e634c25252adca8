#include "textures/expr/gpu_source_helper.h"

#include "textures/expr/expr_messages.h"
#include "textures/expr/lisp_parser.h"

namespace nezaiva {

using expr::gpu::GPUVariable;

GPUSourceHelper::GPUSourceHelper(const char* name, const char* tag, const char* descriptor,
                                 OUtils::ShaderSource& source, OUtils::OCLData& data)
    : writer(name, tag, descriptor, source, data)
{
}

GPUSourceHelper::~GPUSourceHelper() = default;

void GPUSourceHelper::addPluginVariable(std::string_view name, OUtils::PluginInterface* plugin)
{
    evaluator.addVariable(std::make_unique<GPUVariable>(name, plugin));
}

void GPUSourceHelper::addColorVariable(std::string_view name, float value)
{
    evaluator.addVariable(std::make_unique<GPUVariable>(name, OUtils::AColor{value, value, value, value}));
}

void GPUSourceHelper::addExpressionVariable(std::string_view name, std::string_view text)
{
    expr::LispParser trial(text);
    if (!trial.getRoot()) {
        expr::reportError({expr::kVariableSyntax, name, ": ", text});
        return;
    }
    evaluator.addVariable(std::make_unique<GPUVariable>(name, text));
}

void GPUSourceHelper::evaluate(std::string_view expression)
{
    evaluator.evaluate(writer, expression);
}

} // namespace nezaiva
