// What the tests of GPU expressions share: the lines of a source, by their numbers, and textures.
#pragma once

#include "textures/expr/gpu_expr_evaluator.h"

#include "expr_support.h"
#include "support/test_textures.h"
#include "support/text_sink.h"

#include <initializer_list>
#include <memory>
#include <string>
#include <variant>
#include <vector>

namespace expr_test {

inline const std::string kNext = "subtex\n";

// An operator with its first integers; the others are 0.
inline std::string op(int opcode, std::vector<int> operands = {})
{
    operands.resize(12);
    std::string text = "bitmap " + std::to_string(opcode) + "\nuvw_transform ";
    for (std::size_t i = 0; i < operands.size(); ++i)
        text += std::to_string(operands[i]) + (i == 11 ? "\n" : i % 3 == 2 ? ", " : ",");
    return text;
}

inline std::string gray(const std::string& number)
{
    return "color " + number + " " + number + " " + number + " " + number + "\n";
}

// What a texture of this label writes when the three strings reach it.
inline std::string source(const std::string& label)
{
    return label + " theName theTag MaterialDescriptor\n";
}

// The slots of a source, with the lines that part them.
inline std::string slots(std::initializer_list<std::string> texts)
{
    std::string joined;
    for (const std::string& text : texts)
        joined += (joined.empty() ? "" : kNext) + text;
    return joined;
}

// A colour texture whose bounds lie apart, so that no condition on it is known.
class Texture : public support::TestColor {
public:
    explicit Texture(const char* name) : TestColor(name, nullptr) { upperBound = {1.0f, 1.0f, 1.0f, 1.0f}; }

    operator OUtils::PluginInterface*() { return static_cast<OUtils::TextureInterface*>(this); }
};

// A name, and the texture, constant or expression that it stands for.
struct Binding {
    Binding(const char* boundName, OUtils::PluginInterface* texture) : name(boundName), meaning(texture) {}
    Binding(const char* boundName, const OUtils::AColor& constant) : name(boundName), meaning(constant) {}
    Binding(const char* boundName, const char* text) : name(boundName), meaning(text) {}

    std::unique_ptr<nezaiva::expr::gpu::GPUVariable> variable() const
    {
        return std::visit(
            [this](const auto& value) {
                return std::make_unique<nezaiva::expr::gpu::GPUVariable>(name, value);
            },
            meaning);
    }

    const char* name;
    std::variant<OUtils::PluginInterface*, OUtils::AColor, const char*> meaning;
};

// Writes the source of an expression into the sink. Returns the writer's depth.
inline int evaluate(const std::vector<Binding>& bindings, std::string_view expression,
                    OUtils::ShaderSource& sink)
{
    support::NoData data;
    nezaiva::expr::gpu::GPUSourceWriter writer("theName", "theTag", "MaterialDescriptor", sink, data);
    nezaiva::expr::gpu::GPUExpressionEvaluator evaluator;
    for (const Binding& binding : bindings)
        evaluator.addVariable(binding.variable());
    evaluator.evaluate(writer, expression);
    return writer.getDepth();
}

// What the evaluation of an expression wrote.
struct Written {
    std::string source;
    std::string errors;
    int depth = 0;
};

inline Written evaluated(const std::vector<Binding>& bindings, std::string_view expression,
                         support::TextKind kind = support::TextKind::Understood)
{
    support::TextSink sink(kind);
    Written written;
    written.errors = errorsOf([&] { written.depth = evaluate(bindings, expression, sink); });
    written.source = sink.text;
    return written;
}

} // namespace expr_test
