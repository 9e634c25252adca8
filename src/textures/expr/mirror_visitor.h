// Copying and rewriting trees.
#pragma once

#include "textures/expr/visitor.h"

#include <memory>

namespace nezaiva::expr {

// Copies a tree, and is the base of every rewrite: a subclass overrides a visit operation, decides, and
// ends in setResult or in the operation of this class. The copied tree stays as it is.
class MirrorVisitor : public Visitor {
public:
    MirrorVisitor();

    void visitSymbol(SymbolNode& node) override;
    void visitList(ListNode& node) override;
    void visitFunction(FunctionNode& node) override;
    void visitLiteral(FloatingLiteralNode& node) override;
    void visitBegin(BeginNode& node) override;

    // The copy of the tree. A visit operation calls it for the nodes below its own.
    std::unique_ptr<Node> mirror(Node& node);
    // The copy of the node that is being visited, and after accept that of the whole tree. It stays with the
    // visitor until takeResult hands it over and leaves null.
    void setResult(std::unique_ptr<Node> node) { results.back() = std::move(node); }
    Node* getResult() const { return results.back().get(); }
    std::unique_ptr<Node> takeResult() { return std::move(results.back()); }

private:
    NodeVector mirrorAll(const NodeVector& nodes);

    // One for each level of mirror that is under way, and below them the one of accept.
    NodeVector results;
};

// Rewrites that follow one another.
class VisitorChain {
public:
    void addVisitor(std::unique_ptr<MirrorVisitor> visitor);
    // Lets each visitor rewrite what the one before it made. Returns a new tree, also from a chain without
    // visitors; null for null. The given tree is borrowed and stays as it is.
    std::unique_ptr<Node> run(Node* root);

private:
    HostVector<std::unique_ptr<MirrorVisitor>> visitors;
};

} // namespace nezaiva::expr
