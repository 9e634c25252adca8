#include "textures/expr/gpu_expr_prepare.h"

#include "textures/expr/expr_messages.h"
#include "textures/expr/lisp_parser.h"
#include "textures/expr/mirror_visitor.h"

#include <ombrix/texture_interfaces.h>

#include <cstddef>
#include <optional>

namespace nezaiva::expr::gpu {

using namespace OUtils;

namespace {

constexpr int kConditionArg = 0;
constexpr int kThenArg = 1;
constexpr int kElseArg = 2;
constexpr std::size_t kIfArgs = 3;

// "Zero", for a condition.
bool isZero(float value)
{
    constexpr float kLimit = 0.0001f;
    return value > -kLimit && value < kLimit;
}

int selectBy(float condition)
{
    return isZero(condition) ? kElseArg : kThenArg;
}

// The argument that a texture's bounds select, if they lie together.
// Kept as is: a colour is known by red alone; its green, blue and alpha may vary
// (GpuCondition.AColorTextureIsKnownByItsRedBounds).
std::optional<int> selectByBounds(PluginInterface& texture)
{
    // Bounds that a texture leaves unwritten are apart.
    float lowerValue = 0.0f;
    float upperValue = 1.0f;
    switch (texture.getInterfaceID()) {
    case EXT_TEXTURE: {
        AColor lower{0.0f, 0.0f, 0.0f, 0.0f};
        AColor upper{1.0f, 1.0f, 1.0f, 1.0f};
        static_cast<TextureInterface&>(texture).evalColorBounds(&lower, &upper);
        lowerValue = lower.r;
        upperValue = upper.r;
        break;
    }
    case EXT_TEXTURE_FLOAT:
        static_cast<TextureFloatInterface&>(texture).evalFloatBounds(&lowerValue, &upperValue);
        break;
    case EXT_TEXTURE_VECTOR: {
        Vector lower{0.0f, 0.0f, 0.0f};
        Vector upper{1.0f, 1.0f, 1.0f};
        static_cast<TextureVectorInterface&>(texture).evalVectorBounds(&lower, &upper);
        // Kept as is: the lower x against the upper y (GpuCondition.AVectorTextureIsKnownByXAndY).
        lowerValue = lower.x;
        upperValue = upper.y;
        break;
    }
    default:
        return std::nullopt;
    }
    if (!isZero(lowerValue - upperValue)) return std::nullopt;
    return selectBy(lowerValue);
}

class ConditionOptimizer : public MirrorVisitor {
public:
    explicit ConditionOptimizer(const VariableVector* boundVariables) : variables(boundVariables) {}

    void visitFunction(FunctionNode& node) override
    {
        if (node.getName() == "if" && node.getArgs().size() >= kIfArgs) {
            if (const std::optional<int> selected = selectArg(*node.getArg(kConditionArg))) {
                setResult(mirror(*node.getArg(*selected)));
                return;
            }
        }
        MirrorVisitor::visitFunction(node);
    }

private:
    std::optional<int> selectArg(Node& condition) const
    {
        switch (condition.getType()) {
        case kLiteralType:
            return selectBy(static_cast<FloatingLiteralNode&>(condition).getValue());
        case kSymbolType:
            return selectBySymbol(static_cast<SymbolNode&>(condition).getName());
        default:
            return std::nullopt;
        }
    }

    std::optional<int> selectBySymbol(const HostString& name) const
    {
        const GPUVariable* variable = findVariable(*variables, name);
        if (!variable) {
            reportError({kUndefinedVariable, name, "'"});
            return std::nullopt;
        }
        if (variable->type == kColorVariable) return selectBy(variable->color.r);
        if (variable->type != kPluginVariable) return std::nullopt;
        if (!variable->plugin) return kElseArg;
        return selectByBounds(*variable->plugin);
    }

    const VariableVector* variables;
};

// Kept as is: the arguments of a "color" that are no numbers are never evaluated; they read as 0
// (GpuExpression.AColorFormIsOneSlot).
class ColorToList : public MirrorVisitor {
public:
    void visitFunction(FunctionNode& node) override
    {
        if (node.getName() != "color") {
            MirrorVisitor::visitFunction(node);
            return;
        }
        NodeVector channels;
        for (int i = 0; i < kChannels; ++i) {
            const Node* arg = node.getArg(i);
            const bool isLiteral = arg && arg->getType() == kLiteralType;
            const float value = isLiteral ? static_cast<const FloatingLiteralNode*>(arg)->getValue() : 0.0f;
            channels.push_back(std::make_unique<FloatingLiteralNode>(value));
        }
        setResult(std::make_unique<ListNode>(std::move(channels)));
    }

private:
    static constexpr int kChannels = 4;
};

} // namespace

std::unique_ptr<Node> prepare(std::string_view text, const VariableVector& variables)
{
    LispParser parser(text);
    VisitorChain chain;
    chain.addVisitor(std::make_unique<ConditionOptimizer>(&variables));
    chain.addVisitor(std::make_unique<ColorToList>());
    return chain.run(parser.getRoot());
}

} // namespace nezaiva::expr::gpu
