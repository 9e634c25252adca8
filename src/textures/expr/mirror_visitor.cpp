#include "textures/expr/mirror_visitor.h"

#include <cstddef>

namespace nezaiva::expr {

MirrorVisitor::MirrorVisitor()
{
    results.push_back(nullptr);
}

void MirrorVisitor::visitSymbol(SymbolNode& node)
{
    setResult(new SymbolNode(node.getName()));
}

void MirrorVisitor::visitLiteral(FloatingLiteralNode& node)
{
    setResult(new FloatingLiteralNode(node.getValue()));
}

void MirrorVisitor::visitList(ListNode& node)
{
    copyAfter(node.getChildren(), node);
}

void MirrorVisitor::visitFunction(FunctionNode& node)
{
    copyAfter(node.getArgs(), node);
}

void MirrorVisitor::visitBegin(BeginNode& node)
{
    copyAfter(node.getChildren(), node);
}

Node* MirrorVisitor::mirror(Node& node)
{
    const std::size_t remaining = agenda.size();
    agenda.add(mirrorStep, node);
    agenda.runDownTo(*this, remaining);
    Node* copy = getResult();
    results.pop_back();
    return copy;
}

void MirrorVisitor::setMirrored(Node& node)
{
    agenda.add(acceptStep, node);
    agenda.run(*this);
}

void MirrorVisitor::copyAfter(const NodeVector& held, Node& node)
{
    agenda.add(buildStep, node);
    agenda.addEach(mirrorStep, held, held.size());
    agenda.run(*this);
}

// Leaves the node's copy on top of the results, now or when the steps that it queues are done.
void MirrorVisitor::mirrorStep(Visitor& visitor, Node& node)
{
    auto& self = static_cast<MirrorVisitor&>(visitor);
    self.results.push_back(nullptr);
    node.accept(self);
}

// The copies of the held nodes are on top of the results, the place for the node's copy is below them.
void MirrorVisitor::buildStep(Visitor& visitor, Node& node)
{
    auto& self = static_cast<MirrorVisitor&>(visitor);
    const auto count = static_cast<std::ptrdiff_t>(heldNodes(node)->size());
    const NodeVector copies(self.results.end() - count, self.results.end());
    self.results.erase(self.results.end() - count, self.results.end());
    switch (node.getType()) {
    case kBeginType:
        self.setResult(new BeginNode(copies));
        break;
    case kFunctionType:
        self.setResult(new FunctionNode(static_cast<FunctionNode&>(node).getName(), copies));
        break;
    default:
        self.setResult(new ListNode(copies));
        break;
    }
}

VisitorChain::~VisitorChain()
{
    for (MirrorVisitor* visitor : visitors)
        delete visitor;
}

void VisitorChain::addVisitor(MirrorVisitor* visitor)
{
    visitors.push_back(visitor);
}

Node* VisitorChain::run(Node* root)
{
    if (!root) return nullptr;
    if (visitors.empty()) addVisitor(new MirrorVisitor);
    Node* tree = root;
    for (MirrorVisitor* visitor : visitors) {
        if (!tree) break;
        tree->accept(*visitor);
        Node* rewritten = visitor->getResult();
        if (tree != root) delete tree;
        tree = rewritten;
    }
    return tree;
}

} // namespace nezaiva::expr
