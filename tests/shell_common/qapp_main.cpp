// The widget tests' main: one QApplication on the offscreen platform.
#include <QApplication>
#include <gtest/gtest.h>
#include <cstdio>

int main(int argc, char* argv[])
{
    qputenv("QT_QPA_PLATFORM", "offscreen");
    // The offscreen platform lacks opacity, masks and raise, and says so at each call.
    qInstallMessageHandler([](QtMsgType, const QMessageLogContext&, const QString& msg) {
        if (!msg.contains(QLatin1String("This plugin does not support")))
            fprintf(stderr, "%s\n", qPrintable(msg));
    });
    QApplication app(argc, argv);
    ::testing::InitGoogleTest(&argc, argv);
    return RUN_ALL_TESTS();
}
