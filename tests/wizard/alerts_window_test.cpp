// The Alerts window and its settings dialog, offscreen, driven by object name:
// the controls and their captions, every kind of value through the dialog,
// the pointer over the sentence, the help texts.
#include "monitor/alert_sentence.h"
#include "shell/alerts_window.h"
#include "shell/custom_tool_tip.h"
#include "wizard_fixture.h"

#include <QComboBox>
#include <QDateEdit>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QMouseEvent>
#include <QPushButton>
#include <QTest>
#include <QTextBrowser>
#include <QTimeEdit>
#include <QTreeWidget>

namespace orm::test {
namespace {

class AlertsWindowTest : public WizardFixture {
protected:
    void SetUp() override
    {
        WizardFixture::SetUp();
        open();
    }
    void TearDown() override { window.reset(); }
    void open()
    {
        window = std::make_unique<AlertsWindow>(*monitor);
        window->setPrompts(&answers);
        window->setFilePicker([this](const QString& filter) {
            pickerFilters << filter;
            return pickedFile;
        });
        window->show();
    }
    template <typename T>
    T* child(const QString& name, QWidget* in = nullptr) const
    {
        auto* w = (in ? in : window.get())->findChild<T*>(name);
        EXPECT_NE(w, nullptr) << qPrintable(name);
        return w;
    }
    void click(const char* name) { child<QPushButton>(QLatin1String(name))->click(); }
    void choose(int option)
    {
        auto* list = child<QListWidget>(QStringLiteral("lstAlertOptions"));
        QListWidgetItem* item = list->item(option);
        ASSERT_NE(item, nullptr);
        emit list->itemClicked(item);
    }
    QString sentence() const { return shownSentence(*window->description()->document()); }
    // A link clicked as a person does: the dialog it opens, or null.
    AlertSettingsDialog* openLink(const QString& word)
    {
        window->ClickLink(word);
        return window->settingsDialog();
    }
    void tmrAlerts()
    {
        EXPECT_TRUE(window->tmrAlerts()->isActive());
        window->tmrAlerts_Timer();
    }
    // The pointer at a character of the sentence, in the box's viewport.
    QPoint pointAt(int position) const
    {
        QTextCursor c(window->description()->document());
        c.setPosition(position);
        const QRect a = window->description()->cursorRect(c);
        c.setPosition(position + 1);
        const QRect b = window->description()->cursorRect(c);
        return QPoint((a.x() + b.x()) / 2, a.center().y());
    }
    void moveTo(const QPoint& p)
    {
        QMouseEvent move(QEvent::MouseMove, QPointF(p), QPointF(window->description()->viewport()->mapToGlobal(p)),
                         Qt::NoButton, Qt::NoButton, Qt::NoModifier);
        QApplication::sendEvent(window->description()->viewport(), &move);
    }

    std::unique_ptr<AlertsWindow> window;
    QStringList pickerFilters;
    QString pickedFile;
};

TEST_F(AlertsWindowTest, ControlsCaptionsAndPages)
{
    EXPECT_EQ(window->objectName(), QStringLiteral("frmAlerts"));
    EXPECT_EQ(window->windowTitle(), QStringLiteral("Ormivane - Alerts"));
    const std::pair<const char*, const char*> captions[] = {
        {"cmdNewAlert", "&New Alert"}, {"cmdDeleteAlert", "&Delete Alert"}, {"cmdBack", "< &Back"},
        {"cmdNext", "Next >"},         {"cmdExit", "&Close"},
    };
    for (const auto& [name, caption] : captions)
        EXPECT_EQ(child<QPushButton>(QLatin1String(name))->text(), QLatin1String(caption));
    EXPECT_EQ(child<QLabel>(QStringLiteral("lblGen(0)"))->text(), QStringLiteral("Enable/Disable Saved Alerts:"));
    EXPECT_EQ(child<QLabel>(QStringLiteral("lblGen(3)"))->text(), QStringLiteral("Alert Description:"));
    auto* rules = child<QTreeWidget>(QStringLiteral("lstvwAlerts"));
    EXPECT_EQ(rules->headerItem()->text(0), QStringLiteral("Rule Name"));
    EXPECT_FALSE(child<QPushButton>(QStringLiteral("cmdNext"))->isEnabled());
    EXPECT_FALSE(child<QLineEdit>(QStringLiteral("txtAlertName"))->isEnabled());
    EXPECT_EQ(window->tmrAlerts()->interval(), 200);
    EXPECT_FALSE(window->tmrAlerts()->isActive());

    click("cmdNewAlert");
    ASSERT_EQ(rules->topLevelItemCount(), 1);
    EXPECT_EQ(rules->currentItem()->text(0), QStringLiteral("New Alert 1"));
    EXPECT_EQ(rules->currentItem()->checkState(0), Qt::Unchecked);
    EXPECT_EQ(child<QLineEdit>(QStringLiteral("txtAlertName"))->text(), QStringLiteral("New Alert 1"));
    auto* options = child<QListWidget>(QStringLiteral("lstAlertOptions"));
    EXPECT_TRUE(options->isEnabled());
    ASSERT_EQ(options->count(), 8);
    EXPECT_EQ(options->item(7)->text(), QStringLiteral("ShutDown the computer"));

    choose(4);  // Print Graph
    EXPECT_EQ(sentence(), QStringLiteral("Print Graph"));
    EXPECT_EQ(storedAlert(1, QStringLiteral("rAction")), QStringLiteral("5"));
    click("cmdNext");
    click("cmdNext");
    EXPECT_EQ(child<QPushButton>(QStringLiteral("cmdNext"))->text(), QStringLiteral("Finish"));
    EXPECT_EQ(options->item(options->count() - 1)->text(), QStringLiteral("[NONE]"));
    EXPECT_EQ(sentence(), QStringLiteral("Print Graph when Node2 exceeds Limit1"));
    click("cmdBack");
    EXPECT_EQ(options->currentRow(), 0);
    click("cmdNext");
    click("cmdNext");
    EXPECT_FALSE(options->isEnabled());
    EXPECT_FALSE(child<QPushButton>(QStringLiteral("cmdNext"))->isEnabled());

    // The name box renames the row, and the check box arms the rule.
    emit rules->itemClicked(rules->topLevelItem(0), 0);
    QLineEdit* name = child<QLineEdit>(QStringLiteral("txtAlertName"));
    name->selectAll();
    QTest::keyClicks(name, QStringLiteral("Printer"));
    EXPECT_EQ(rules->topLevelItem(0)->text(0), QStringLiteral("Printer"));
    EXPECT_EQ(storedAlert(1, QStringLiteral("rName")), QStringLiteral("Printer"));
    rules->topLevelItem(0)->setCheckState(0, Qt::Checked);
    EXPECT_EQ(storedAlert(1, QStringLiteral("rEnabled")), QStringLiteral("True"));

    // Deleting the only Alert, after its question.
    click("cmdDeleteAlert");
    ASSERT_EQ(answers.asked.size(), 1);
    EXPECT_EQ(rules->topLevelItemCount(), 0);
    EXPECT_EQ(stored(QStringLiteral("Alerts")), QStringLiteral("0"));
}

// Every kind of value through the dialog: OK stores it, Cancel leaves it.
TEST_F(AlertsWindowTest, EachKindThroughTheDialog)
{
    click("cmdNewAlert");
    choose(2);
    struct Kind {
        const char* word;
        const char* shows;   // the control the dialog shows for it
        std::function<void(AlertSettingsDialog&)> fill;
        const char* field;
        const char* value;   // in the settings file after OK
    };
    auto line = [](const char* name, const char* text) {
        return [=](AlertSettingsDialog& d) { d.findChild<QLineEdit*>(QLatin1String(name))->setText(QLatin1String(text)); };
    };
    auto graphAndNode = [](int g, int n) {
        return [=](AlertSettingsDialog& d) {
            d.findChild<QComboBox*>(QStringLiteral("cmbSensor1"))->setCurrentIndex(g);
            d.findChild<QComboBox*>(QStringLiteral("cmbNode"))->setCurrentIndex(n);
        };
    };
    const std::vector<Kind> kinds = {
        {"Email Address", "txtValue", line("txtValue", "ops@example.org"), "aEmailAddress", "ops@example.org"},
        {"Message", "txtValue", line("txtValue", "Hot"), "aMessage", "Hot"},
        {"Limit1", "txtValue", line("txtValue", "80.5"), "cLimit", "80.5"},
        {"Number1", "txtValue", line("txtValue", "seven"), "cNumber", "0"},
        {"Node1", "cmbNode", graphAndNode(1, 1), "aNode", "1"},
        {"Graph", "cmbSensor",
         [](AlertSettingsDialog& d) { d.findChild<QComboBox*>(QStringLiteral("cmbSensor"))->setCurrentIndex(1); },
         "aSensor", "1"},
        {"Range1", "txtValue2",
         [](AlertSettingsDialog& d) {
             d.findChild<QLineEdit*>(QStringLiteral("txtValue1"))->setText(QStringLiteral("10"));
             d.findChild<QLineEdit*>(QStringLiteral("txtValue2"))->setText(QStringLiteral("5"));
         },
         "cRangeEnd", "5"},
        {"Time or Date", "TPicker1(2)",
         [](AlertSettingsDialog& d) {
             d.findChild<QDateEdit*>(QStringLiteral("DTPicker1(2)"))->setDate(QDate(2030, 12, 31));
             d.findChild<QTimeEdit*>(QStringLiteral("TPicker1(2)"))->setTime(QTime(23, 59, 58));
         },
         "cDateValue", "20301231235958"},
        {"Length of Time", "txtTimeLength(3)",
         [](AlertSettingsDialog& d) {
             for (int i = 0; i < 4; ++i)
                 d.findChild<QLineEdit*>(QStringLiteral("txtTimeLength(%1)").arg(i))->setText(QString::number(i + 1));
         },
         "eTimeLengthSeconds", "93784"},
        {"Time Frame", "DTPicker1(1)",
         [](AlertSettingsDialog& d) {
             d.findChild<QDateEdit*>(QStringLiteral("DTPicker1(0)"))->setDate(QDate(2030, 1, 2));
             d.findChild<QTimeEdit*>(QStringLiteral("TPicker1(0)"))->setTime(QTime(3, 4, 5));
         },
         "eTimeFrameStart", "20300102030405"},
        {"Node2", "cmbSensor1", graphAndNode(1, 0), "cSensor", "1"},
        {"Node3", "cmbSensor1", graphAndNode(0, 0), "eNode", "0"},
        {"Limit2", "txtValue", line("txtValue", "-3"), "eLimit", "-3"},
        {"Number2", "txtValue", line("txtValue", "12"), "eNumber", "12"},
        {"Range2", "txtValue1", line("txtValue1", "2"), "eRangeStart", "2"},
        {"(Settings)", "txtSMTP(4)", line("txtSMTP(0)", "127.0.0.1:2525"), "", "127.0.0.1:2525"},
    };
    for (const Kind& k : kinds) {
        const QString word = QLatin1String(k.word);
        // Cancel first: the field and the sentence stay.
        AlertSettingsDialog* d = openLink(word);
        ASSERT_NE(d, nullptr) << k.word;
        EXPECT_TRUE(d->isVisible());
        EXPECT_TRUE(d->isModal());
        EXPECT_TRUE(d->findChild<QWidget*>(QLatin1String(k.shows))->isVisibleTo(d)) << k.word;
        EXPECT_EQ(d->findChild<QLineEdit*>(QStringLiteral("txtValue"))->isVisibleTo(d),
                  findAlertLink(word)->kind <= Number1Kind || findAlertLink(word)->kind == Limit2Kind ||
                      findAlertLink(word)->kind == Number2Kind)
            << k.word;
        EXPECT_EQ(d->findChild<QLabel*>(QStringLiteral("lblPrompt"))->text(), findAlertLink(word)->prompt);
        const Alert before = alerts()[0];
        const QString drawn = window->description()->document()->toPlainText();
        k.fill(*d);
        QTest::keyClick(d, Qt::Key_Escape);
        tmrAlerts();
        EXPECT_FALSE(window->tmrAlerts()->isActive());
        EXPECT_EQ(window->description()->document()->toPlainText(), drawn) << k.word;
        EXPECT_EQ(linkReplacement(word, alerts()[0], monitor->Sensors), linkReplacement(word, before, monitor->Sensors));

        d = openLink(word);
        ASSERT_NE(d, nullptr);
        k.fill(*d);
        tmrAlerts();  // saves while open
        d->okButton()->click();
        EXPECT_TRUE(!window->settingsDialog() || !window->settingsDialog()->isVisible());
        tmrAlerts();
        const QString stored = *k.field ? storedAlert(1, QLatin1String(k.field)) : this->stored(QStringLiteral("SMTPServer"));
        EXPECT_EQ(stored, QLatin1String(k.value)) << k.word;
    }
    // Kind 3, which no link opens: plain text.
    window->wizard().setting = AlertSetting{PlainTextKind, QStringLiteral("-1")};
    AlertSettingsDialog plain(window->wizard().setting, monitor->Sensors, QDateTime::currentDateTime());
    plain.ShowAlertSetting(QStringLiteral("Text"));
    EXPECT_TRUE(plain.findChild<QLineEdit*>(QStringLiteral("txtValue"))->text().isEmpty());  // "-1" shows empty
    plain.findChild<QLineEdit*>(QStringLiteral("txtValue"))->setText(QStringLiteral("x"));
    QTest::keyClick(plain.findChild<QLineEdit*>(QStringLiteral("txtValue")), Qt::Key_Return);  // Enter is OK
    EXPECT_EQ(window->wizard().setting.Text, QStringLiteral("x"));
    EXPECT_FALSE(window->wizard().setting.Cancelled);
    EXPECT_FALSE(window->wizard().setting.Open);
}

TEST_F(AlertsWindowTest, PickersStartFromTheValueAndTheBoxesClamp)
{
    click("cmdNewAlert");
    AlertSettingsDialog* d = openLink(QStringLiteral("Node1"));
    auto* graphs = child<QComboBox>(QStringLiteral("cmbSensor1"), d);
    auto* nodes = child<QComboBox>(QStringLiteral("cmbNode"), d);
    EXPECT_EQ(graphs->currentIndex(), -1);
    EXPECT_EQ(graphs->placeholderText(), QStringLiteral("Please Choose an available Graph"));
    EXPECT_EQ(nodes->placeholderText(), QStringLiteral("Please Choose an available Node"));
    EXPECT_EQ(nodes->count(), 0);
    EXPECT_EQ(graphs->count(), 2);
    graphs->setCurrentIndex(1);
    EXPECT_EQ(nodes->count(), 2);  // the chosen Graph's Nodes
    EXPECT_EQ(nodes->itemText(1), QStringLiteral("New Node 2"));
    EXPECT_EQ(nodes->currentIndex(), -1);
    nodes->setCurrentIndex(0);
    d->okButton()->click();
    tmrAlerts();
    EXPECT_EQ(alerts()[0].aSensor, 1);
    d = openLink(QStringLiteral("dGraph (New Graph 2), Node (New Node 1)"));
    EXPECT_EQ(child<QComboBox>(QStringLiteral("cmbSensor1"), d)->currentIndex(), 1);
    EXPECT_EQ(child<QComboBox>(QStringLiteral("cmbNode"), d)->currentIndex(), 0);
    d->cancelButton()->click();
    tmrAlerts();

    // An unset moment starts from the present; a length of time splits into its boxes.
    d = openLink(QStringLiteral("Time or Date"));
    EXPECT_EQ(child<QDateEdit>(QStringLiteral("DTPicker1(2)"), d)->date(), monitor->clock().now().date());
    d->cancelButton()->click();
    tmrAlerts();
    alerts()[0].eTimeLengthSeconds = 90061;
    d = openLink(QStringLiteral("Length of Time"));
    QStringList boxes;
    for (int i = 0; i < 4; ++i)
        boxes << child<QLineEdit>(QStringLiteral("txtTimeLength(%1)").arg(i), d)->text();
    EXPECT_EQ(boxes, QStringList({"1", "1", "1", "1"}));
    const std::pair<int, const char*> typed[] = {{0, "-2"}, {1, "30"}, {2, "75"}, {3, "60"}};
    const char* kept[] = {"0", "23", "59", "59"};
    for (const auto& [box, text] : typed) {
        QLineEdit* e = child<QLineEdit>(QStringLiteral("txtTimeLength(%1)").arg(box), d);
        e->clear();
        QTest::keyClicks(e, QLatin1String(text));
        EXPECT_EQ(e->text(), QLatin1String(kept[box])) << box;
    }
    QTest::keyClick(d, Qt::Key_Return);
    tmrAlerts();
    EXPECT_EQ(alerts()[0].eTimeLengthSeconds, 23 * 3600 + 59 * 60 + 59);
}

TEST_F(AlertsWindowTest, ThePointerFindsLinksAndTheirTags)
{
    click("cmdNewAlert");
    choose(2);
    alerts()[0].aMessage = QStringLiteral("Hot");
    choose(2);  // drawn anew
    const QString text = window->description()->document()->toPlainText();
    const int tag = text.indexOf(QStringLiteral("cHot"));
    ASSERT_GT(tag, 0);
    EXPECT_EQ(window->RichWordOver(pointAt(tag)), QStringLiteral("cHot"));  // the white tag counts
    EXPECT_EQ(window->RichWordOver(pointAt(tag + 2)), QStringLiteral("cHot"));
    EXPECT_EQ(window->RichWordOver(pointAt(2)), QString());
    EXPECT_EQ(window->RichWordOver(QPoint(5, window->description()->viewport()->height() - 3)), QString());

    moveTo(pointAt(tag + 2));
    EXPECT_EQ(window->description()->viewport()->cursor().shape(), Qt::PointingHandCursor);
    moveTo(pointAt(2));
    EXPECT_EQ(window->description()->viewport()->cursor().shape(), Qt::ArrowCursor);

    // A left click on a link opens its dialog, and the focus goes to Next.
    const QPoint p = pointAt(tag + 1);
    QTest::mouseClick(window->description()->viewport(), Qt::LeftButton, {}, p);
    ASSERT_NE(window->settingsDialog(), nullptr);
    EXPECT_EQ(child<QLineEdit>(QStringLiteral("txtValue"), window->settingsDialog())->text(), QStringLiteral("Hot"));
    window->settingsDialog()->cancelButton()->click();
    tmrAlerts();
    EXPECT_EQ(window->description()->focusPolicy(), Qt::NoFocus);
}

TEST_F(AlertsWindowTest, FilePickersHaveTheirFilters)
{
    click("cmdNewAlert");
    choose(5);  // Start an Application
    pickedFile = QStringLiteral("/usr/bin/true");
    window->ClickLink(QStringLiteral("Application"));
    ASSERT_EQ(pickerFilters.size(), 1);
    EXPECT_EQ(pickerFilters[0], QStringLiteral("Excecutable Files (*.exe)|*.exe|All Files (*.*)|*.*"));
    EXPECT_EQ(storedAlert(1, QStringLiteral("aApplication")), QStringLiteral("/usr/bin/true"));
    EXPECT_EQ(sentence(), QStringLiteral("Start an /usr/bin/true"));
    choose(1);
    pickedFile.clear();
    window->ClickLink(QStringLiteral("Sound"));
    EXPECT_EQ(pickerFilters.value(1), QStringLiteral("Wave (*.wav)|*.wav|MP3 (*.mp3)|*.mp3|All Files (*.*)|*.*"));
    EXPECT_TRUE(alerts()[0].aSound.isEmpty());
}

TEST_F(AlertsWindowTest, HelpTextsFollowDisplayToolTips)
{
    EXPECT_EQ(window->toolTips().toolCount(), 4);
    const QString list = alertHelpTexts().value(QStringLiteral("lstvwAlerts"));
    EXPECT_TRUE(list.startsWith(QStringLiteral("Alerts List\n\nAlerts allow you to specify an action")));
    EXPECT_TRUE(list.endsWith(QStringLiteral("Note: DO NOT enable the Alert until you have completely set it up.")));
    EXPECT_TRUE(alertHelpTexts().value(QStringLiteral("richAlertDesc")).startsWith(QStringLiteral("Alert Description\n\n")));
    QEvent enter(QEvent::Enter);
    QApplication::sendEvent(child<QWidget>(QStringLiteral("txtAlertName")), &enter);
    EXPECT_EQ(window->toolTips().lastShown(), tipText(QStringLiteral("Ormivane"), alertHelpTexts().value(QStringLiteral("txtAlertName"))));
    EXPECT_EQ(window->toolTips().lastMilliseconds(), 15000);

    monitor->Settings.DisplayToolTips = false;
    window->InitToolTips();
    EXPECT_FALSE(window->toolTips().active());
    EXPECT_EQ(window->toolTips().toolCount(), 0);
}

}  // namespace
}  // namespace orm::test
