// The GPU text that an expression is expected to give, slot by slot.
#pragma once

#include <array>
#include <cstddef>
#include <cstdio>
#include <initializer_list>
#include <string>

namespace support {

// Writes one slot a call, in the order of the calls. Textures are written as the test inputs write
// themselves when getSource got the strings of sourceOf.
class SlotLines {
public:
    SlotLines& texture(const char* label)
    {
        open();
        text += std::string(label) + " theName theTag MaterialDescriptor\n";
        return *this;
    }
    // A slot of an input that has no source.
    SlotLines& empty()
    {
        open();
        return *this;
    }
    // A constant in its six decimals, the same in all channels.
    SlotLines& grey(const char* number)
    {
        open();
        text += std::string("color ") + number + " " + number + " " + number + " " + number + "\n";
        return *this;
    }
    SlotLines& operation(int code, std::initializer_list<int> operands = {})
    {
        open();
        std::array<int, 12> n{};
        std::size_t i = 0;
        for (int operand : operands)
            n.at(i++) = operand;
        char line[200];
        std::snprintf(line, sizeof line, "bitmap %d\nuvw_transform %d,%d,%d, %d,%d,%d, %d,%d,%d, %d,%d,%d\n",
                      code, n[0], n[1], n[2], n[3], n[4], n[5], n[6], n[7], n[8], n[9], n[10], n[11]);
        text += line;
        return *this;
    }
    SlotLines& reference(int offset) { return operation(-952, {offset}); }
    // Drops that many slots below the last one.
    SlotLines& finish(int count) { return operation(-934, {count}); }

    std::string text;

private:
    void open()
    {
        if (!first) text += "subtex\n";
        first = false;
    }
    bool first = true;
};

} // namespace support
