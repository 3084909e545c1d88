// The Graph panel's controls and their wiring; what a change does is in
// graph_panel.cpp.
#include "shell/graph_panel.h"

#include "shell/colour_choice.h"

#include "model/catalogue.h"
#include "shell/panel_host.h"

#include <QCheckBox>
#include <QComboBox>
#include <QGridLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QLabel>
#include <QLineEdit>
#include <QScrollBar>
#include <QSlider>
#include <QToolButton>
#include <QVBoxLayout>
#include <type_traits>

namespace orm {

namespace {

QString indexed(const char* name, int k)
{
    return QStringLiteral("%1(%2)").arg(QLatin1String(name)).arg(k);
}

template <typename W>
W* named(W* w, const QString& name)
{
    w->setObjectName(name);
    // A check box as wide as its caption, so that a click on it always lands.
    if constexpr (std::is_same_v<W, QCheckBox>)
        w->setSizePolicy(QSizePolicy::Maximum, QSizePolicy::Fixed);
    return w;
}

template <typename W>
W* named(W* w, const char* name)
{
    return named(w, QString::fromLatin1(name));
}

// A small up/down scroll bar beside a number box; up raises the number.
QScrollBar* arrows(const char* name, int min, int max)
{
    auto* s = named(new QScrollBar(Qt::Vertical), name);
    s->setRange(min, max);
    s->setInvertedAppearance(true);
    s->setInvertedControls(true);
    s->setFixedSize(17, 24);
    return s;
}

const char* const ColourCaptions[7] = {"Background", "Border",      "Grid",      "Name",
                                       "Grid Labels", "Light Grid", "Cross-hair"};

}  // namespace

GraphPanel::GraphPanel(Monitor& monitor, PanelHost& host, QWidget* parent)
    : QWidget(parent), monitor_(monitor), host_(host)
{
    chooseColour = [this](const QColor& initial) { return askColour(initial, this); };
    build();
    connectControls();
    setEnabled(false);  // nothing to edit until a Graph is loaded
}

void GraphPanel::build()
{
    setObjectName(QStringLiteral("pctOptionFrame(0)"));
    resize(560, 520);
    auto* root = new QVBoxLayout(this);
    root->setContentsMargins(6, 6, 6, 6);
    root->setSpacing(4);

    auto* top = new QHBoxLayout;
    lblPanelTitle_ = named(new QLabel, "lblPanelTitle");
    QFont f = lblPanelTitle_->font();
    f.setBold(true);
    f.setPointSizeF(f.pointSizeF() * 1.3);
    lblPanelTitle_->setFont(f);
    top->addWidget(lblPanelTitle_, 1);
    imgVisibleSensor_ = named(new QToolButton, "imgVisibleSensor");
    imgVisibleSensor_->setText(QStringLiteral("Visible"));
    imgVisibleSensor_->setCheckable(true);
    imgVisibleSensor_->setToolButtonStyle(Qt::ToolButtonTextOnly);
    top->addWidget(imgVisibleSensor_);
    root->addLayout(top);
    root->addWidget(buildDisplayTiles());

    auto* columns = new QHBoxLayout;
    auto* left = new QVBoxLayout;
    left->addWidget(buildSampling());
    left->addWidget(buildScale());
    auto* description = named(new QGroupBox(QStringLiteral("Description")), "fraGraphDescription");
    txtGraphDescription_ = named(new QLineEdit, "txtGraphDescription");
    (new QHBoxLayout(description))->addWidget(txtGraphDescription_);
    left->addWidget(description);
    left->addStretch(1);
    auto* right = new QVBoxLayout;
    right->addWidget(buildLook());
    right->addWidget(buildColours());
    right->addStretch(1);
    columns->addLayout(left, 1);
    columns->addLayout(right, 1);
    root->addLayout(columns);

    root->addStretch(1);
}

QWidget* GraphPanel::buildDisplayTiles()
{
    auto* box = named(new QGroupBox(QStringLiteral("Display")), "fraDisplayType");
    auto* row = new QHBoxLayout(box);
    for (const Tile& t : displayTiles()) {
        auto* b = named(new QToolButton, indexed("imgGraphType", t.code - 1));
        b->setText(t.text);
        b->setCheckable(true);
        b->setAutoExclusive(false);  // the model decides which tile is checked
        b->setMinimumWidth(88);
        row->addWidget(b);
        displayTiles_.push_back(b);
        displayCodes_.push_back(t.code);
    }
    row->addStretch(1);
    return box;
}

QWidget* GraphPanel::buildSampling()
{
    auto* box = named(new QGroupBox(QStringLiteral("Data Retrieval")), "fraSampling");
    auto* row = new QHBoxLayout(box);
    row->addWidget(named(new QLabel(QStringLiteral("Sample every")), "lblSampleSeconds"));
    txtSampleSeconds_ = named(new QLineEdit, "txtSampleSeconds");
    txtSampleSeconds_->setFixedWidth(60);
    row->addWidget(txtSampleSeconds_);
    vscSeconds_ = arrows("vscSeconds", 1, 3600);
    row->addWidget(vscSeconds_);
    row->addWidget(named(new QLabel(QStringLiteral("seconds")), "lblSeconds"));
    row->addStretch(1);
    return box;
}

QWidget* GraphPanel::buildScale()
{
    auto* box = named(new QGroupBox(QStringLiteral("Scale")), "fraScale");
    auto* grid = new QGridLayout(box);
    chkAutoLimits_ = named(new QCheckBox(QStringLiteral("Auto Range")), "chkAutoLimits");
    grid->addWidget(chkAutoLimits_, 0, 0, 1, 3);
    lblMaxLimits_ = named(new QLabel(QStringLiteral("Maximum:")), "lblMaxLimits");
    grid->addWidget(lblMaxLimits_, 1, 0);
    auto* maxRow = new QHBoxLayout;
    txtMaxLimits_ = named(new QLineEdit, "txtMaxLimits");
    txtMaxLimits_->setFixedWidth(90);
    maxRow->addWidget(txtMaxLimits_);
    vscMaximum_ = arrows("vscMaximum", 0, 2147483647);
    maxRow->addWidget(vscMaximum_);
    maxRow->addStretch(1);
    grid->addLayout(maxRow, 1, 1);
    grid->addWidget(named(new QLabel(QStringLiteral("Units:")), "lblDataMagnitude"), 2, 0);
    cmbDataMagnitude_ = named(new QComboBox, "cmbDataMagnitude");
    grid->addWidget(cmbDataMagnitude_, 2, 1);
    chkDisplayAsBytesPerSecond_ =
        named(new QCheckBox(QStringLiteral("Display as Bytes per Second")), "chkDisplayAsBytesPerSecond");
    grid->addWidget(chkDisplayAsBytesPerSecond_, 3, 0, 1, 3);
    return box;
}

QWidget* GraphPanel::buildLook()
{
    auto* box = named(new QGroupBox(QStringLiteral("Window")), "fraWindow");
    auto* grid = new QGridLayout(box);
    chkTopMost_ = named(new QCheckBox(QStringLiteral("Always on Top")), "chkTopMost");
    chkDisableCrossHair_ = named(new QCheckBox(QStringLiteral("Disable Cross-hair")), "chkDisableCrossHair");
    chkTrans_ = named(new QCheckBox(QStringLiteral("Transparent")), "chkTrans");
    chkTransUnits_ = named(new QCheckBox(QStringLiteral("Keep Units")), "chkTransUnits");
    chkTransGrid_ = named(new QCheckBox(QStringLiteral("Keep Grid")), "chkTransGrid");
    grid->addWidget(chkTopMost_, 0, 0);
    grid->addWidget(chkDisableCrossHair_, 0, 1);
    grid->addWidget(chkTrans_, 1, 0);
    grid->addWidget(chkTransUnits_, 1, 1);
    grid->addWidget(chkTransGrid_, 2, 1);
    lblOpacity_ = named(new QLabel(QStringLiteral("Opacity")), "lblOpacity");
    grid->addWidget(lblOpacity_, 3, 0);
    sldOpacity_ = named(new QSlider(Qt::Horizontal), "sldOpacity");
    sldOpacity_->setRange(0, 255);
    sldOpacity_->setPageStep(16);
    grid->addWidget(sldOpacity_, 3, 1);
    lblIconType_ = named(new QLabel(QStringLiteral("Icons")), "lblIconType");
    grid->addWidget(lblIconType_, 4, 0);
    cmbIconType_ = named(new QComboBox, "cmbIconType");
    for (const char* caption : {"Bars - 3 Nodes per icon", "Bars - 1 Node per icon", "Numbers - 3 Nodes per icon 0-9",
                                "Numbers - 1 Node per icon 0-999", "Graph - 3 Nodes per icon", "Graph - 1 Node per icon"})
        cmbIconType_->addItem(QString::fromLatin1(caption));
    // Narrow when closed; the list shows the whole captions.
    cmbIconType_->setSizeAdjustPolicy(QComboBox::AdjustToMinimumContentsLengthWithIcon);
    cmbIconType_->setMinimumContentsLength(14);
    grid->addWidget(cmbIconType_, 4, 1);
    return box;
}

QWidget* GraphPanel::buildColours()
{
    auto* box = named(new QGroupBox(QStringLiteral("Colours")), "fraGraphColors");
    auto* grid = new QGridLayout(box);
    for (int k = 0; k < 7; ++k) {
        auto* b = named(new QToolButton, indexed("lblGraphColors", k));
        b->setIconSize(QSize(28, 14));
        b->setToolTip(QString::fromLatin1(ColourCaptions[k]));
        lblGraphColors_[size_t(k)] = b;
        const int row = k / 2, col = (k % 2) * 2;
        grid->addWidget(b, row, col);
        grid->addWidget(new QLabel(QString::fromLatin1(ColourCaptions[k])), row, col + 1);
    }
    return box;
}

void GraphPanel::connectControls()
{
    for (size_t i = 0; i < displayTiles_.size(); ++i) {
        const int code = displayCodes_[i];
        connect(displayTiles_[i], &QToolButton::clicked, this, [this, code] { displayTileClicked(code); });
    }
    connect(txtSampleSeconds_, &QLineEdit::editingFinished, this, &GraphPanel::sampleSecondsEntered);
    connect(vscSeconds_, &QScrollBar::valueChanged, this, &GraphPanel::secondsScrolled);
    connect(chkAutoLimits_, &QCheckBox::toggled, this, &GraphPanel::autoLimitsToggled);
    connect(txtMaxLimits_, &QLineEdit::editingFinished, this, &GraphPanel::maximumEntered);
    connect(vscMaximum_, &QScrollBar::valueChanged, this, &GraphPanel::maximumScrolled);
    connect(cmbDataMagnitude_, &QComboBox::activated, this, &GraphPanel::magnitudePicked);
    connect(chkDisplayAsBytesPerSecond_, &QCheckBox::toggled, this,
            [this](bool on) { boolToggled(&Graph::DisplayAsBytesPerSecond, on, &PanelHost::redraw); });
    connect(chkTopMost_, &QCheckBox::toggled, this,
            [this](bool on) { boolToggled(&Graph::TopMost, on, &PanelHost::topMostChanged); });
    connect(chkTrans_, &QCheckBox::toggled, this,
            [this](bool on) { boolToggled(&Graph::Transparent, on, &PanelHost::transparencyChanged); });
    connect(chkTransUnits_, &QCheckBox::toggled, this,
            [this](bool on) { boolToggled(&Graph::TransLegend, on, &PanelHost::transparencyChanged); });
    connect(chkTransGrid_, &QCheckBox::toggled, this,
            [this](bool on) { boolToggled(&Graph::TransGrid, on, &PanelHost::transparencyChanged); });
    connect(chkDisableCrossHair_, &QCheckBox::toggled, this,
            [this](bool on) { boolToggled(&Graph::DisableCrossHair, on, nullptr); });
    connect(sldOpacity_, &QSlider::valueChanged, this, &GraphPanel::opacityMoved);
    connect(sldOpacity_, &QSlider::sliderReleased, this, &GraphPanel::opacityReleased);
    connect(cmbIconType_, &QComboBox::activated, this, [this](int index) {
        if (Graph* g = current()) {
            g->IconType = qint16(index);
            if (const int gi = saved(); gi >= 0)
                host_.nodesChanged(gi);
        }
    });
    for (int k = 0; k < 7; ++k)
        connect(lblGraphColors_[size_t(k)], &QToolButton::clicked, this, [this, k] { colourClicked(k); });
    connect(txtGraphDescription_, &QLineEdit::editingFinished, this, &GraphPanel::descriptionEntered);
    connect(imgVisibleSensor_, &QToolButton::clicked, this, &GraphPanel::visibleClicked);
}

}  // namespace orm
