// The parse tree of the expression language.
//
// A tree has one owner, the holder of its root; each node owns its children. A tree and everything that
// walks it belong to one thread. Every walk recurses, so a tree's depth costs stack; the parser says how
// deep a tree becomes.
#pragma once

#include <ombrix/memory.h>

#include <cstdint>
#include <memory>
#include <utility>

namespace nezaiva::expr {

using OUtils::HostString;
using OUtils::HostVector;

class Visitor;
class Node;

// Nodes in order, none of them null.
using NodeVector = HostVector<std::unique_ptr<Node>>;

enum NodeType : int {
    kBeginType = 1,
    kLiteralType = 2,
    kFunctionType = 3,
    kListType = 4,
    kSymbolType = 5,
};

class Node {
public:
    Node() = default;
    Node(const Node&) = delete;
    Node& operator=(const Node&) = delete;

    virtual ~Node() = default;
    // Calls the visitor's operation for this node's class.
    virtual void accept(Visitor& visitor) = 0;
    // One of NodeType.
    virtual int getType() const = 0;
    // Three-way comparison: below 0 when this node sorts first, 0 when equal, else above 0. Throws
    // std::invalid_argument when two nodes that stand at the same place differ in type.
    virtual std::int32_t compare(const Node& other) const = 0;
    // The printed form, such as "[Begin [Func + a, 1]]". Never follows the process's locale.
    virtual HostString toString() const = 0;
};

// The whole text: its forms, in order.
class BeginNode : public Node {
public:
    explicit BeginNode(NodeVector nodes) : children(std::move(nodes)) {}

    void accept(Visitor& visitor) override;
    int getType() const override { return kBeginType; }
    std::int32_t compare(const Node& other) const override;
    HostString toString() const override;

    const NodeVector& getChildren() const { return children; }

private:
    NodeVector children;
};

class FloatingLiteralNode : public Node {
public:
    explicit FloatingLiteralNode(float number) : value(number) {}

    void accept(Visitor& visitor) override;
    int getType() const override { return kLiteralType; }
    // -1 when the other value is greater, 0 when equal, else 1: a NaN on either side gives 1.
    std::int32_t compare(const Node& other) const override;
    HostString toString() const override;

    float getValue() const { return value; }

private:
    float value;
};

class FunctionNode : public Node {
public:
    FunctionNode(HostString functionName, NodeVector arguments)
        : name(std::move(functionName)), args(std::move(arguments))
    {
    }

    void accept(Visitor& visitor) override;
    int getType() const override { return kFunctionType; }
    // Compares the arguments alone.
    std::int32_t compare(const Node& other) const override;
    HostString toString() const override;

    const HostString& getName() const { return name; }
    const NodeVector& getArgs() const { return args; }
    // The argument at the index, or null when there is none, also for a negative index.
    Node* getArg(int index) const;

private:
    HostString name;
    NodeVector args;
};

// A quoted list.
class ListNode : public Node {
public:
    explicit ListNode(NodeVector nodes) : children(std::move(nodes)) {}

    void accept(Visitor& visitor) override;
    int getType() const override { return kListType; }
    std::int32_t compare(const Node& other) const override;
    HostString toString() const override;

    const NodeVector& getChildren() const { return children; }

private:
    NodeVector children;
};

class SymbolNode : public Node {
public:
    explicit SymbolNode(HostString symbolName) : name(std::move(symbolName)) {}

    void accept(Visitor& visitor) override;
    int getType() const override { return kSymbolType; }
    // By bytes; of two names of which one begins the other, the shorter sorts first. -1, 0 or 1.
    std::int32_t compare(const Node& other) const override;
    HostString toString() const override;

    const HostString& getName() const { return name; }

private:
    HostString name;
};

} // namespace nezaiva::expr
