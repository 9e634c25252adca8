// Copying and rewriting trees.
#pragma once

#include "textures/expr/visitor.h"

namespace nezaiva::expr {

// Copies a tree, and is the base of every rewrite: a subclass overrides a visit operation, decides, and
// ends in setResult, in setMirrored or in the operation of this class.
//
// A result belongs to whoever reads it; the destructor frees no node.
class MirrorVisitor : public Visitor {
public:
    MirrorVisitor();

    void visitSymbol(SymbolNode& node) override;
    void visitList(ListNode& node) override;
    void visitFunction(FunctionNode& node) override;
    void visitLiteral(FloatingLiteralNode& node) override;
    void visitBegin(BeginNode& node) override;

    // The copy of the tree, owned by the caller.
    Node* mirror(Node& node);
    // The copy of the node that is being visited, and after accept the copy of the whole tree.
    void setResult(Node* node) { results.back() = node; }
    Node* getResult() const { return results.back(); }

protected:
    // As setResult with the node's mirror, but made after the visit operation that calls it, so that a
    // chain of replacements costs no stack.
    void setMirrored(Node& node);

private:
    // Copies the held nodes and then, from their copies, the node itself, after the operation that
    // calls it when a walk is under way.
    void copyAfter(const NodeVector& held, Node& node);
    static void mirrorStep(Visitor& visitor, Node& node);
    static void buildStep(Visitor& visitor, Node& node);

    // One place for each level: copies that wait for their parent's, and the copy being made on top.
    // Never empty.
    NodeVector results;
    Agenda agenda;
};

// Rewrites that follow one another.
class VisitorChain {
public:
    VisitorChain() = default;
    VisitorChain(const VisitorChain&) = delete;
    VisitorChain& operator=(const VisitorChain&) = delete;
    ~VisitorChain();

    // Takes the visitor.
    void addVisitor(MirrorVisitor* visitor);
    // Lets each visitor rewrite what the one before it made. Returns a new tree, owned by the caller,
    // also from a chain without visitors; null for null. The given tree is untouched.
    Node* run(Node* root);

private:
    HostVector<MirrorVisitor*> visitors;
};

} // namespace nezaiva::expr
