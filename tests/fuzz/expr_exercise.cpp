#include "fuzz/expr_exercise.h"

#include "textures/expr/gpu_source_helper.h"
#include "textures/expr/lisp_parser.h"
#include "textures/expr/mirror_visitor.h"

#include "support/test_textures.h"
#include "support/text_sink.h"
#include "textures/expr/expr_reprint.h"

#include <cstdlib>
#include <memory>

namespace fuzz {

namespace {

using namespace nezaiva::expr;

std::string exerciseTree(std::string_view text)
{
    LispParser parser(text);
    Node* root = parser.getRoot();
    if (!root) return "a root is null";
    MirrorVisitor visitor;
    const std::unique_ptr<Node> copy = visitor.mirror(*root);
    if (copy->toString() != root->toString()) return "a copy prints otherwise";
    if (copy->compare(*root) != 0) return "a copy compares otherwise";
    LispParser again(expr_test::reprint(*root));
    if (again.getRoot()->toString() != root->toString()) return "a reprint parses otherwise";
    if (again.getRoot()->compare(*root) != 0) return "a reprint compares otherwise";
    return {};
}

// The next word of a line, and the line without it.
std::string_view takeWord(std::string_view& line)
{
    const std::size_t end = line.find_first_of(" ,");
    const std::string_view word = line.substr(0, end);
    line.remove_prefix(end == line.npos ? line.size() : line.find_first_not_of(" ,", end));
    return word;
}

bool hasNumbers(std::string_view line, int count)
{
    for (; count > 0; --count) {
        const std::string word(takeWord(line));
        char* end = nullptr;
        std::strtod(word.c_str(), &end);
        if (word.empty() || *end != '\0') return false;
    }
    return line.empty();
}

// Whether a line belongs to the vocabulary of expressions.
bool isSourceLine(std::string_view line)
{
    if (line == "subtex" || line == "texture name tag MaterialDescriptor") return true;
    const std::string_view keyword = takeWord(line);
    if (keyword == "color") return hasNumbers(line, 4);
    if (keyword == "bitmap") return line.starts_with("-") && hasNumbers(line, 1);
    if (keyword == "uvw_transform") return hasNumbers(line, 12);
    return false;
}

std::string exerciseSource(std::string_view text)
{
    support::TextSink sink(support::TextKind::Broken); // expressions of any bytes
    support::NoData data;
    support::TestColor texture;
    texture.label = "texture";
    texture.upperBound = {1.0f, 1.0f, 1.0f, 1.0f};
    nezaiva::GPUSourceHelper helper("name", "tag", "MaterialDescriptor", sink, data);
    helper.addPluginVariable("a", static_cast<OUtils::TextureInterface*>(&texture));
    helper.addPluginVariable("n", nullptr);
    helper.addColorVariable("c", 0.5f);
    helper.addExpressionVariable("e", "(+ (* a c) (if n 1 (luminance b)))");
    helper.evaluate(text);
    std::string_view rest = sink.text;
    while (!rest.empty()) {
        const std::size_t end = rest.find('\n');
        if (end == rest.npos) return "the last line has no end";
        if (!isSourceLine(rest.substr(0, end)))
            return "a line is unknown: " + std::string(rest.substr(0, end));
        rest.remove_prefix(end + 1);
    }
    return {};
}

} // namespace

std::string exerciseExpression(std::string_view text)
{
    const std::string fault = exerciseTree(text);
    return fault.empty() ? exerciseSource(text) : fault;
}

} // namespace fuzz
