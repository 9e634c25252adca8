#include "textures/expr/mirror_visitor.h"

namespace nezaiva::expr {

MirrorVisitor::MirrorVisitor()
{
    results.push_back(nullptr);
}

void MirrorVisitor::visitSymbol(SymbolNode& node)
{
    setResult(std::make_unique<SymbolNode>(node.getName()));
}

void MirrorVisitor::visitLiteral(FloatingLiteralNode& node)
{
    setResult(std::make_unique<FloatingLiteralNode>(node.getValue()));
}

void MirrorVisitor::visitList(ListNode& node)
{
    setResult(std::make_unique<ListNode>(mirrorAll(node.getChildren())));
}

void MirrorVisitor::visitFunction(FunctionNode& node)
{
    setResult(std::make_unique<FunctionNode>(node.getName(), mirrorAll(node.getArgs())));
}

void MirrorVisitor::visitBegin(BeginNode& node)
{
    setResult(std::make_unique<BeginNode>(mirrorAll(node.getChildren())));
}

std::unique_ptr<Node> MirrorVisitor::mirror(Node& node)
{
    results.push_back(nullptr);
    node.accept(*this);
    std::unique_ptr<Node> copy = takeResult();
    results.pop_back();
    return copy;
}

NodeVector MirrorVisitor::mirrorAll(const NodeVector& nodes)
{
    NodeVector copies;
    copies.reserve(nodes.size());
    for (const std::unique_ptr<Node>& node : nodes)
        copies.push_back(mirror(*node));
    return copies;
}

void VisitorChain::addVisitor(std::unique_ptr<MirrorVisitor> visitor)
{
    visitors.push_back(std::move(visitor));
}

std::unique_ptr<Node> VisitorChain::run(Node* root)
{
    if (visitors.empty()) addVisitor(std::make_unique<MirrorVisitor>());
    std::unique_ptr<Node> tree;
    for (const std::unique_ptr<MirrorVisitor>& visitor : visitors) {
        if (!root) break;
        root->accept(*visitor);
        tree = visitor->takeResult();
        root = tree.get();
    }
    return tree;
}

} // namespace nezaiva::expr
