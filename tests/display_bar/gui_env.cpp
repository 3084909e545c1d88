// Painting text needs a GUI application; the tests run it off screen.
#include <QGuiApplication>
#include <gtest/gtest.h>

namespace {

class GuiEnvironment : public ::testing::Environment {
public:
    void SetUp() override
    {
        if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))
            qputenv("QT_QPA_PLATFORM", "offscreen");
        if (!QGuiApplication::instance())
            app_ = new QGuiApplication(argc_, argv_);
    }
    void TearDown() override { delete app_; }

private:
    int argc_ = 1;
    char name_[8] = "display";
    char* argv_[2] = {name_, nullptr};
    QGuiApplication* app_ = nullptr;
};

const auto* const env = ::testing::AddGlobalTestEnvironment(new GuiEnvironment);

}  // namespace
