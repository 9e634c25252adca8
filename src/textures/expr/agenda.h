// Agenda: the steps that a walk over a tree has yet to take. A visitor queues steps in its agenda where
// it would otherwise call itself, so that a deep tree costs heap and not stack.
#pragma once

#include "textures/expr/node.h"

#include <cstddef>

namespace nezaiva::expr {

class Agenda {
public:
    // A step of the visitor that owns the agenda.
    using Action = void (*)(Visitor& visitor, Node& node);

    // Queues a step in front of all others: what is added last runs first.
    void add(Action action, Node& node);
    // Queues one step for each of the first count nodes, so that they run in the nodes' order.
    void addEach(Action action, const NodeVector& nodes, std::size_t count);

    // The number of queued steps, to be given to runDownTo.
    std::size_t size() const { return steps.size(); }
    // Takes all queued steps. Called from within a step it returns at once: the walk that is under way
    // takes them after that step.
    void run(Visitor& visitor);
    // Takes steps at once, from within a step too, until only the first `remaining` are left.
    void runDownTo(Visitor& visitor, std::size_t remaining);

private:
    struct Step {
        Action action;
        Node* node;
    };

    HostVector<Step> steps;
    bool running = false;
};

} // namespace nezaiva::expr
