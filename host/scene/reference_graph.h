// Who refers to whom in a scene: cycles, and the order in which plugins live.
#pragma once

#include "host/params/value.h"
#include "host/scene/scene_object.h"

#include <map>
#include <string>
#include <vector>

namespace ombrix {

class ReferenceGraph {
public:
    // The longest chain of inputs that evaluate one another. Evaluations call one another in depth, so
    // a chain without end would run out of stack.
    static constexpr int kLongestChain = 1000;

    struct Edge {
        const PluginInstance* target;
        // Evaluating the holder evaluates the target: texture inputs, and references to textures, UVW
        // generators, materials and fluids. The others name an object of the scene.
        bool evaluated;
    };

    void addNode(const PluginInstance* node);
    void removeNode(const PluginInstance* node);
    // Replaces what a parameter of a node refers to.
    void setEdges(const PluginInstance* node, const std::string& parameter, std::vector<Edge> edges);

    struct Fault {
        const PluginInstance* instance;
        std::string parameter; // of the instance, where the fault shows; "" for none
        std::string text;
    };
    // Cycles of evaluated references, each as "a -> b -> a", and chains that are too long.
    std::vector<Fault> faults() const;
    // All nodes, what they refer to before them. In a cycle that names objects the evaluated references
    // alone count. By names where nothing else decides. Without faults only.
    std::vector<const PluginInstance*> order() const;

private:
    struct Node {
        std::map<std::string, std::vector<Edge>> edges; // by parameter
    };
    struct ByName {
        bool operator()(const PluginInstance* a, const PluginInstance* b) const { return a->name < b->name; }
    };
    using Nodes = std::map<const PluginInstance*, Node, ByName>;
    using Group = std::vector<const PluginInstance*>;

    // Strongly connected groups, each after those that it refers to.
    std::vector<Group> groups(const Group& within, bool evaluatedOnly) const;
    std::vector<const PluginInstance*> targetsOf(const PluginInstance* node, bool evaluatedOnly) const;
    Group allNodes() const;
    Fault cycleFault(const Group& group) const;

    Nodes nodes;
};

// Whether a parameter's references are evaluated by the plugin that holds them.
bool evaluatesReferences(const ParameterDeclaration& declaration);

} // namespace ombrix
