#include "shell/panel_help_texts.h"

#include <QSet>
#include <QStringList>
#include <gtest/gtest.h>

using namespace orm;

TEST(PanelHelpTexts, EveryPanelControlHasItsOwnHelp)
{
    QStringList names{"txtSampleSeconds", "vscSeconds", "chkAutoLimits", "txtMaxLimits",
                      "vscMaximum", "cmbDataMagnitude", "chkDisplayAsBytesPerSecond",
                      "chkTopMost", "chkTrans", "chkTransUnits", "chkTransGrid", "sldOpacity",
                      "chkDisableCrossHair", "cmbIconType", "txtGraphDescription",
                      "cmbLineDisplayType", "cmbLineType", "cmbLineWidth", "lblNodeColor",
                      "txtAveragingSamples", "vscAveragingSample", "cmbNetCard", "cmbDriveList",
                      "cmbCPU", "cmbSSID", "LstVwProcesses", "imgRefreshProcesses", "txtPingIP",
                      "cmbPingPacketSize", "chkPingTranslate", "imgResolve", "txtDownloadURL",
                      "cmbWebsiteType", "optMasterSlave(0)", "optMasterSlave(1)",
                      "cmbMasterSlave", "cmdForceTest", "cmbDownloadOptions", "imgTestDownload",
                      "txtSpeedTestServer", "imgVisibleNode",
                      "imgVisibleSensor", "imgLog", "imgAddSensor", "imgAddNode",
                      "imgDeleteNode", "imgDeleteSensor", "imgGraphType(0)", "imgGraphType(1)",
                      "imgGraphType(2)", "imgGraphType(27)", "imgGraphType(28)"};
    for (int k = 0; k < 7; ++k)
        names << QString("lblGraphColors(%1)").arg(k);
    for (int k = 0; k < 4; ++k)
        names << QString("optAveraging(%1)").arg(k);
    for (int k = 0; k < 3; ++k)
        names << QString("optMeasure(%1)").arg(k) << QString("imgCategory(%1)").arg(k);
    // Node type tiles, codes 4 to 26.
    for (int k = 3; k <= 25; ++k)
        names << QString("imgGraphType(%1)").arg(k);

    const auto& texts = panelHelpTexts();
    QSet<QString> seenTexts;
    for (const QString& name : names) {
        ASSERT_TRUE(texts.contains(name)) << name.toStdString();
        const QString text = texts.value(name);
        EXPECT_FALSE(text.trimmed().isEmpty()) << name.toStdString();
        // A copied line would tell two controls apart by nothing.
        EXPECT_FALSE(seenTexts.contains(text)) << name.toStdString();
        seenTexts.insert(text);
    }

    // The texts that change at run time are registered empty; nothing else is.
    const QSet<QString> dynamic{"lblDataRetrieval", "VistaTree"};
    for (const QString& name : dynamic) {
        ASSERT_TRUE(texts.contains(name)) << name.toStdString();
        EXPECT_TRUE(texts.value(name).isEmpty());
    }
    EXPECT_EQ(texts.size(), names.size() + dynamic.size());
}
