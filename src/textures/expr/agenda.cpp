#include "textures/expr/agenda.h"

namespace nezaiva::expr {

void Agenda::add(Action action, Node& node)
{
    steps.push_back({action, &node});
}

void Agenda::addEach(Action action, const NodeVector& nodes, std::size_t count)
{
    for (std::size_t i = count; i-- > 0;)
        add(action, *nodes[i]);
}

void Agenda::run(Visitor& visitor)
{
    if (!running) runDownTo(visitor, 0);
}

void Agenda::runDownTo(Visitor& visitor, std::size_t remaining)
{
    // A step may throw for want of memory: its walk ends there, and later walks start afresh.
    struct Walk {
        Agenda& agenda;
        std::size_t remaining;
        bool outerRunning;
        ~Walk()
        {
            if (agenda.steps.size() > remaining) agenda.steps.resize(remaining);
            agenda.running = outerRunning;
        }
    } const walk{*this, remaining, running};
    running = true;
    while (steps.size() > remaining) {
        const Step step = steps.back();
        steps.pop_back();
        step.action(visitor, *step.node);
    }
}

} // namespace nezaiva::expr
