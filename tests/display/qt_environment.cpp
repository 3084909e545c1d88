// Fonts need a QGuiApplication; the offscreen platform needs no display.
#include <QGuiApplication>
#include <gtest/gtest.h>

namespace {

class QtEnvironment : public ::testing::Environment {
public:
    void SetUp() override
    {
        if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))
            qputenv("QT_QPA_PLATFORM", "offscreen");
        static int argc = 1;
        static char name[] = "display_test";
        static char* argv[] = {name, nullptr};
        if (!QGuiApplication::instance())
            app_ = new QGuiApplication(argc, argv);
    }
    void TearDown() override { delete app_; }
    QGuiApplication* app_ = nullptr;
};

const auto* registered = ::testing::AddGlobalTestEnvironment(new QtEnvironment);

}  // namespace
