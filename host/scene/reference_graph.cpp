#include "host/scene/reference_graph.h"

#include <fmt/format.h>

#include <algorithm>
#include <set>

namespace ombrix {

bool evaluatesReferences(const ParameterDeclaration& declaration)
{
    if (isTextureInput(declaration.kind)) return true;
    if (declaration.kind != Declaration::Plugin) return false;
    constexpr OUtils::InterfaceId kEvaluated[] = {
        OUtils::EXT_TEXTURE,     OUtils::EXT_TEXTURE_FLOAT,
        OUtils::EXT_TEXTURE_INT, OUtils::EXT_TEXTURE_VECTOR,
        OUtils::EXT_RTTEX,       OUtils::EXT_TEXTURE_TRANSFORM,
        OUtils::EXT_UVWGEN,      OUtils::EXT_MATERIAL,
        OUtils::EXT_BSDF,        OUtils::EXT_MAYA_FLUID_TEXTURE,
    };
    return std::find(std::begin(kEvaluated), std::end(kEvaluated), declaration.requiredInterface) !=
           std::end(kEvaluated);
}

void ReferenceGraph::addNode(const PluginInstance* node)
{
    nodes[node];
}

void ReferenceGraph::removeNode(const PluginInstance* node)
{
    nodes.erase(node);
}

void ReferenceGraph::setEdges(const PluginInstance* node, const std::string& parameter,
                              std::vector<Edge> edges)
{
    Node& holder = nodes[node];
    if (edges.empty())
        holder.edges.erase(parameter);
    else
        holder.edges[parameter] = std::move(edges);
}

std::vector<const PluginInstance*> ReferenceGraph::targetsOf(const PluginInstance* node,
                                                             bool evaluatedOnly) const
{
    std::vector<const PluginInstance*> targets;
    for (const auto& [parameter, edges] : nodes.at(node).edges)
        for (const Edge& edge : edges)
            if (edge.evaluated || !evaluatedOnly) targets.push_back(edge.target);
    return targets;
}

ReferenceGraph::Group ReferenceGraph::allNodes() const
{
    Group all;
    for (const auto& [node, holder] : nodes)
        all.push_back(node);
    return all;
}

// Tarjan's algorithm with a stack of its own: a long chain of references must not use up the thread's.
std::vector<ReferenceGraph::Group> ReferenceGraph::groups(const Group& within, bool evaluatedOnly) const
{
    struct Mark {
        int number = -1; // in the order of discovery
        int lowest = 0;  // the lowest number that is reached from here within the open group
        bool open = false;
    };
    struct Visit {
        const PluginInstance* node;
        std::vector<const PluginInstance*> targets;
        std::size_t next = 0;
    };
    std::map<const PluginInstance*, Mark, ByName> marks;
    for (const PluginInstance* node : within)
        marks[node];
    std::vector<Group> found;
    Group open;
    std::vector<Visit> visits;
    int count = 0;
    const auto enter = [&](const PluginInstance* node) {
        Mark& mark = marks[node];
        mark = {count, count, true};
        ++count;
        open.push_back(node);
        visits.push_back({node, targetsOf(node, evaluatedOnly)});
    };
    for (const PluginInstance* root : within) {
        if (marks[root].number >= 0) continue;
        enter(root);
        while (!visits.empty()) {
            Visit& visit = visits.back();
            Mark& mark = marks[visit.node];
            if (visit.next < visit.targets.size()) {
                const PluginInstance* target = visit.targets[visit.next++];
                const auto known = marks.find(target);
                if (known == marks.end()) continue; // outside of what is looked at
                if (known->second.number < 0)
                    enter(target);
                else if (known->second.open)
                    mark.lowest = std::min(mark.lowest, known->second.number);
                continue;
            }
            const PluginInstance* node = visit.node;
            visits.pop_back();
            if (!visits.empty()) {
                Mark& holder = marks[visits.back().node];
                holder.lowest = std::min(holder.lowest, mark.lowest);
            }
            if (mark.lowest != mark.number) continue;
            const auto start = std::find(open.begin(), open.end(), node);
            Group group(start, open.end());
            open.erase(start, open.end());
            for (const PluginInstance* member : group)
                marks[member].open = false;
            found.push_back(std::move(group));
        }
    }
    return found;
}

// The shortest cycle through the group's first name.
ReferenceGraph::Fault ReferenceGraph::cycleFault(const Group& group) const
{
    const std::set<const PluginInstance*, ByName> members(group.begin(), group.end());
    const PluginInstance* start = *members.begin();
    std::map<const PluginInstance*, const PluginInstance*> cameFrom;
    std::vector<const PluginInstance*> queue = {start};
    for (std::size_t i = 0; i < queue.size() && !cameFrom.contains(start); ++i) {
        for (const PluginInstance* target : targetsOf(queue[i], true)) {
            if (!members.contains(target) || cameFrom.contains(target)) continue;
            cameFrom[target] = queue[i];
            queue.push_back(target);
        }
    }
    std::vector<const PluginInstance*> cycle = {start};
    for (const PluginInstance* node = cameFrom.at(start); node != start; node = cameFrom.at(node))
        cycle.push_back(node);
    cycle.push_back(start);
    std::reverse(cycle.begin(), cycle.end());

    Fault fault{start, {}, "the inputs run in a cycle: "};
    for (std::size_t i = 0; i < cycle.size(); ++i)
        fault.text += (i == 0 ? "" : " -> ") + cycle[i]->name;
    for (const auto& [parameter, edges] : nodes.at(start).edges)
        for (const Edge& edge : edges)
            if (edge.evaluated && edge.target == cycle[1] && fault.parameter.empty())
                fault.parameter = parameter;
    return fault;
}

std::vector<ReferenceGraph::Fault> ReferenceGraph::faults() const
{
    std::vector<Fault> found;
    std::map<const PluginInstance*, int> depths;
    bool tooLong = false;
    for (const Group& group : groups(allNodes(), true)) {
        const std::vector<const PluginInstance*> targets = targetsOf(group.front(), true);
        const bool cyclic =
            group.size() > 1 || std::find(targets.begin(), targets.end(), group.front()) != targets.end();
        if (cyclic) {
            found.push_back(cycleFault(group));
            continue;
        }
        int& depth = depths[group.front()];
        for (const PluginInstance* target : targets)
            depth = std::max(depth, depths[target] + 1);
        if (depth <= kLongestChain || tooLong) continue;
        tooLong = true;
        found.push_back({group.front(),
                         {},
                         fmt::format("more than {} inputs stand behind one another here; "
                                     "shorten the chain",
                                     kLongestChain)});
    }
    return found;
}

std::vector<const PluginInstance*> ReferenceGraph::order() const
{
    Group ordered;
    for (const Group& group : groups(allNodes(), false)) {
        if (group.size() == 1) {
            ordered.push_back(group.front());
            continue;
        }
        for (const Group& single : groups(group, true))
            ordered.push_back(single.front());
    }
    return ordered;
}

} // namespace ombrix
