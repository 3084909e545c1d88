// The Alerts window's controls and their places, its help texts, and the file
// picker of its "Sound" and "Application" links.
#include "shell/alerts_window.h"

#include "model/version.h"
#include "shell/custom_tool_tip.h"

#include <QFileDialog>
#include <QFileSystemModel>
#include <QGridLayout>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QPushButton>
#include <QSortFilterProxyModel>
#include <QTextBrowser>
#include <QTimer>
#include <QTreeWidget>

namespace orm {

namespace {

QPushButton* button(QWidget* parent, const char* name, const char* text)
{
    auto* b = new QPushButton(QLatin1String(text), parent);
    b->setObjectName(QLatin1String(name));
    b->setAutoDefault(false);
    return b;
}

const QString AlertNote = QStringLiteral("Note: DO NOT enable the Alert until you have completely set it up.");

// Shows the files a pattern of the picker takes; folders always show.
class PatternProxy final : public QSortFilterProxyModel {
public:
    using QSortFilterProxyModel::QSortFilterProxyModel;
    void setPattern(const QString& pattern)
    {
        pattern_ = pattern;
        invalidateFilter();
    }

protected:
    bool filterAcceptsRow(int row, const QModelIndex& parent) const override
    {
        const auto* files = qobject_cast<const QFileSystemModel*>(sourceModel());
        if (!files)
            return true;
        const QFileInfo info = files->fileInfo(files->index(row, 0, parent));
        return info.isDir() || fileMatchesFilter(info.fileName(), info.isExecutable(), pattern_);
    }

private:
    QString pattern_;
};

}  // namespace

const QHash<QString, QString>& alertHelpTexts()
{
    static const QHash<QString, QString> texts = {
        {QStringLiteral("lstvwAlerts"),
         tipText(QStringLiteral("Alerts List"),
                 QStringLiteral("Alerts allow you to specify an action when a value from a Node meets your citeria. "
                                "Put a checkmark in the box nest to the Alert in order to enable it when it is "
                                "completed and ready to run.\n\n") +
                     AlertNote)},
        {QStringLiteral("lstAlertOptions"),
         tipText(QStringLiteral("Alert Options List"),
                 QStringLiteral("This list is where you set the options for your selected Alert. When you click the "
                                "Next button, the next set of options will show in this list."))},
        {QStringLiteral("richAlertDesc"),
         tipText(QStringLiteral("Alert Description"),
                 QStringLiteral("Click on the links to change the settings for this Alert Option. Make sure to click "
                                "on each Link. Remember that the numbers you use will be compared to the Raw Node "
                                "Value (that is before any modifcations are made, like; magnitude changes {Kilo, "
                                "Mega, etc..} and translations {bytes to bits})\n\n") +
                     AlertNote)},
        {QStringLiteral("txtAlertName"),
         tipText(QStringLiteral("Alert Name"),
                 QStringLiteral("This field allows you the change the name of the Alert selected in the Saved Alerts "
                                "List."))},
    };
    return texts;
}

QString openAlertFile(QWidget* parent, const QString& filter)
{
    const std::vector<FileFilter> filters = fileFilters(filter);
    QFileDialog dialog(parent);
    dialog.setOption(QFileDialog::DontUseNativeDialog);
    dialog.setFileMode(QFileDialog::ExistingFile);
    QStringList names;
    for (const FileFilter& f : filters)
        names << f.text;
    dialog.setNameFilters(names);
    auto* proxy = new PatternProxy(&dialog);
    dialog.setProxyModel(proxy);
    // The dialog's own matching goes by the text's parentheses; the proxy matches instead.
    auto apply = [&](const QString& text) {
        if (auto* files = dialog.findChild<QFileSystemModel*>())
            files->setNameFilters({});
        for (const FileFilter& f : filters)
            if (f.text == text)
                proxy->setPattern(f.pattern);
    };
    QObject::connect(&dialog, &QFileDialog::filterSelected, &dialog, apply);
    apply(names.value(0));
    if (dialog.exec() != QDialog::Accepted)
        return QString();
    return dialog.selectedFiles().value(0);
}

void AlertsWindow::build()
{
    setObjectName(QStringLiteral("frmAlerts"));
    setWindowTitle(QLatin1String(ProductName) + QStringLiteral(" - Alerts"));
    auto* grid = new QGridLayout(this);

    const char* captions[] = {"Enable/Disable Saved Alerts:", "Alert Name:", "Alert Options:", "Alert Description:"};
    for (int i = 0; i < 4; ++i) {
        auto* l = new QLabel(QLatin1String(captions[i]), this);
        l->setObjectName(QStringLiteral("lblGen(%1)").arg(i));
        lblGen_ << l;
    }

    lstvwAlerts_ = new QTreeWidget(this);
    lstvwAlerts_->setObjectName(QStringLiteral("lstvwAlerts"));
    lstvwAlerts_->setColumnCount(1);
    lstvwAlerts_->setHeaderLabels({QStringLiteral("Rule Name")});
    lstvwAlerts_->setRootIsDecorated(false);
    lstvwAlerts_->header()->setStretchLastSection(true);
    lstvwAlerts_->setMinimumWidth(200);

    txtAlertName_ = new QLineEdit(this);
    txtAlertName_->setObjectName(QStringLiteral("txtAlertName"));
    lstAlertOptions_ = new QListWidget(this);
    lstAlertOptions_->setObjectName(QStringLiteral("lstAlertOptions"));

    richAlertDesc_ = new QTextBrowser(this);
    richAlertDesc_->setObjectName(QStringLiteral("richAlertDesc"));
    richAlertDesc_->setDocument(&wizard_.richAlertDesc);
    richAlertDesc_->setTextInteractionFlags(Qt::NoTextInteraction);
    richAlertDesc_->setFocusPolicy(Qt::NoFocus);  // the box never keeps the focus
    richAlertDesc_->viewport()->setMouseTracking(true);
    richAlertDesc_->viewport()->installEventFilter(this);
    QPalette white = richAlertDesc_->palette();
    white.setColor(QPalette::Base, Qt::white);  // the tags are white on white
    richAlertDesc_->setPalette(white);
    wizard_.richAlertDesc.setDefaultFont(font());

    cmdNewAlert_ = button(this, "cmdNewAlert", "&New Alert");
    cmdDeleteAlert_ = button(this, "cmdDeleteAlert", "&Delete Alert");
    cmdBack_ = button(this, "cmdBack", "< &Back");
    cmdNext_ = button(this, "cmdNext", "&Next >");
    cmdExit_ = button(this, "cmdExit", "&Close");

    grid->addWidget(lblGen_[0], 0, 0);
    grid->addWidget(lstvwAlerts_, 1, 0, 5, 1);
    auto* listButtons = new QHBoxLayout();
    listButtons->addWidget(cmdNewAlert_);
    listButtons->addWidget(cmdDeleteAlert_);
    grid->addLayout(listButtons, 6, 0);

    grid->addWidget(lblGen_[1], 0, 1);
    grid->addWidget(txtAlertName_, 1, 1);
    grid->addWidget(lblGen_[2], 2, 1);
    grid->addWidget(lstAlertOptions_, 3, 1);
    grid->addWidget(lblGen_[3], 4, 1);
    grid->addWidget(richAlertDesc_, 5, 1);
    auto* pageButtons = new QHBoxLayout();
    pageButtons->addStretch();
    pageButtons->addWidget(cmdBack_);
    pageButtons->addWidget(cmdNext_);
    pageButtons->addWidget(cmdExit_);
    grid->addLayout(pageButtons, 6, 1);
    grid->setColumnStretch(1, 1);
    grid->setRowStretch(3, 1);
    grid->setRowStretch(5, 1);

    tmrAlerts_ = new QTimer(this);
    tmrAlerts_->setObjectName(QStringLiteral("tmrAlerts"));
    tmrAlerts_->setInterval(AlertTimerInterval);  // off until a dialog opens
    resize(640, 420);
}

}  // namespace orm
