// The autostart entry on disk.
#include "core/autostart.h"

#include <QFile>
#include <QFileInfo>
#include <QTemporaryDir>
#include <gtest/gtest.h>

#include "print_qstring.h"

using namespace orm;

namespace {

void writeFile(const QString& path, const QByteArray& text)
{
    QFile f(path);
    ASSERT_TRUE(f.open(QIODevice::WriteOnly));
    f.write(text);
}

QString readFile(const QString& path)
{
    QFile f(path);
    EXPECT_TRUE(f.open(QIODevice::ReadOnly));
    return QString::fromUtf8(f.readAll());
}

TEST(AutoStartEntry, WrittenThenRemoved)
{
    QTemporaryDir dir;
    const QString file = dir.filePath("config/autostart/ormivane.desktop");  // folder made on write
    AutoStartEntry entry(file);
    EXPECT_FALSE(entry.enabled());
    EXPECT_TRUE(entry.remove());  // nothing to remove is no failure

    ASSERT_TRUE(entry.write("/opt/ormivane/bin/ormivane")) << entry.lastError().toStdString();
    EXPECT_TRUE(entry.enabled());
    const QStringList lines = readFile(file).split('\n');
    EXPECT_EQ(lines.value(0), "[Desktop Entry]");
    EXPECT_TRUE(lines.contains("Type=Application"));
    EXPECT_TRUE(lines.contains("Name=Ormivane"));
    EXPECT_TRUE(lines.contains("Exec=\"/opt/ormivane/bin/ormivane\""));

    EXPECT_TRUE(AutoStartEntry(file).enabled());  // as a new start finds it
    ASSERT_TRUE(entry.remove());
    EXPECT_FALSE(QFileInfo::exists(file));
    EXPECT_FALSE(entry.enabled());
}

TEST(AutoStartEntry, ExecQuotesAnAwkwardPath)
{
    // Inside the quotes \ " ` $ are escaped and % doubled; then the desktop
    // file's own escaping doubles every backslash.
    EXPECT_TRUE(autoStartDesktopText("/home/a b/My \"Apps\"/$x`y`/100%/back\\slash/ormivane")
                    .contains("Exec=\"/home/a b/My \\\\\"Apps\\\\\"/\\\\$x\\\\`y\\\\`/100%%/back\\\\\\\\slash/ormivane\"\n"));
}

TEST(AutoStartEntry, EnabledOnlyWithAnExecThatIsNotSwitchedOff)
{
    QTemporaryDir dir;
    const QString file = dir.filePath("ormivane.desktop");
    AutoStartEntry entry(file);

    writeFile(file, "[Desktop Entry]\nType=Application\nExec=\n");
    EXPECT_FALSE(entry.enabled());
    writeFile(file, "[Desktop Entry]\nType=Application\nExec=   \n");
    EXPECT_FALSE(entry.enabled());
    writeFile(file, "[Other]\nExec=/bin/true\n[Desktop Entry]\nName=x\n");
    EXPECT_FALSE(entry.enabled());
    writeFile(file, "[Desktop Entry]\nExec=/bin/ormivane\nHidden=true\n");
    EXPECT_FALSE(entry.enabled());
    writeFile(file, "[Desktop Entry]\nExec=/bin/ormivane\nX-GNOME-Autostart-enabled=false\n");
    EXPECT_FALSE(entry.enabled());
    writeFile(file, "# made by hand\n[Desktop Entry]\nExec = /bin/ormivane\n");
    EXPECT_TRUE(entry.enabled());
}

TEST(AutoStartEntry, WriteThatCannotHappenIsReported)
{
    QTemporaryDir dir;
    writeFile(dir.filePath("autostart"), "a file where the folder should be");
    AutoStartEntry entry(dir.filePath("autostart/ormivane.desktop"));
    EXPECT_FALSE(entry.write("/bin/ormivane"));
    EXPECT_FALSE(entry.lastError().isEmpty());
    EXPECT_FALSE(entry.enabled());
}

}  // namespace
