// Fonts need a QGuiApplication; the offscreen platform needs no display.
#include <QGuiApplication>
#include <gtest/gtest.h>

struct QtEnvironment : ::testing::Environment {
    QGuiApplication* app = nullptr;
    void SetUp() override
    {
        qputenv("QT_QPA_PLATFORM", "offscreen");
        static int argc = 1;
        static char name[] = "display_test", *argv[] = {name, nullptr};
        app = new QGuiApplication(argc, argv);
    }
    void TearDown() override { delete app; }
};

static const auto* const registered = ::testing::AddGlobalTestEnvironment(new QtEnvironment);
