// Painting text needs a GUI application; the tests run it off screen.
#include <QGuiApplication>
#include <gtest/gtest.h>

struct GuiEnvironment : ::testing::Environment {
    QGuiApplication* app = nullptr;
    void SetUp() override
    {
        qputenv("QT_QPA_PLATFORM", "offscreen");
        static int argc = 1;
        static char name[] = "display", *argv[] = {name, nullptr};
        app = new QGuiApplication(argc, argv);
    }
    void TearDown() override { delete app; }
};

static const auto* const registered = ::testing::AddGlobalTestEnvironment(new GuiEnvironment);
