// The Alerts window and its settings dialog, offscreen, driven by object name:
// the controls and their captions, every kind of value through the dialog,
// the pointer over the sentence, the help texts.
#include "monitor/alert_sentence.h"
#include "shell/alerts_window.h"
#include "shell/custom_tool_tip.h"
#include "wizard_fixture.h"

#include <QComboBox>
#include <QDateEdit>
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
        window = std::make_unique<AlertsWindow>(*monitor);
        window->setPrompts(&answers);
        window->setFilePicker([this](const QString& filter) {
            pickerFilters << filter;
            return pickedFile;
        });
        window->show();
    }
    void TearDown() override { window.reset(); }
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
    void cancel(AlertSettingsDialog* d)
    {
        d->cancelButton()->click();
        tmrAlerts();
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

TEST_F(AlertsWindowTest, PagesButtonsNoneAndDelete)
{
    auto* rules = child<QTreeWidget>(QStringLiteral("lstvwAlerts"));
    auto* next = child<QPushButton>(QStringLiteral("cmdNext"));
    auto* options = child<QListWidget>(QStringLiteral("lstAlertOptions"));
    EXPECT_FALSE(next->isEnabled());
    EXPECT_FALSE(child<QLineEdit>(QStringLiteral("txtAlertName"))->isEnabled());

    click("cmdNewAlert");
    ASSERT_EQ(rules->topLevelItemCount(), 1);
    EXPECT_EQ(rules->currentItem()->text(0), QStringLiteral("New Alert 1"));
    EXPECT_EQ(rules->currentItem()->checkState(0), Qt::Unchecked);
    EXPECT_EQ(storedAlert(1, QStringLiteral("rAction")), QStringLiteral("-1"));
    ASSERT_EQ(options->count(), 8);
    EXPECT_EQ(next->text(), QStringLiteral("Next >"));

    choose(4);  // Print Graph
    EXPECT_EQ(storedAlert(1, QStringLiteral("rAction")), QStringLiteral("5"));
    click("cmdNext");
    click("cmdNext");  // nothing chosen: Next takes the first option
    EXPECT_EQ(storedAlert(1, QStringLiteral("rCondition")), QStringLiteral("1"));
    EXPECT_EQ(next->text(), QStringLiteral("Finish"));
    EXPECT_EQ(options->item(options->count() - 1)->text(), QStringLiteral("[NONE]"));
    choose(1);  // for a length of time
    EXPECT_EQ(sentence(), QStringLiteral("Print Graph when Node2 exceeds Limit1 for Length of Time"));
    choose(8);  // [NONE] is code 0: no clause, nothing selected, and Next keeps it
    EXPECT_EQ(storedAlert(1, QStringLiteral("rException")), QStringLiteral("0"));
    EXPECT_EQ(sentence(), QStringLiteral("Print Graph when Node2 exceeds Limit1"));
    click("cmdBack");
    EXPECT_EQ(options->currentRow(), 0);
    EXPECT_EQ(next->text(), QStringLiteral("Next >"));
    click("cmdNext");
    EXPECT_EQ(options->currentRow(), -1);
    click("cmdNext");
    EXPECT_EQ(alerts()[0].rException, 0);
    EXPECT_FALSE(options->isEnabled());
    EXPECT_FALSE(next->isEnabled());

    // The name box renames the row (arming by the check box is the desktop walk's).
    emit rules->itemClicked(rules->topLevelItem(0), 0);
    QLineEdit* name = child<QLineEdit>(QStringLiteral("txtAlertName"));
    name->selectAll();
    QTest::keyClicks(name, QStringLiteral("Printer"));
    EXPECT_EQ(rules->topLevelItem(0)->text(0), QStringLiteral("Printer"));

    // Deleting the only Alert, after its question.
    click("cmdDeleteAlert");
    ASSERT_EQ(answers.asked.size(), 1);
    EXPECT_EQ(rules->topLevelItemCount(), 0);
    EXPECT_EQ(stored(QStringLiteral("Alerts")), QStringLiteral("0"));
}

// Every kind of value through the dialog: Cancel leaves the field and the
// sentence, OK stores it, and each tick while the dialog is open saves.
TEST_F(AlertsWindowTest, EachKindThroughTheDialog)
{
    click("cmdNewAlert");
    choose(2);
    using Values = std::vector<std::pair<const char*, const char*>>;  // control, value typed
    struct Kind { const char* word; Values typed; const char* field, *value; };  // value: in the file after OK
    const std::vector<Kind> kinds = {
        {"Email Address", {{"txtValue", "ops@example.org"}}, "aEmailAddress", "ops@example.org"},
        {"Number1", {{"txtValue", "seven"}}, "cNumber", "0"},
        {"Node1", {{"cmbSensor1", "1"}, {"cmbNode", "1"}}, "aNode", "1"},
        {"Graph", {{"cmbSensor", "1"}}, "aSensor", "1"},
        {"Range1", {{"txtValue1", "10"}, {"txtValue2", "5"}}, "cRangeEnd", "5"},
        {"Time or Date", {{"DTPicker1(2)", "2030-12-31"}, {"TPicker1(2)", "23:59:58"}}, "cDateValue", "20301231235958"},
        {"Length of Time",
         {{"txtTimeLength(0)", "1"}, {"txtTimeLength(1)", "2"}, {"txtTimeLength(2)", "3"}, {"txtTimeLength(3)", "4"}},
         "eTimeLengthSeconds", "93784"},
        {"Time Frame", {{"DTPicker1(0)", "2030-01-02"}, {"TPicker1(0)", "03:04:05"}}, "eTimeFrameStart", "20300102030405"},
        {"Node3", {{"cmbSensor1", "0"}, {"cmbNode", "0"}}, "eNode", "0"},
        {"Range2", {{"txtValue1", "2"}}, "eRangeStart", "2"},
        {"(Settings)", {{"txtSMTP(0)", "127.0.0.1:2525"}}, "", "127.0.0.1:2525"},
    };
    auto type = [](QWidget* d, const Values& values) {
        for (const auto& [name, v] : values) {
            QWidget* w = d->findChild<QWidget*>(QLatin1String(name));
            ASSERT_TRUE(w && w->isVisibleTo(d)) << name;
            if (auto* e = qobject_cast<QLineEdit*>(w))
                e->setText(QLatin1String(v));
            else if (auto* c = qobject_cast<QComboBox*>(w))
                c->setCurrentIndex(QByteArray(v).toInt());
            else if (auto* t = qobject_cast<QTimeEdit*>(w))
                t->setTime(QTime::fromString(QLatin1String(v), Qt::ISODate));
            else
                qobject_cast<QDateEdit*>(w)->setDate(QDate::fromString(QLatin1String(v), Qt::ISODate));
        }
    };
    for (const Kind& k : kinds) {
        const QString word = QLatin1String(k.word);
        AlertSettingsDialog* d = openLink(word);
        ASSERT_NE(d, nullptr) << k.word;
        EXPECT_TRUE(d->isVisible() && d->isModal());
        const Alert before = alerts()[0];
        const QString drawn = window->description()->document()->toPlainText();
        type(d, k.typed);
        QTest::keyClick(d, Qt::Key_Escape);
        tmrAlerts();
        EXPECT_FALSE(window->tmrAlerts()->isActive());
        EXPECT_EQ(window->description()->document()->toPlainText(), drawn) << k.word;
        EXPECT_EQ(linkReplacement(word, alerts()[0], monitor->Sensors), linkReplacement(word, before, monitor->Sensors));

        d = openLink(word);
        ASSERT_NE(d, nullptr);
        type(d, k.typed);
        const quint64 file = fileIdentity();
        tmrAlerts();
        EXPECT_NE(fileIdentity(), file) << k.word;  // saved while open
        d->okButton()->click();
        tmrAlerts();
        const QString stored = *k.field ? storedAlert(1, QLatin1String(k.field)) : this->stored(QStringLiteral("SMTPServer"));
        EXPECT_EQ(stored, QLatin1String(k.value)) << k.word;
    }
    // Kind 3, which no link opens: plain text, "-1" shows empty, and Enter is OK.
    window->wizard().setting = AlertSetting{PlainTextKind, QStringLiteral("-1")};
    AlertSettingsDialog plain(window->wizard().setting, monitor->Sensors, QDateTime::currentDateTime());
    plain.ShowAlertSetting(QStringLiteral("Text"));
    auto* text = plain.findChild<QLineEdit*>(QStringLiteral("txtValue"));
    EXPECT_TRUE(text->text().isEmpty());
    QTest::keyClicks(text, QStringLiteral("x"));
    QTest::keyClick(text, Qt::Key_Return);
    EXPECT_EQ(window->wizard().setting.Text, QStringLiteral("x"));
    EXPECT_FALSE(window->wizard().setting.Cancelled || window->wizard().setting.Open);
}

TEST_F(AlertsWindowTest, PickersStartFromTheValueAndTheBoxesClamp)
{
    click("cmdNewAlert");
    AlertSettingsDialog* d = openLink(QStringLiteral("Node1"));
    auto* graphs = child<QComboBox>(QStringLiteral("cmbSensor1"), d);
    auto* nodes = child<QComboBox>(QStringLiteral("cmbNode"), d);
    EXPECT_EQ(graphs->currentIndex(), -1);
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
    cancel(d);

    // An unset moment starts from the present; a length of time splits into its boxes.
    d = openLink(QStringLiteral("Time or Date"));
    EXPECT_EQ(child<QDateEdit>(QStringLiteral("DTPicker1(2)"), d)->date(), monitor->clock().now().date());
    cancel(d);
    alerts()[0].eTimeLengthSeconds = 90061;
    d = openLink(QStringLiteral("Length of Time"));
    const char* typed[] = {"-2", "30", "75", "60"};
    const char* kept[] = {"0", "23", "59", "59"};
    for (int box = 0; box < 4; ++box) {
        QLineEdit* e = child<QLineEdit>(QStringLiteral("txtTimeLength(%1)").arg(box), d);
        EXPECT_EQ(e->text(), QStringLiteral("1")) << box;
        e->clear();
        QTest::keyClicks(e, QLatin1String(typed[box]));
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
    cancel(window->settingsDialog());
    EXPECT_EQ(window->description()->focusPolicy(), Qt::NoFocus);
}

TEST_F(AlertsWindowTest, FilePickersTheStartToggleAndWordsThatAreNoLinks)
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
    pickedFile.clear();  // the picker was cancelled
    window->ClickLink(QStringLiteral("Sound"));
    EXPECT_EQ(pickerFilters.value(1), QStringLiteral("Wave (*.wav)|*.wav|MP3 (*.mp3)|*.mp3|All Files (*.*)|*.*"));
    EXPECT_TRUE(alerts()[0].aSound.isEmpty());

    choose(3);  // Start or Stop logging
    EXPECT_EQ(sentence(), QStringLiteral(" Start logging Node1"));
    window->ClickLink(QStringLiteral("rStart"));
    EXPECT_EQ(sentence(), QStringLiteral(" Stop logging Node1"));
    EXPECT_EQ(storedAlert(1, QStringLiteral("aStartLogging")), QStringLiteral("False"));
    EXPECT_EQ(openLink(QStringLiteral("zebra")), nullptr);
    EXPECT_EQ(pickerFilters.size(), 2);
}

TEST_F(AlertsWindowTest, HelpTextsFollowDisplayToolTips)
{
    // How a registered tip shows is the tool-tip's own test; here, that the window registers and drops them.
    EXPECT_EQ(window->toolTips().toolCount(), 4);

    monitor->Settings.DisplayToolTips = false;
    window->InitToolTips();
    EXPECT_FALSE(window->toolTips().active());
    EXPECT_EQ(window->toolTips().toolCount(), 0);
}

}  // namespace
}  // namespace orm::test
