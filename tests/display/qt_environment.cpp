// Fonts need a QGuiApplication; the offscreen platform needs no display.
#include <QGuiApplication>
#include <gtest/gtest.h>

namespace {

struct QtEnvironment : ::testing::Environment {
    int argc = 1;
    char name[13] = "display_test";
    char* argv[2] = {name, nullptr};
    QGuiApplication* app = nullptr;
    void SetUp() override
    {
        if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))
            qputenv("QT_QPA_PLATFORM", "offscreen");
        app = new QGuiApplication(argc, argv);
    }
    void TearDown() override { delete app; }
};

const auto* registered = ::testing::AddGlobalTestEnvironment(new QtEnvironment);

}  // namespace
