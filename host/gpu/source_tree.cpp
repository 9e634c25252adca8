#include "host/gpu/source_tree.h"

#include "host/gpu/source_slot_text.h"

#include <algorithm>
#include <string_view>
#include <vector>

namespace ombrix {
namespace {

// A tree of any depth stays readable, and no larger than its source times a constant.
constexpr std::size_t kDeepestIndent = 40;

struct Branch {
    std::uint32_t slot;
    std::size_t depth;
    bool isLast;
    std::string_view name;
};

class TreeDrawing {
public:
    TreeDrawing(const SourceReading& source, const SourceTreeOptions& treeOptions)
        : reading(source), options(treeOptions), labels(source.slots.size(), 0)
    {
        nameRepeatedSlots();
        for (const SourceSlot& slot : reading.slots)
            gutter = std::max(gutter, std::to_string(slot.lineNumber).size());
    }

    std::string draw()
    {
        for (auto root = reading.results.rbegin(); root != reading.results.rend(); ++root)
            pending.push_back({*root, 0, true, {}});
        while (!pending.empty()) {
            const Branch branch = pending.back();
            pending.pop_back();
            drawSlot(branch);
            pushInputs(branch);
        }
        return text;
    }

private:
    void nameRepeatedSlots()
    {
        for (const SourceSlot& slot : reading.slots)
            if (slot.repeated != SourceSlot::kNone) labels[slot.repeated] = 1;
        std::uint32_t next = 0;
        for (std::uint32_t& label : labels)
            if (label) label = ++next;
    }

    void drawSlot(const Branch& branch)
    {
        const SourceSlot& slot = reading.slots[branch.slot];
        const SlotWords words = wordsOf(reading, slot, options);
        if (branch.depth > 0 && branch.depth <= kDeepestIndent) goesOn[branch.depth] = !branch.isLast;
        const std::string number = std::to_string(slot.lineNumber);
        text.append(gutter - number.size(), ' ').append(number).append("  ");
        beginBranch(branch);
        if (!branch.name.empty()) text.append(branch.name).append(": ");
        if (labels[branch.slot]) text += "#" + std::to_string(labels[branch.slot]) + " = ";
        if (slot.repeated != SourceSlot::kNone) {
            text += "#" + std::to_string(labels[slot.repeated]);
            if (!words.headline.empty()) text += ", ";
        }
        text.append(words.headline).append("\n");
        for (const std::string& detail : words.details)
            drawDetail(branch, slot.inputCount > 0, detail);
    }

    void drawDetail(const Branch& branch, bool hasInputs, const std::string& detail)
    {
        text.append(gutter + 2, ' ');
        const std::size_t levels = std::min(branch.depth, kDeepestIndent);
        for (std::size_t level = 1; level <= levels; ++level)
            text += goesOn[level] ? "|  " : "   ";
        text.append(hasInputs ? "|    " : "     ").append(detail).append("\n");
    }

    void beginBranch(const Branch& branch)
    {
        const std::size_t levels = std::min(branch.depth, kDeepestIndent);
        for (std::size_t level = 1; level < levels; ++level)
            text += goesOn[level] ? "|  " : "   ";
        if (levels > 0) text += branch.isLast ? "`- " : "+- ";
        if (branch.depth > kDeepestIndent) text += "(depth " + std::to_string(branch.depth) + ") ";
    }

    void pushInputs(const Branch& branch)
    {
        const SourceSlot& slot = reading.slots[branch.slot];
        for (std::uint32_t i = slot.inputCount; i-- > 0;) {
            const bool isLast = i + 1 == slot.inputCount;
            pending.push_back(
                {reading.inputs[slot.firstInput + i], branch.depth + 1, isLast, inputName(slot, i, isLast)});
        }
    }

    static std::string_view inputName(const SourceSlot& slot, std::uint32_t index, bool isLast)
    {
        if (!slot.form) return {};
        if (slot.form->use == SlotUse::KeepsLast) return isLast ? "result" : std::string_view{};
        // Where slots are missing, which ones they are is unknown.
        const bool complete = slot.inputCount == static_cast<std::uint32_t>(slot.form->inputs);
        return complete && index < kMostInputNames ? slot.form->inputNames[index] : std::string_view{};
    }

    const SourceReading& reading;
    const SourceTreeOptions& options;
    std::vector<std::uint32_t> labels; // by slot; 0 for one that nothing repeats
    std::vector<Branch> pending;
    bool goesOn[kDeepestIndent + 1] = {}; // whether a branch of that depth is still to come
    std::size_t gutter = 1;
    std::string text;
};

} // namespace

std::string drawSourceTree(const SourceReading& reading, const SourceTreeOptions& options)
{
    return TreeDrawing(reading, options).draw();
}

} // namespace ombrix
