#include "textures/expr/node.h"

#include "textures/expr/visitor.h"

#include <algorithm>
#include <cstdint>

namespace nezaiva::expr {

// Deletes trees with neither recursion nor memory of its own: while a node is being emptied, the last
// place of its parent's vector, whose node is the one being emptied, holds the parent's own parent.
class TreeDeletion {
public:
    static void run(NodeVector& trees)
    {
        Node* current = nullptr; // the node being emptied; null for the vector itself
        Node* parent = nullptr;
        std::reverse(trees.begin(), trees.end()); // so that the first one is last, and deleted first
        while (true) {
            NodeVector& held = nodesBelow(current, trees);
            if (!held.empty()) {
                Node* next = held.back();
                NodeVector* below = nodesOf(*next);
                if (!below || below->empty()) {
                    held.pop_back();
                    delete next;
                    continue;
                }
                std::reverse(below->begin(), below->end());
                held.back() = parent;
                parent = current;
                current = next;
                continue;
            }
            if (!current) return;
            delete current;
            current = parent;
            NodeVector& above = nodesBelow(current, trees);
            parent = above.back();
            above.pop_back();
        }
    }

    static NodeVector* nodesOf(Node& node)
    {
        switch (node.getType()) {
        case kBeginType:
            return &static_cast<BeginNode&>(node).children;
        case kFunctionType:
            return &static_cast<FunctionNode&>(node).args;
        case kListType:
            return &static_cast<ListNode&>(node).children;
        default:
            return nullptr;
        }
    }

private:
    static NodeVector& nodesBelow(Node* node, NodeVector& trees)
    {
        NodeVector* held = node ? nodesOf(*node) : nullptr;
        return held ? *held : trees;
    }
};

const NodeVector* heldNodes(const Node& node)
{
    return TreeDeletion::nodesOf(const_cast<Node&>(node));
}

void deleteTrees(NodeVector& trees)
{
    TreeDeletion::run(trees);
}

BeginNode::~BeginNode()
{
    deleteTrees(children);
}

FunctionNode::~FunctionNode()
{
    deleteTrees(args);
}

ListNode::~ListNode()
{
    deleteTrees(children);
}

void BeginNode::accept(Visitor& visitor)
{
    visitor.visitBegin(*this);
}

void FloatingLiteralNode::accept(Visitor& visitor)
{
    visitor.visitLiteral(*this);
}

void FunctionNode::accept(Visitor& visitor)
{
    visitor.visitFunction(*this);
}

void ListNode::accept(Visitor& visitor)
{
    visitor.visitList(*this);
}

void SymbolNode::accept(Visitor& visitor)
{
    visitor.visitSymbol(*this);
}

Node* FunctionNode::getArg(int index) const
{
    const auto place = static_cast<std::uint64_t>(static_cast<std::int64_t>(index));
    return place < args.size() ? args[place] : nullptr;
}

} // namespace nezaiva::expr
