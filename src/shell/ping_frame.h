// The ping frame of the Node panel (framPingResponse): the target, the packet
// size, "Show in Kbps", and the host test behind imgResolve with its labels.
#pragma once

#include <QFrame>
#include <array>
#include <memory>

class QCheckBox;
class QComboBox;
class QLabel;
class QLineEdit;
class QPushButton;

namespace orm {

class HostTest;
class Monitor;
class PanelHost;

class PingFrame : public QFrame {
    Q_OBJECT
public:
    PingFrame(Monitor& monitor, PanelHost& host, QWidget* parent = nullptr);
    ~PingFrame() override;

    // Fills the controls from the Node; writes nothing.
    void load(int graph, int node);
    // The port the host test connects to: 80 but for tests. Takes effect at the next test.
    void setHostTestPort(quint16 port);
    // The running or last host test; null before the first.
    HostTest* hostTest() const { return test_.get(); }

private:
    struct Target {
        int graph = -1;
        int node = -1;
    };
    void build();
    void storePingIP(const Target& at, const QString& text);
    void packetSizeChosen(int index);
    void translateToggled(bool on);
    void resolveClicked();
    void setResolveColour(qint32 bgr);

    Monitor& monitor_;
    PanelHost& host_;
    int graph_ = -1;
    int node_ = -1;
    bool loading_ = false;
    quint16 port_ = 80;
    Target testTarget_;  // the Node whose target the running test checks
    std::unique_ptr<HostTest> test_;

    QLineEdit* txtPingIP_ = nullptr;
    QComboBox* cmbPingPacketSize_ = nullptr;
    QCheckBox* chkPingTranslate_ = nullptr;
    QPushButton* imgResolve_ = nullptr;
    QLabel* lblGen22_ = nullptr;
    QLabel* lblStatus_ = nullptr;
    std::array<QLabel*, 4> lblPingTrial_{};
};

}  // namespace orm
