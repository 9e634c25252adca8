// Walking a tree.
#pragma once

#include "textures/expr/node.h"

#include <cstdint>
#include <functional>
#include <map>
#include <string_view>
#include <utility>

namespace nezaiva::expr {

// An ordered map from names.
template <class T>
using NameMap = std::map<HostString, T, std::less<>, OUtils::HostAllocator<std::pair<const HostString, T>>>;

// Does nothing but walk through a text's forms; a subclass says what happens at which node, and whether the
// walk goes further down there. Borrows the nodes that it visits.
class Visitor {
public:
    Visitor() = default;
    Visitor(const Visitor&) = delete;
    Visitor& operator=(const Visitor&) = delete;

    virtual ~Visitor() = default;
    virtual void visitSymbol(SymbolNode& /*node*/) {}
    virtual void visitList(ListNode& /*node*/) {}
    virtual void visitFunction(FunctionNode& /*node*/) {}
    virtual void visitLiteral(FloatingLiteralNode& /*node*/) {}
    // Visits the children.
    virtual void visitBegin(BeginNode& node);
    // Lets each node accept this visitor, in order.
    virtual void visitAll(const NodeVector& nodes);
};

// Counts how often each name occurs as a symbol, over all trees that accept it. A function's name does
// not count.
class SymbolCounterVisitor : public Visitor {
public:
    void visitSymbol(SymbolNode& node) override;
    void visitList(ListNode& node) override;
    void visitFunction(FunctionNode& node) override;
    void visitBegin(BeginNode& node) override;

    // 0 for a name that was never seen.
    std::int32_t getCount(std::string_view name) const;

private:
    NameMap<std::int32_t> counts;
};

} // namespace nezaiva::expr
