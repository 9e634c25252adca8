#include "host/scene/scene_life.h"

#include "host/errors/errors.h"
#include "host/plugins/builtin_desc.h"

#include <ombrix/exception_msg.h>

#include <gtest/gtest.h>

using namespace ombrix;

namespace {

using Calls = std::vector<std::string>;

// Every call of every teller's life, "NAME.renderBegin" and so on.
Calls calls;

class Teller : public OUtils::OmbrixPlugin {
public:
    using OmbrixPlugin::OmbrixPlugin;

    static constexpr OUtils::Identity kIdentity{90004, "Teller", "Tells its life [gpuSupport=(none)]", {}};

    template <class Table>
    static void parameters(Table& p)
    {
        p("throws_in", &Teller::throws_in, "", "The call that throws");
        p("what", &Teller::what, "message", "What it throws: message, work or number");
        p("after", &Teller::after, OUtils::noDefault, "A plugin that lives before it");
    }

    void renderBegin(OUtils::OmbrixRenderer*) override { tell("renderBegin"); }
    void frameBegin(OUtils::OmbrixRenderer* renderer) override
    {
        OmbrixPlugin::frameBegin(renderer);
        tell("frameBegin");
    }
    void frameEnd(OUtils::OmbrixRenderer*) override { tell("frameEnd"); }
    void renderEnd(OUtils::OmbrixRenderer*) override { tell("renderEnd"); }

private:
    void tell(const std::string& call)
    {
        calls.push_back(std::string(getPluginName()) + "." + call);
        if (call != paramList->getParam("throws_in")->getString(-1, 0)) return;
        const std::string thrown = paramList->getParam("what")->getString(-1, 0);
        if (thrown == "work") throw WorkError("the disk is full");
        if (thrown == "number") throw 7;
        throw OUtils::ExceptionMsg("no %s of %s", call.c_str(), getPluginName());
    }

    // Read through the list, before the first frame too.
    OUtils::CharString throws_in, what;
    OUtils::PluginInput<OUtils::OmbrixPluginInterface> after;
};

BuiltinDesc<Teller> tellerDesc;

// Three tellers that live in the order a, b, c.
class SceneLife : public testing::Test {
protected:
    // members: of b's parameters, such as "throws_in".
    void make(const std::string& members = "")
    {
        Diagnostics diagnostics("test");
        scene = Scene::parse(R"({"ombrix_scene": 1, "plugins": {"a": {"type": "Teller"},
                "b": {"type": "Teller", "params": {"after": "a")" +
                                 (members.empty() ? "" : ", " + members) + R"(}},
                "c": {"type": "Teller", "params": {"after": "b"}}}})",
                             ".", registry, diagnostics);
        ASSERT_TRUE(scene);
        renderer = std::make_unique<HostRenderer>(scene->settings(), 1, nullptr);
        calls.clear();
    }
    // A whole life with one frame. The message of the ExceptionMsg or WorkError that comes out; "" for none.
    std::string live()
    {
        try {
            RenderLife render(*scene, *renderer);
            FrameLife frame(render, 5.0);
            frame.end();
            render.end();
        } catch (const OUtils::ExceptionMsg& error) {
            return error.what();
        } catch (const WorkError& error) {
            return error.what();
        }
        return "";
    }
    // "a.CALL", "b.CALL" and so on, of the plugins named.
    static Calls of(const std::vector<std::string>& callNames, const std::string& names = "abc")
    {
        Calls all;
        for (const std::string& call : callNames)
            for (const char name : names)
                all.push_back(std::string(1, name) + "." + call);
        return all;
    }
    static Calls joined(Calls first, const Calls& second)
    {
        first.insert(first.end(), second.begin(), second.end());
        return first;
    }

    PluginRegistry registry;
    std::unique_ptr<Scene> scene;
    std::unique_ptr<HostRenderer> renderer;
};

TEST_F(SceneLife, EachCallComesOnceInDependencyOrder)
{
    make();
    EXPECT_EQ(live(), "");
    EXPECT_EQ(calls, of({"renderBegin", "frameBegin", "frameEnd", "renderEnd"}));
    EXPECT_EQ(renderer->getFrameData().time, 5.0);
}

TEST_F(SceneLife, WhatIsThrownWithinAFrameEndsItAndTheRender)
{
    make();
    EXPECT_THROW(
        {
            RenderLife render(*scene, *renderer);
            const FrameLife frame(render, 1.0);
            throw WorkError("between");
        },
        WorkError);
    EXPECT_EQ(calls, of({"renderBegin", "frameBegin", "frameEnd", "renderEnd"}));
}

TEST_F(SceneLife, AFrameThatCannotBeginEndsThosePluginsThatBegan)
{
    make(R"("throws_in": "frameBegin")");
    EXPECT_EQ(live(), "no frameBegin of b");
    EXPECT_EQ(calls, joined(joined(of({"renderBegin"}), {"a.frameBegin", "b.frameBegin", "a.frameEnd"}),
                            of({"renderEnd"})));
}

TEST_F(SceneLife, ARenderThatCannotBeginEndsThosePluginsThatBegan)
{
    make(R"("throws_in": "renderBegin")");
    EXPECT_EQ(live(), "no renderBegin of b");
    EXPECT_EQ(calls, (Calls{"a.renderBegin", "b.renderBegin", "a.renderEnd"}));
}

TEST_F(SceneLife, AnEndThatThrowsEndsTheOthersFirst)
{
    make(R"("throws_in": "frameEnd")");
    EXPECT_EQ(live(), "no frameEnd of b");
    EXPECT_EQ(calls, of({"renderBegin", "frameBegin", "frameEnd", "renderEnd"}));
    make(R"("throws_in": "renderEnd")");
    EXPECT_EQ(live(), "no renderEnd of b");
    EXPECT_EQ(calls, of({"renderBegin", "frameBegin", "frameEnd", "renderEnd"}));
}

TEST_F(SceneLife, WhereAnotherExceptionIsUnderWayAnEndThatThrowsIsTold)
{
    const auto talkOf = [&](const std::string& members) {
        make(members);
        testing::internal::CaptureStderr();
        EXPECT_THROW(
            {
                RenderLife render(*scene, *renderer);
                const FrameLife frame(render, 1.0);
                throw std::runtime_error("between");
            },
            std::runtime_error);
        EXPECT_EQ(calls, of({"renderBegin", "frameBegin", "frameEnd", "renderEnd"}));
        return testing::internal::GetCapturedStderr();
    };
    EXPECT_EQ(talkOf(R"("throws_in": "frameEnd")"), "error: Teller \"b\": no frameEnd of b\n");
    EXPECT_EQ(talkOf(R"("throws_in": "renderEnd", "what": "work")"),
              "error: Teller \"b\": the disk is full\n");
    EXPECT_EQ(talkOf(R"("throws_in": "renderEnd", "what": "number")"),
              "error: Teller \"b\": an exception of a kind of its own\n");
}

TEST_F(SceneLife, WhatFilesRefuseNamesThePlugin)
{
    make(R"("throws_in": "frameBegin", "what": "work")");
    EXPECT_EQ(live(), "Teller \"b\": the disk is full");
    EXPECT_EQ(calls.back(), "c.renderEnd");
}

TEST_F(SceneLife, FramesFollowOneAnotherWithinARender)
{
    make();
    {
        RenderLife render(*scene, *renderer);
        for (const double time : {2.0, 3.0}) {
            const FrameLife frame(render, time);
            EXPECT_EQ(renderer->getFrameData().time, time);
        }
    }
    EXPECT_EQ(calls, of({"renderBegin", "frameBegin", "frameEnd", "frameBegin", "frameEnd", "renderEnd"}));
}

} // namespace
