// The Node panel's controls and their connections.
#include "shell/node_panel.h"

#include "shell/node_type_tiles.h"
#include "shell/ping_frame.h"
#include "shell/process_list.h"

#include <QButtonGroup>
#include <QComboBox>
#include <QFrame>
#include <QGridLayout>
#include <QHBoxLayout>
#include <QIntValidator>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QScrollBar>
#include <QToolButton>
#include <QVBoxLayout>

namespace orm {

namespace {

QString indexed(const char* name, int k)
{
    return QStringLiteral("%1(%2)").arg(QLatin1String(name)).arg(k);
}

QLabel* label(QWidget* parent, const QString& name, const QString& text)
{
    auto* l = new QLabel(text, parent);
    l->setObjectName(name);
    return l;
}

QComboBox* combo(QWidget* parent, const QString& name)
{
    auto* c = new QComboBox(parent);
    c->setObjectName(name);
    c->setSizeAdjustPolicy(QComboBox::AdjustToMinimumContentsLengthWithIcon);
    c->setMinimumContentsLength(12);
    return c;
}

// A captioned chooser in its own frame, so it can be shown and hidden as one.
QWidget* chooserFrame(QWidget* parent, const QString& frameName, const QString& caption, QComboBox*& box,
                      const QString& boxName)
{
    auto* w = new QWidget(parent);
    w->setObjectName(frameName);
    auto* row = new QHBoxLayout(w);
    row->setContentsMargins(0, 0, 0, 0);
    row->addWidget(label(w, QStringLiteral("lbl") + boxName.mid(3), caption));
    box = combo(w, boxName);
    row->addWidget(box, 1);
    return w;
}

}  // namespace

void NodePanel::build()
{
    resize(560, 520);
    auto* outer = new QVBoxLayout(this);
    outer->setContentsMargins(6, 6, 6, 6);
    outer->setSpacing(4);

    lblPanelTitle_ = label(this, QStringLiteral("lblPanelTitle"), QString());
    QFont f = lblPanelTitle_->font();
    f.setBold(true);
    f.setPointSizeF(f.pointSizeF() * 1.3);
    lblPanelTitle_->setFont(f);
    outer->addWidget(lblPanelTitle_);

    auto* totals = new QGridLayout;
    lblTotalPhysical_ = label(this, QStringLiteral("lblTotalPhysical"), QString());
    lblTotalVirtual_ = label(this, QStringLiteral("lblTotalVirtual"), QString());
    lblTotalPagefile_ = label(this, QStringLiteral("lblTotalPagefile"), QString());
    totals->addWidget(lblTotalPhysical_, 0, 0);
    totals->addWidget(lblTotalVirtual_, 0, 1);
    totals->addWidget(lblTotalPagefile_, 1, 0);
    outer->addLayout(totals);

    tiles_ = new NodeTypeTiles(this);
    outer->addWidget(tiles_);

    auto* columns = new QHBoxLayout;
    auto* left = new QVBoxLayout;
    left->addWidget(buildLook());
    left->addWidget(buildAveraging());
    left->addStretch();
    auto* right = new QVBoxLayout;
    right->addWidget(buildMeasure());
    right->addWidget(buildChoosers());
    right->addWidget(buildWebsite());
    framPingResponse_ = new PingFrame(monitor_, host_, this);
    right->addWidget(framPingResponse_);
    processes_ = new ProcessList(monitor_, this);
    right->addWidget(processes_);
    right->addWidget(buildSpeedTest());
    right->addStretch();
    columns->addLayout(left);
    columns->addLayout(right, 1);
    outer->addLayout(columns, 1);

    connectControls();
}

QWidget* NodePanel::buildLook()
{
    pctLook_ = new QWidget(this);
    pctLook_->setObjectName(QStringLiteral("pctNodeLook"));
    auto* grid = new QGridLayout(pctLook_);
    grid->setContentsMargins(0, 0, 0, 0);
    grid->setVerticalSpacing(2);

    grid->addWidget(label(pctLook_, QStringLiteral("lblLineDisplayType"), QStringLiteral("Display:")), 0, 0);
    cmbLineDisplayType_ = combo(pctLook_, QStringLiteral("cmbLineDisplayType"));
    cmbLineDisplayType_->addItems({QStringLiteral("Line"), QStringLiteral("Bottom Fill"), QStringLiteral("Top Fill")});
    grid->addWidget(cmbLineDisplayType_, 0, 1);

    grid->addWidget(label(pctLook_, QStringLiteral("lblLineType"), QStringLiteral("Line:")), 1, 0);
    cmbLineType_ = combo(pctLook_, QStringLiteral("cmbLineType"));
    grid->addWidget(cmbLineType_, 1, 1);

    grid->addWidget(label(pctLook_, QStringLiteral("lblLineWidth"), QStringLiteral("Width:")), 2, 0);
    cmbLineWidth_ = combo(pctLook_, QStringLiteral("cmbLineWidth"));
    grid->addWidget(cmbLineWidth_, 2, 1);

    grid->addWidget(label(pctLook_, QStringLiteral("lblNodeColorCaption"), QStringLiteral("Color:")), 3, 0);
    lblNodeColor_ = new QToolButton(pctLook_);
    lblNodeColor_->setObjectName(QStringLiteral("lblNodeColor"));
    lblNodeColor_->setAutoRaise(false);
    lblNodeColor_->setMinimumSize(60, 20);
    grid->addWidget(lblNodeColor_, 3, 1);

    auto* toggles = new QHBoxLayout;
    imgVisibleNode_ = new QToolButton(pctLook_);
    imgVisibleNode_->setObjectName(QStringLiteral("imgVisibleNode"));
    imgVisibleNode_->setText(QStringLiteral("Visible"));
    imgVisibleNode_->setCheckable(true);
    imgLog_ = new QToolButton(pctLook_);
    imgLog_->setObjectName(QStringLiteral("imgLog"));
    imgLog_->setText(QStringLiteral("Log"));
    imgLog_->setCheckable(true);
    toggles->addWidget(imgVisibleNode_);
    toggles->addWidget(imgLog_);
    toggles->addStretch();
    grid->addLayout(toggles, 4, 0, 1, 2);
    return pctLook_;
}

QWidget* NodePanel::buildAveraging()
{
    pctAveraging_ = new QFrame(this);
    pctAveraging_->setObjectName(QStringLiteral("pctAveraging"));
    static_cast<QFrame*>(pctAveraging_)->setFrameShape(QFrame::StyledPanel);
    auto* grid = new QGridLayout(pctAveraging_);
    grid->setContentsMargins(4, 2, 4, 2);
    grid->setVerticalSpacing(0);
    static const char* const texts[] = {"Peak Capture", "Average", "Lull Capture", "Real Time"};
    auto* group = new QButtonGroup(pctAveraging_);
    for (int k = 0; k < 4; ++k) {
        auto* r = new QRadioButton(QString::fromLatin1(texts[k]), pctAveraging_);
        r->setObjectName(indexed("optAveraging", k));
        group->addButton(r, k);
        grid->addWidget(r, k, 0, 1, 2);
        optAveraging_[size_t(k)] = r;
    }
    grid->addWidget(label(pctAveraging_, QStringLiteral("lblAveragingSamples"), QStringLiteral("Samples:")), 4, 0);
    auto* row = new QHBoxLayout;
    txtAveragingSamples_ = new QLineEdit(pctAveraging_);
    txtAveragingSamples_->setObjectName(QStringLiteral("txtAveragingSamples"));
    txtAveragingSamples_->setMaximumWidth(60);
    vscAveragingSample_ = new QScrollBar(Qt::Vertical, pctAveraging_);
    vscAveragingSample_->setObjectName(QStringLiteral("vscAveragingSample"));
    vscAveragingSample_->setRange(1, 9999);
    // Up makes more, as a spin box does.
    vscAveragingSample_->setInvertedAppearance(true);
    vscAveragingSample_->setInvertedControls(true);
    vscAveragingSample_->setFixedHeight(24);
    row->addWidget(txtAveragingSamples_);
    row->addWidget(vscAveragingSample_);
    row->addStretch();
    grid->addLayout(row, 4, 1);
    return pctAveraging_;
}

QWidget* NodePanel::buildMeasure()
{
    pctMeasureOptions_ = new QFrame(this);
    pctMeasureOptions_->setObjectName(QStringLiteral("pctMeasureOptions"));
    pctMeasureOptions_->setFrameShape(QFrame::StyledPanel);
    auto* row = new QHBoxLayout(pctMeasureOptions_);
    row->setContentsMargins(4, 2, 4, 2);
    static const char* const texts[] = {"Total", "Used", "Available"};
    auto* group = new QButtonGroup(pctMeasureOptions_);
    for (int k = 0; k < 3; ++k) {
        auto* r = new QRadioButton(QString::fromLatin1(texts[k]), pctMeasureOptions_);
        r->setObjectName(indexed("optMeasure", k));
        group->addButton(r, k);
        row->addWidget(r);
        optMeasure_[size_t(k)] = r;
    }
    return pctMeasureOptions_;
}

QWidget* NodePanel::buildChoosers()
{
    auto* w = new QWidget(this);
    w->setObjectName(QStringLiteral("pctChoosers"));
    auto* col = new QVBoxLayout(w);
    col->setContentsMargins(0, 0, 0, 0);
    col->setSpacing(2);
    pctNetCard_ = chooserFrame(w, QStringLiteral("pctNetCard"), QStringLiteral("Adapter:"), cmbNetCard_,
                               QStringLiteral("cmbNetCard"));
    pctDriveList_ = chooserFrame(w, QStringLiteral("pctDriveList"), QStringLiteral("Drive:"), cmbDriveList_,
                                 QStringLiteral("cmbDriveList"));
    pctCPU_ = chooserFrame(w, QStringLiteral("pctCPU"), QStringLiteral("Processor:"), cmbCPU_,
                           QStringLiteral("cmbCPU"));
    pctSSID_ = chooserFrame(w, QStringLiteral("pctSSID"), QStringLiteral("Network:"), cmbSSID_,
                            QStringLiteral("cmbSSID"));
    pctDownloadURL_ = new QWidget(w);
    pctDownloadURL_->setObjectName(QStringLiteral("pctDownloadURL"));
    auto* url = new QVBoxLayout(pctDownloadURL_);
    url->setContentsMargins(0, 0, 0, 0);
    url->setSpacing(1);
    lblDownloadURL_ = label(pctDownloadURL_, QStringLiteral("lblGen(29)"), QString());
    txtDownloadURL_ = new QLineEdit(pctDownloadURL_);
    txtDownloadURL_->setObjectName(QStringLiteral("txtDownloadURL"));
    imgTestDownload_ = new QToolButton(pctDownloadURL_);
    imgTestDownload_->setObjectName(QStringLiteral("imgTestDownload"));
    imgTestDownload_->setText(QStringLiteral("Test"));
    url->addWidget(lblDownloadURL_);
    auto* urlRow = new QHBoxLayout;
    urlRow->addWidget(txtDownloadURL_, 1);
    urlRow->addWidget(imgTestDownload_);
    url->addLayout(urlRow);
    for (QWidget* c : {pctNetCard_, pctDriveList_, pctCPU_, pctSSID_, pctDownloadURL_})
        col->addWidget(c);
    return w;
}

QWidget* NodePanel::buildWebsite()
{
    pctWebsite_ = new QWidget(this);
    pctWebsite_->setObjectName(QStringLiteral("pctWebsite"));
    auto* col = new QVBoxLayout(pctWebsite_);
    col->setContentsMargins(0, 0, 0, 0);
    col->setSpacing(2);
    auto* typeRow = new QHBoxLayout;
    typeRow->addWidget(label(pctWebsite_, QStringLiteral("lblWebsiteType"), QStringLiteral("Show:")));
    cmbWebsiteType_ = combo(pctWebsite_, QStringLiteral("cmbWebsiteType"));
    cmbWebsiteType_->addItems({QStringLiteral("Bandwidth Speed"), QStringLiteral("Response Time"),
                               QStringLiteral("Connection Time"), QStringLiteral("Website Error Count")});
    typeRow->addWidget(cmbWebsiteType_, 1);
    col->addLayout(typeRow);

    pctMasterSlave_ = new QFrame(pctWebsite_);
    pctMasterSlave_->setObjectName(QStringLiteral("pctMasterSlave"));
    pctMasterSlave_->setFrameShape(QFrame::StyledPanel);
    auto* grid = new QGridLayout(pctMasterSlave_);
    grid->setContentsMargins(4, 2, 4, 2);
    auto* group = new QButtonGroup(pctMasterSlave_);
    static const char* const texts[] = {"Master", "Slave"};
    for (int k = 0; k < 2; ++k) {
        auto* r = new QRadioButton(QString::fromLatin1(texts[k]), pctMasterSlave_);
        r->setObjectName(indexed("optMasterSlave", k));
        group->addButton(r, k);
        grid->addWidget(r, 0, k);
        optMasterSlave_[size_t(k)] = r;
    }
    cmbMasterSlave_ = combo(pctMasterSlave_, QStringLiteral("cmbMasterSlave"));
    grid->addWidget(cmbMasterSlave_, 1, 0, 1, 2);
    col->addWidget(pctMasterSlave_);
    return pctWebsite_;
}

QWidget* NodePanel::buildSpeedTest()
{
    pctSpeedTest_ = new QWidget(this);
    pctSpeedTest_->setObjectName(QStringLiteral("pctSpeedTest"));
    auto* col = new QVBoxLayout(pctSpeedTest_);
    col->setContentsMargins(0, 0, 0, 0);
    col->setSpacing(2);
    auto* row = new QHBoxLayout;
    cmbDownloadOptions_ = combo(pctSpeedTest_, QStringLiteral("cmbDownloadOptions"));
    cmdForceTest_ = new QPushButton(QStringLiteral("Force 1 Test Now"), pctSpeedTest_);
    cmdForceTest_->setObjectName(QStringLiteral("cmdForceTest"));
    row->addWidget(cmbDownloadOptions_, 1);
    row->addWidget(cmdForceTest_);
    col->addLayout(row);
    auto* server = new QHBoxLayout;
    server->addWidget(label(pctSpeedTest_, QStringLiteral("lblSpeedTestServer"), QStringLiteral("Speed test server:")));
    txtSpeedTestServer_ = new QLineEdit(pctSpeedTest_);
    txtSpeedTestServer_->setObjectName(QStringLiteral("txtSpeedTestServer"));
    txtSpeedTestServer_->setPlaceholderText(QStringLiteral("host:port"));
    server->addWidget(txtSpeedTestServer_, 1);
    col->addLayout(server);
    lblGen32_ = label(pctSpeedTest_, QStringLiteral("lblGen(32)"), QString());
    col->addWidget(lblGen32_);
    return pctSpeedTest_;
}

void NodePanel::connectControls()
{
    connect(tiles_, &NodeTypeTiles::tileClicked, this, &NodePanel::typeChosen);
    connect(cmbLineDisplayType_, &QComboBox::activated, this, &NodePanel::lineDisplayChosen);
    connect(cmbLineType_, &QComboBox::activated, this, &NodePanel::lineTypeChosen);
    connect(cmbLineWidth_, &QComboBox::activated, this, &NodePanel::lineWidthChosen);
    connect(lblNodeColor_, &QToolButton::clicked, this, &NodePanel::colourClicked);
    connect(imgVisibleNode_, &QToolButton::toggled, this, &NodePanel::visibleToggled);
    connect(imgLog_, &QToolButton::toggled, this, &NodePanel::logToggled);
    for (int k = 0; k < 4; ++k)
        connect(optAveraging_[size_t(k)], &QRadioButton::clicked, this, [this, k] { averagingChosen(k); });
    connect(txtAveragingSamples_, &QLineEdit::editingFinished, this, &NodePanel::averagingTyped);
    connect(vscAveragingSample_, &QScrollBar::valueChanged, this, &NodePanel::averagingScrolled);
    for (int k = 0; k < 3; ++k)
        connect(optMeasure_[size_t(k)], &QRadioButton::clicked, this, [this, k] { measureChosen(k); });
    connect(cmbNetCard_, &QComboBox::activated, this, &NodePanel::netCardChosen);
    connect(cmbDriveList_, &QComboBox::activated, this, &NodePanel::driveChosen);
    connect(cmbCPU_, &QComboBox::activated, this, &NodePanel::cpuChosen);
    connect(cmbSSID_, &QComboBox::activated, this, &NodePanel::ssidChosen);
    connect(txtDownloadURL_, &QLineEdit::editingFinished, this, &NodePanel::urlEdited);
    connect(cmbWebsiteType_, &QComboBox::activated, this, &NodePanel::websiteTypeChosen);
    connect(optMasterSlave_[0], &QRadioButton::clicked, this, &NodePanel::masterChosen);
    connect(optMasterSlave_[1], &QRadioButton::clicked, this, &NodePanel::slaveChosen);
    connect(cmbMasterSlave_, &QComboBox::activated, this, &NodePanel::masterEntryChosen);
    connect(cmbDownloadOptions_, &QComboBox::activated, this, &NodePanel::downloadOptionChosen);
    connect(cmdForceTest_, &QPushButton::clicked, this, &NodePanel::forceTest);
    connect(imgTestDownload_, &QToolButton::clicked, this, &NodePanel::testClicked);
    connect(txtSpeedTestServer_, &QLineEdit::editingFinished, this, &NodePanel::speedTestServerEdited);
    connectTransfers();
}

}  // namespace orm
