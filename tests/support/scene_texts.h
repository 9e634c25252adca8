// Scenes and probes out of texts, for tests.
#pragma once

#include "host/probe/probe_operations.h"
#include "host/probe/probe_run.h"
#include "host/scene/json_text.h"
#include "host/scene/scene.h"

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include <algorithm>
#include <memory>
#include <string>
#include <vector>

namespace support {

// {"ombrix_scene": 1, "plugins": {PLUGINS}}
inline std::string sceneText(const std::string& plugins)
{
    return R"({"ombrix_scene": 1, "plugins": {)" + plugins + "}}";
}

class SceneTest : public testing::Test {
protected:
    // Null, with the lines in errors, when the text is refused.
    std::unique_ptr<ombrix::Scene> parse(const std::string& text)
    {
        ombrix::Diagnostics diagnostics("look.json");
        auto scene = ombrix::Scene::parse(text, folder, registry, diagnostics);
        lines = diagnostics.lines();
        EXPECT_EQ(scene == nullptr, diagnostics.failed());
        return scene;
    }
    // The scene of these plugins must be refused with exactly this line.
    void expectRefused(const std::string& plugins, const std::string& line)
    {
        EXPECT_EQ(parse(sceneText(plugins)), nullptr) << plugins;
        EXPECT_EQ(lines, std::vector<std::string>{"error: look.json: " + line}) << plugins;
    }
    // The answer of a probe; "file errors" in its place when the probe is refused.
    nlohmann::json probe(ombrix::Scene& scene, const std::string& text)
    {
        ombrix::Diagnostics diagnostics("probe.json");
        const auto document = ombrix::parseJsonText(text, diagnostics);
        ombrix::ProbeFile file;
        if (document) file = ombrix::readProbe(ombrix::JsonPlace(*document, "", diagnostics), scene);
        lines = diagnostics.lines();
        if (diagnostics.failed()) return "file errors";
        const ombrix::ProbeAnswer answer = ombrix::runProbe(scene, file, diagnostics);
        lines = diagnostics.lines();
        allAnswered = answer.allAnswered;
        return nlohmann::json::parse(ombrix::formatJson(answer.json));
    }
    // The values of one request, given as the members of its object.
    nlohmann::json ask(const std::string& plugins, const std::string& request)
    {
        const auto scene = parse(sceneText(plugins));
        if (!scene) return "refused";
        const nlohmann::json answer =
            probe(*scene, R"({"ombrix_probe": 1, "requests": [{)" + request + "}]}");
        if (answer.is_string()) return answer;
        const nlohmann::json& result = answer["frames"][0]["results"][0];
        return result.contains("values") ? result["values"] : result;
    }

    ombrix::PluginRegistry registry;
    std::filesystem::path folder;
    std::vector<std::string> lines; // of the last parse or probe
    bool allAnswered = true;        // of the last probe
};

} // namespace support
